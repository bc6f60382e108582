// Baselines: what they hold, and the files that they stand in.
#include "cli/policy/baseline.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/base/temporary_directory.h"

namespace {

using pkgvet::cli::Baseline;
using pkgvet::cli::collect;
using pkgvet::cli::Fault;
using pkgvet::cli::Finding;
using pkgvet::cli::formatBaseline;
using pkgvet::cli::Judgement;
using pkgvet::cli::PackageReport;
using pkgvet::cli::readBaseline;
using pkgvet::cli::Severity;
using pkgvet::cli::Standing;
using testing::ElementsAre;
using testing::IsEmpty;

Finding error(const std::string& rule, const std::optional<std::string>& subject = std::nullopt) {
    Finding finding;
    finding.rule = rule;
    finding.severity = Severity::Error;
    finding.subject = subject;
    finding.message = rule + " message";
    return finding;
}

PackageReport report(const std::string& name, const std::vector<std::vector<Finding>>& judgements) {
    PackageReport package;
    package.path = "/somewhere/" + name + ".rpm";
    package.name = name;
    package.version = "1.0";
    for (const std::vector<Finding>& findings : judgements) {
        Judgement judgement;
        judgement.findings = findings;
        package.judgements.push_back(judgement);
    }
    return package;
}

std::string written(const std::vector<PackageReport>& packages) {
    Baseline baseline;
    for (const PackageReport& package : packages) {
        collect(package, &baseline);
    }
    return formatBaseline(baseline);
}

std::vector<std::string> faultsOf(const std::string& content) {
    const TemporaryDirectory directory;
    std::vector<Fault> faults;
    readBaseline(directory.write("baseline.json", content), &faults);
    std::vector<std::string> lines;
    for (const Fault& fault : faults) {
        lines.push_back(fault.key + "|" + fault.cause);
    }
    return lines;
}

TEST(Baseline, FileIsSortedAndHoldsNoPathOnDisk) {
    const PackageReport b = report("b", {{error("x", "two"), error("x", "one"), error("a")}});
    const PackageReport a = report("a", {{error("x")}});
    EXPECT_EQ(written({b, a}), R"({
  "schema_version": 1,
  "findings": [
    {
      "package": "a",
      "rule": "x",
      "message": "x message"
    },
    {
      "package": "b",
      "rule": "a",
      "message": "a message"
    },
    {
      "package": "b",
      "rule": "x",
      "subject": "one",
      "message": "x message"
    },
    {
      "package": "b",
      "rule": "x",
      "subject": "two",
      "message": "x message"
    }
  ]
}
)");
    EXPECT_EQ(written({b, a}), written({a, b}));
}

TEST(Baseline, EmptyOneIsAFileAsWell) {
    EXPECT_EQ(written({}), "{\n  \"schema_version\": 1,\n  \"findings\": []\n}\n");
}

TEST(Baseline, CountIsTheMostThatOnePackageHadUnderOneProfile) {
    const Finding once = error("x");
    Baseline baseline;
    collect(report("a", {{once}, {once, once, once}, {once, once}}), &baseline);
    collect(report("a", {{once}}), &baseline);
    ASSERT_EQ(baseline.size(), 1U);
    EXPECT_EQ(baseline.begin()->second, 3U);
}

TEST(Baseline, GraveAndWaivedFindingsStayOut) {
    Finding grave = error("x");
    grave.severity = Severity::Critical;
    Finding waived = error("x");
    waived.standing = Standing::Waived;
    Finding known = error("known");
    known.standing = Standing::Known;
    Baseline baseline;
    collect(report("a", {{grave, error("setuid-file"), waived, known}}), &baseline);
    ASSERT_EQ(baseline.size(), 1U);
    EXPECT_EQ(baseline.begin()->first.rule, "known");
}

TEST(Baseline, FileReadsBackAsWhatWasWritten) {
    Baseline baseline;
    Finding strange = error("x", "/usr/\xff\x01\"\\\xe2\x80\xae");
    strange.message = "two\nlines";
    collect(report("a", {{strange, strange, error("x", ""), error("x")}}), &baseline);
    const TemporaryDirectory directory;
    std::vector<Fault> faults;
    EXPECT_EQ(readBaseline(directory.write("baseline.json", formatBaseline(baseline)), &faults),
              baseline);
    EXPECT_THAT(faults, IsEmpty());
    EXPECT_EQ(baseline.size(), 3U);
}

TEST(Baseline, BytesThatAreNoTextStayDistinct) {
    Baseline baseline;
    collect(report("a", {{error("x", "\xff"), error("x", "\xfe")}}), &baseline);
    EXPECT_EQ(baseline.size(), 2U);
}

TEST(Baseline, EachFaultOfAFileIsReported) {
    struct Case {
        const char* content;
        std::vector<std::string> faults;
    };
    const Case cases[] = {
        {"[]", {"|holds no JSON object"}},
        {"{}", {"schema_version|is missing", "findings|is missing"}},
        {R"({"schema_version": 2, "findings": {}, "x": 1})",
         {"x|is not a known key", "schema_version|is not 1", "findings|is not an array"}},
        {R"({"schema_version": 1, "findings": [{"rule": "a"}]})",
         {"findings[0].package|is missing", "findings[0].message|is missing"}},
        {R"({"schema_version": 1, "findings": [{"package": "p", "rule": "a", "subject": 1,
             "message": "m", "count": 0, "when": ""}]})",
         {"findings[0].when|is not a known key", "findings[0].subject|is not a string",
          "findings[0].count|is not a number above 0"}},
        {R"({"schema_version": 1, "findings": [{"package": "p", "rule": "a", "message": "m",
             "count": -1}]})",
         {"findings[0].count|is not a number above 0"}},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.content);
        EXPECT_EQ(faultsOf(test.content), test.faults);
    }
}

}  // namespace
