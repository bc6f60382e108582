// What follows from the data of a run.
#include "cli/model/model.h"

#include <gtest/gtest.h>

namespace {

using namespace pkgvet::cli;

PackageReport reportOf(const std::vector<bool>& passes) {
    PackageReport report;
    for (const bool pass : passes) {
        Judgement judgement;
        judgement.passes = pass;
        report.judgements.push_back(judgement);
    }
    return report;
}

TEST(PackageReport, PassesWhenItDoesUnderEveryProfile) {
    EXPECT_TRUE(reportOf({true}).passes());
    EXPECT_TRUE(reportOf({true, true}).passes());
    EXPECT_FALSE(reportOf({true, false}).passes());
}

TEST(PackageReport, WhatWasNotJudgedPassesUnderNone) {
    PackageReport report = reportOf({});
    report.cause = "not an RPM package";
    EXPECT_FALSE(report.judged());
    EXPECT_FALSE(report.passes());
}

TEST(PackageReport, IsCompleteWhenItWasJudgedByAllRules) {
    PackageReport report = reportOf({true});
    EXPECT_TRUE(report.complete());
    report.incomplete = "the payload is irregular";
    EXPECT_TRUE(report.judged());
    EXPECT_FALSE(report.complete());
    report.incomplete.clear();
    report.cause = "not an RPM package";
    EXPECT_FALSE(report.complete());
}

TEST(PackageReport, LongCauseIsCutBetweenCharacters) {
    struct Case {
        const char* name;
        std::string text;
        std::string cause;
    };
    const std::string begin(4095, 'x');
    const Case cases[] = {
        {"just short enough", begin + "y", begin + "y"},
        {"too long", begin + "yz", begin + "y..."},
        {"a character at the place", begin + "\u00e4", begin + "..."},
        {"a long one", begin.substr(2) + "\U0001f600", begin.substr(2) + "..."},
        {"bytes that are none", std::string(5000, '\x80'), std::string(4093, '\x80') + "..."},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        PackageReport report;
        report.setCause({CauseCode::Crashed, test.text});
        EXPECT_EQ(report.cause, test.cause);
        EXPECT_EQ(report.causeCode, CauseCode::Crashed);
    }
}

TEST(Judgement, AcceptsWhenBothHalvesDo) {
    for (const bool meta : {false, true}) {
        for (const bool content : {false, true}) {
            Judgement judgement;
            judgement.metaAccepted = meta;
            judgement.contentAccepted = content;
            EXPECT_EQ(judgement.accepted(), meta && content);
        }
    }
}

TEST(LogLine, TextIsItsPieces) {
    EXPECT_EQ((LogLine{Severity::Error, {"[", "x", "", "] y"}}.text()), "[x] y");
    EXPECT_EQ(LogLine().text(), "");
}

TEST(SeverityName, IsAWordForEach) {
    EXPECT_EQ(severityName(Severity::Info), "info");
    EXPECT_EQ(severityName(Severity::Warning), "warning");
    EXPECT_EQ(severityName(Severity::Error), "error");
    EXPECT_EQ(severityName(Severity::Critical), "critical");
}

// Other people's reports hold these values.
TEST(Fingerprint, StaysTheSameForEver) {
    Finding finding;
    finding.rule = "a-rule";
    finding.message = "anything";
    EXPECT_EQ(fingerprintOf("org.example.app", finding), "0afac9aba8b8ceb4f7b6f3bff8443030");
    finding.subject = "/usr/x";
    EXPECT_EQ(fingerprintOf("org.example.app", finding), "77a3bd863a985f76ceeb13fb4f47ca82");
}

}  // namespace
