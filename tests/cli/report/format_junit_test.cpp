// JUnit XML, held against its schema and compared whole.
#include <gtest/gtest.h>

#include "tests/support/sample_runs.h"
#include "tests/support/schemas.h"

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
        EXPECT_EQ(xmlFaults("tests/schemas/junit.xsd", junit(one.run)), "");
        EXPECT_EQ(xmlFaults("tests/schemas/junit.xsd", junit(one.run, timings)), "");
    }
}

TEST(FormatJunit, SchemaRefusesWhatIsNoReport) {
    EXPECT_NE(xmlFaults("tests/schemas/junit.xsd", "<testsuites/>"), "");
    EXPECT_NE(xmlFaults("tests/schemas/junit.xsd", ""), "");
}

TEST(FormatJunit, NothingToDoIsNoSuite) {
    EXPECT_EQ(sample("nothing to do"),
              document("tests=\"0\" failures=\"0\" errors=\"0\" skipped=\"0\"", ""));
}

TEST(FormatJunit, PackageWithoutFindingsIsOneCaseThatPasses) {
    const std::string counts = "tests=\"1\" failures=\"0\" errors=\"0\" skipped=\"0\"";
    EXPECT_EQ(sample("accepted"),
              document(counts, "  <testsuite name=\"app.rpm\" " + counts +
                                   ">\n    <testcase classname=\"app.rpm\" "
                                   "name=\"verdict\"></testcase>\n  </testsuite>\n"));
}

TEST(FormatJunit, PackageThatIsNotJudgedIsAnError) {
    const std::string counts = "tests=\"1\" failures=\"0\" errors=\"1\" skipped=\"0\"";
    EXPECT_EQ(sample("not judged"),
              document(counts, "  <testsuite name=\"/tmp/a b.rpm\" " + counts +
                                   ">\n    <testcase classname=\"/tmp/a b.rpm\" name=\"verdict\">"
                                   "<error type=\"not-judged\" message=\"not an RPM package\">"
                                   "not an RPM package</error></testcase>\n  </testsuite>\n"));
}

TEST(FormatJunit, PackageThatIsNotJudgedWholeHasAnError) {
    EXPECT_NE(sample("incomplete")
                  .find("name=\"incomplete\"><error type=\"incomplete\" message=\"the payload is "
                        "irregular\">"),
              std::string::npos);
}

TEST(FormatJunit, FindingsThatRejectFailAndOthersPass) {
    const std::string counts = "tests=\"4\" failures=\"2\" errors=\"0\" skipped=\"0\"";
    const std::string start = "    <testcase classname=\"app.rpm\" name=\"";
    EXPECT_EQ(
        sample("rejected"),
        document(counts,
                 "  <testsuite name=\"app.rpm\" " + counts + ">\n" + start +
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
    EXPECT_NE(text.find(" skipped=\"2\""), std::string::npos);
}

TEST(FormatJunit, EachProfileIsASuite) {
    const std::string text = sample("several profiles");
    EXPECT_NE(text.find("<testsuite name=\"app.rpm (regular)\" tests=\"1\" failures=\"0\""),
              std::string::npos);
    EXPECT_NE(text.find("<testsuite name=\"app.rpm (mdm)\" tests=\"4\" failures=\"2\""),
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
