// The sink that rules report through.
#include "pkgvet/report/findings.h"

#include <gmock/gmock.h>

#include <functional>

#include "tests/support/base/captured_log.h"
#include "tests/support/rules/rule_run.h"

namespace {

using pkgvet::Findings;
using pkgvet::kDetail;
using pkgvet::kGraveFinding;
using pkgvet::kSubject;
using pkgvet::kViolation;
using pkgvet::Message;
using testing::ElementsAre;

constexpr Message kPlain = {"[tag] Something is wrong"};
constexpr Message kAbout = {"[", kSubject, "] Something is ", kDetail, ""};
constexpr Message kLongest = {"a", kDetail, "b", kDetail, "c", kDetail, "d"};

TEST(Findings, BitsHaveTheirValues) {
    EXPECT_EQ(kViolation, 1U);
    EXPECT_EQ(kGraveFinding, 2U);
}

TEST(Findings, EachKindHasItsLevelAndItsBit) {
    struct Case {
        const char* name;
        std::function<void(Findings*)> report;
        std::string line;
        std::uint32_t failures;
    };
    const std::string text = "[tag] Something is wrong";
    const Case cases[] = {
        {"violation", [](Findings* f) { f->violation(kPlain); }, errorLine(text), kViolation},
        {"grave error", [](Findings* f) { f->grave(LogLevel::Error, kPlain); }, errorLine(text),
         kGraveFinding},
        {"grave", [](Findings* f) { f->grave(LogLevel::Critical, kPlain); }, criticalLine(text),
         kGraveFinding},
        {"warning", [](Findings* f) { f->warning(kPlain); }, warningLine(text), 0},
        {"info", [](Findings* f) { f->info(kPlain); }, infoLine(text), 0},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        const RuleRun run = runRule(test.report);
        EXPECT_THAT(run.lines, ElementsAre(test.line));
        EXPECT_EQ(run.failures, test.failures);
    }
}

TEST(Findings, PlacesAreFilledInTheirOrder) {
    const RuleRun run = runRule([](Findings* findings) {
        findings->violation(kAbout, {"/usr/bin/app", "wrong"});
        findings->warning(kLongest, {"1", "", "3"});
    });
    EXPECT_THAT(run.lines,
                ElementsAre(errorLine("[/usr/bin/app] Something is wrong"), warningLine("a1bc3d")));
}

TEST(Findings, OnlyGraveFindingsRejectWithValidationOff) {
    struct Case {
        bool violation;
        bool grave;
        bool enabled;
        bool accepted;
    };
    const Case cases[] = {
        {false, false, true, true},  {true, false, true, false},  {false, true, true, false},
        {true, true, true, false},   {false, false, false, true}, {true, false, false, true},
        {false, true, false, false}, {true, true, false, false},
    };
    for (const Case& test : cases) {
        const CapturedLog log;
        Findings findings;
        findings.warning(kPlain);
        if (test.violation) {
            findings.violation(kPlain);
        }
        if (test.grave) {
            findings.grave(LogLevel::Error, kPlain);
        }
        EXPECT_EQ(findings.isAccepted(test.enabled), test.accepted)
            << test.violation << test.grave << test.enabled;
    }
}

TEST(Findings, NothingIsForgotten) {
    const CapturedLog log;
    Findings findings;
    findings.violation(kPlain);
    findings.info(kPlain);
    EXPECT_EQ(findings.failures(), kViolation);
}

}  // namespace
