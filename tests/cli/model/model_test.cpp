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
