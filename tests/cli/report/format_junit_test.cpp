// JUnit XML, held against its schema and compared whole.
#include <gtest/gtest.h>

#include "tests/support/program/sample_runs.h"
#include "tests/support/program/schemas.h"

namespace {

using namespace pkgvet::cli;

std::string junit(const RunReport& run, const ReportStyle& style = {}) {
    return reportOf(Format::Junit, run, style);
}

std::string sample(const std::string& name, const ReportStyle& style = {}) {
    for (const SampleRun& one : sampleRuns()) {
        if (one.name == name) {
            return junit(one.run, style);
        }
    }
    return "no such sample";
}

const std::string kProperties =
    "    <properties>\n"
    "      <property name=\"path\" value=\"app.rpm\"/>\n"
    "      <property name=\"version\" value=\"1.0\"/>\n"
    "      <property name=\"release\" value=\"1\"/>\n"
    "      <property name=\"arch\" value=\"noarch\"/>\n"
    "      <property name=\"sha256\" value=\"" +
    std::string(64, 'a') +
    "\"/>\n"
    "    </properties>\n";

// The whole document around suites.
std::string document(const std::string& counts, const std::string& suites) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites name=\"pkgvet\" " + counts +
           ">\n" + suites + "</testsuites>\n";
}

TEST(FormatJunit, EveryWayOutKeepsToTheSchema) {
    ReportStyle timings;
    timings.timings = true;
    for (const SampleRun& one : sampleRuns()) {
        SCOPED_TRACE(one.name);
        EXPECT_EQ(xmlFaults("tests/schemas/junit-10.xsd", junit(one.run)), "");
        EXPECT_EQ(xmlFaults("tests/schemas/junit-10.xsd", junit(one.run, timings)), "");
    }
}

TEST(FormatJunit, SchemaRefusesWhatServersRefuse) {
    struct Case {
        const char* name;
        std::string report;
    };
    const std::string suite = "<testsuites><testsuite name=\"a\" tests=\"1\" failures=\"0\"";
    const std::string end = "</testsuite></testsuites>";
    const Case cases[] = {
        {"nothing", ""},
        {"skipped for all suites", "<testsuites skipped=\"0\"/>"},
        {"suite without its errors", suite + ">" + end},
        {"suite with an assertion", suite + " errors=\"0\" assertions=\"1\">" + end},
        {"case without a name", suite + " errors=\"0\"><testcase classname=\"a\"/>" + end},
        {"case with a status",
         suite + " errors=\"0\"><testcase name=\"a\" classname=\"a\" status=\"run\"/>" + end},
        {"time in minutes", suite + " errors=\"0\" time=\"1:30\">" + end},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        EXPECT_NE(xmlFaults("tests/schemas/junit-10.xsd", test.report), "");
    }
    EXPECT_EQ(xmlFaults("tests/schemas/junit-10.xsd", suite + " errors=\"0\">" + end), "");
}

TEST(FormatJunit, NothingToDoIsNoSuite) {
    EXPECT_EQ(sample("nothing to do"), document("tests=\"0\" failures=\"0\" errors=\"0\"", ""));
}

TEST(FormatJunit, VerdictOfAPackageIsACase) {
    const std::string counts = "tests=\"1\" failures=\"0\" errors=\"0\"";
    EXPECT_EQ(sample("accepted"),
              document(counts, "  <testsuite name=\"org.example.app.regular\" " + counts +
                                   " skipped=\"0\">\n" + kProperties +
                                   "    <testcase classname=\"org.example.app.regular\" "
                                   "name=\"verdict\"></testcase>\n  </testsuite>\n"));
}

TEST(FormatJunit, PackageThatIsNotJudgedIsAnErrorUnderItsFilesName) {
    const std::string counts = "tests=\"1\" failures=\"0\" errors=\"1\"";
    EXPECT_EQ(sample("not judged"),
              document(counts, "  <testsuite name=\"a b.regular\" " + counts +
                                   " skipped=\"0\">\n    <properties>\n"
                                   "      <property name=\"path\" value=\"/tmp/a b.rpm\"/>\n"
                                   "    </properties>\n"
                                   "    <testcase classname=\"a b.regular\" name=\"verdict\">"
                                   "<error type=\"not-judged\" message=\"not an RPM package\">"
                                   "not an RPM package</error></testcase>\n  </testsuite>\n"));
}

TEST(FormatJunit, PackageThatIsNotJudgedWholeHasAnError) {
    EXPECT_NE(sample("incomplete")
                  .find("name=\"incomplete\"><error type=\"incomplete\" message=\"the payload is "
                        "irregular\">"),
              std::string::npos);
}

TEST(FormatJunit, PackageThatIsNotJudgedIsAnErrorUnderEachProfile) {
    RunReport run = runOf({unreadable("a.rpm", "not an RPM package")});
    run.packages[0].name = "org.example.a";
    run.provenance.profiles = {{"regular"}, {"mdm"}};
    const std::string text = junit(run);
    EXPECT_NE(text.find("classname=\"org.example.a.regular\" name=\"verdict\"><error"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("classname=\"org.example.a.mdm\" name=\"verdict\"><error"),
              std::string::npos);
}

TEST(FormatJunit, FindingsThatRejectFailAndOthersPass) {
    const std::string counts = "tests=\"5\" failures=\"3\" errors=\"0\"";
    const std::string start = "    <testcase classname=\"org.example.app.regular\" name=\"";
    EXPECT_EQ(
        sample("rejected"),
        document(counts,
                 "  <testsuite name=\"org.example.app.regular\" " + counts + " skipped=\"0\">\n" +
                     kProperties + start +
                     "verdict\"><failure type=\"rejected\" "
                     "message=\"rejected: 2 errors, 1 warning\">"
                     "rejected: 2 errors, 1 warning</failure></testcase>\n" +
                     start +
                     "package-scripts\"><failure type=\"package-scripts\" "
                     "message=\"critical: [scripts] Scripts are not allowed\">"
                     "critical: [scripts] Scripts are not allowed</failure></testcase>\n" +
                     start +
                     "library-not-allowed: libx.so.1\"><failure type=\"library-not-allowed\" "
                     "message=\"error: [libx.so.1] Not allowed\">"
                     "error: [libx.so.1] Not allowed</failure></testcase>\n" +
                     start +
                     "file-remark: /usr/share/a\"><system-out>warning: [/usr/share/a] Remarkable"
                     "</system-out></testcase>\n" +
                     start +
                     "other-remark\"><system-out>info: By the way</system-out></testcase>\n"
                     "  </testsuite>\n"));
}

TEST(FormatJunit, ClassOfAPackageHoldsNoDot) {
    RunReport run = runOf({package({judgement({}, "a.b")})});
    EXPECT_NE(junit(run).find("classname=\"org.example.app.a_b\""), std::string::npos);
}

TEST(FormatJunit, BuildsOfOnePackageAreToldApart) {
    RunReport run =
        runOf({package({judgement({})}), package({judgement({})}), package({judgement({})})});
    run.packages[1].arch = "aarch64";
    const std::string text = junit(run);
    for (const char* name : {"org.example.app.regular noarch", "org.example.app.regular aarch64",
                             "org.example.app.regular noarch (2)"}) {
        SCOPED_TRACE(name);
        EXPECT_NE(text.find(std::string("<testsuite name=\"") + name + "\""), std::string::npos);
        EXPECT_NE(text.find(std::string("classname=\"") + name + "\""), std::string::npos);
    }
}

// More than stays in memory, and more than is read back at once.
TEST(FormatJunit, SuitesKeepTheirNamesHoweverManyThereAre) {
    constexpr std::size_t kPackages = 3000;
    RunReport run;
    run.provenance.profiles = {{"regular"}};
    for (std::size_t i = 0; i < kPackages; ++i) {
        run.packages.push_back(package({judgement(
            {finding("a-rule", Severity::Error, std::string(2000, 'x') + std::to_string(i))})}));
        run.packages.back().name = "org.example.app" + std::to_string(i);
    }
    const std::string text = junit(run);
    EXPECT_NE(text.find("<testsuites name=\"pkgvet\" tests=\"6000\""), std::string::npos);
    std::size_t at = 0;
    for (std::size_t i = 0; i < kPackages && at != std::string::npos; ++i) {
        at = text.find("<testsuite name=\"org.example.app" + std::to_string(i) + ".regular\"", at);
        at = text.find("x" + std::to_string(i) + "</failure>", at);
    }
    EXPECT_NE(at, std::string::npos);
    EXPECT_EQ(text.find_first_of("\1\2"), std::string::npos);
}

TEST(FormatJunit, WarningsFailWhereTheyCount) {
    Judgement result = judgement({finding("a-rule", Severity::Warning, "A")});
    EXPECT_EQ(junit(runOf({package({result})})).find("<failure"), std::string::npos);
    result.passes = false;
    ReportStyle style;
    style.failOn = Severity::Warning;
    EXPECT_NE(junit(runOf({package({result})}), style).find("<failure type=\"a-rule\""),
              std::string::npos);
}

TEST(FormatJunit, WhatIsAcceptedNeverFails) {
    Judgement result = judgement({finding("a-rule", Severity::Error, "A")});
    result.passes = true;
    EXPECT_EQ(junit(runOf({package({result})})).find("<failure"), std::string::npos);
}

TEST(FormatJunit, RejectionWithoutAFindingFails) {
    Judgement result = judgement({});
    result.passes = false;
    EXPECT_NE(junit(runOf({package({result})})).find("name=\"verdict\"><failure"),
              std::string::npos);
}

TEST(FormatJunit, WhatDoesNotCountIsSkipped) {
    const std::string text = sample("waived and known");
    EXPECT_NE(text.find("name=\"library-not-allowed: libx.so.1\"><skipped message=\"error: "
                        "[libx.so.1] Not allowed (waived: until 2.0 &lt;&quot;&amp;'&gt;)\"/>"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find(" skipped=\"2\">"), std::string::npos);
}

TEST(FormatJunit, EachProfileIsASuite) {
    const std::string text = sample("several profiles");
    EXPECT_NE(text.find("<testsuite name=\"org.example.app.regular\" tests=\"1\" failures=\"0\""),
              std::string::npos);
    EXPECT_NE(text.find("<testsuite name=\"org.example.app.mdm\" tests=\"5\" failures=\"3\""),
              std::string::npos);
}

TEST(FormatJunit, InterruptedRunIsAnError) {
    EXPECT_NE(sample("partial").find("<error type=\"partial\""), std::string::npos);
}

TEST(FormatJunit, TimeComesWithTimingsOnly) {
    ReportStyle timings;
    timings.timings = true;
    EXPECT_EQ(sample("accepted").find(" time="), std::string::npos);
    EXPECT_NE(sample("accepted", timings).find(" time=\"0.250\""), std::string::npos);
}

}  // namespace
