// What judges say and what is believed of it.
#include "cli/worker/wire.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/catalogue/catalogue.h"

namespace {

using namespace pkgvet::cli;
using testing::IsEmpty;

constexpr std::size_t kMostBytes = 1 << 20;
const std::vector<std::string> kOneProfile = {"mdm"};
const std::vector<std::string> kTwoProfiles = {"regular", "mdm"};

// Texts with bytes that are neither UTF-8 nor text.
const std::string kBytes("\xff\0\n\xc3(\x1b", 6);

PackageReport sample() {
    PackageReport report;
    report.name = "name" + kBytes;
    report.version = "1";
    report.release = "2";
    report.arch = "noarch";
    report.sha256 = "abc";
    report.validationEnabled = false;
    report.incomplete = "why" + kBytes;
    report.judgements.resize(2);
    report.judgements[0].metaAccepted = true;
    report.judgements[0].contentAccepted = true;
    report.judgements[1].metaAccepted = true;
    report.judgements[1].intact = false;
    Finding finding;
    finding.rule = "scripts-not-allowed";
    finding.severity = Severity::Critical;
    finding.subject = kBytes;
    finding.message = "[a] " + kBytes;
    finding.count = 70'000;
    Finding remark;
    remark.rule = kOtherRemark;
    report.judgements[1].findings = {finding, remark};
    return report;
}

std::optional<PackageReport> heard(const std::string& bytes,
                                   const std::vector<std::string>& profiles = kTwoProfiles) {
    return decodeReport(bytes, profiles);
}

TEST(Wire, ReportComesThroughWithEveryByte) {
    const PackageReport report = sample();
    const auto result = heard(reportMessage(report, kMostBytes));
    ASSERT_TRUE(result);
    EXPECT_EQ(result->name, report.name);
    EXPECT_EQ(result->version, report.version);
    EXPECT_EQ(result->release, report.release);
    EXPECT_EQ(result->arch, report.arch);
    EXPECT_EQ(result->sha256, report.sha256);
    EXPECT_FALSE(result->validationEnabled);
    EXPECT_EQ(result->incomplete, report.incomplete);
    EXPECT_TRUE(result->judged());
    EXPECT_FALSE(result->complete());
    ASSERT_EQ(result->judgements.size(), 2U);
    EXPECT_EQ(result->judgements[0].profile, "regular");
    EXPECT_TRUE(result->judgements[0].passes);
    EXPECT_THAT(result->judgements[0].findings, IsEmpty());
    const Judgement& second = result->judgements[1];
    EXPECT_EQ(second.profile, "mdm");
    EXPECT_TRUE(second.metaAccepted);
    EXPECT_FALSE(second.contentAccepted);
    EXPECT_TRUE(result->judgements[0].intact);
    EXPECT_FALSE(second.intact);
    EXPECT_FALSE(second.passes);
    ASSERT_EQ(second.findings.size(), 2U);
    EXPECT_EQ(second.findings[0].rule, "scripts-not-allowed");
    EXPECT_EQ(second.findings[0].severity, Severity::Critical);
    EXPECT_EQ(second.findings[0].subject, kBytes);
    EXPECT_EQ(second.findings[0].message, "[a] " + kBytes);
    EXPECT_EQ(second.findings[1].subject, std::nullopt);
}

TEST(Wire, WhatIsNotIntactDoesNotPass) {
    PackageReport report = sample();
    report.judgements[0].intact = false;
    const auto result = heard(reportMessage(report, kMostBytes));
    ASSERT_TRUE(result);
    EXPECT_TRUE(result->judgements[0].accepted());
    EXPECT_FALSE(result->judgements[0].passes);
}

TEST(Wire, CauseComesWithoutJudgements) {
    PackageReport report;
    report.setCause({CauseCode::TooLarge, "broken"});
    const auto result = heard(reportMessage(report, kMostBytes));
    ASSERT_TRUE(result);
    EXPECT_EQ(result->cause, "broken");
    EXPECT_EQ(result->causeCode, CauseCode::TooLarge);
    EXPECT_THAT(result->judgements, IsEmpty());
    report.judgements.resize(2);
    EXPECT_FALSE(heard(reportMessage(report, kMostBytes)));
}

TEST(Wire, CauseAndItsCodeComeTogether) {
    PackageReport report;
    report.cause = "broken";
    EXPECT_FALSE(heard(reportMessage(report, kMostBytes)));
    report = sample();
    report.causeCode = CauseCode::Crashed;
    EXPECT_FALSE(heard(reportMessage(report, kMostBytes)));
}

TEST(Wire, ReportForOtherProfilesIsNone) {
    EXPECT_FALSE(heard(reportMessage(sample(), kMostBytes), kOneProfile));
    EXPECT_FALSE(heard(reportMessage(sample(), kMostBytes), {"a", "b", "c"}));
    EXPECT_FALSE(heard(reportMessage(PackageReport(), kMostBytes), kOneProfile));
}

// The bytes of the judgements behind the number make no difference.
TEST(Wire, MoreJudgementsThanProfilesAreRefused) {
    PackageReport report = sample();
    report.judgements[1].findings.clear();
    std::string bytes = reportMessage(report, kMostBytes);
    // In front of the judgements, each of three flags and the number of its findings.
    char& number = bytes[bytes.size() - 2 * 7 - 4];
    ASSERT_EQ(number, 2);
    number = 3;
    EXPECT_FALSE(heard(bytes));
}

TEST(Wire, SubjectOfAFindingThatHasNoneIsRefused) {
    PackageReport report = sample();
    report.judgements[1].findings.pop_back();
    std::string bytes = reportMessage(report, kMostBytes);
    const std::size_t flag = bytes.rfind("scripts-not-allowed") + 19 + 4;
    ASSERT_EQ(bytes[flag], 1);
    bytes[flag] = 0;
    EXPECT_FALSE(heard(bytes));
}

TEST(Wire, FindingOfARuleThatIsNotThereIsRefused) {
    for (const char* const id : {"", "scripts-not-allowed ", "\033[2J", "no-such-rule"}) {
        PackageReport report = sample();
        report.judgements[1].findings[1].rule = id;
        EXPECT_FALSE(heard(reportMessage(report, kMostBytes))) << id;
    }
}

TEST(Wire, SeverityThatIsNotThereIsRefused) {
    PackageReport report = sample();
    report.judgements[1].findings[0].severity = static_cast<Severity>(4);
    EXPECT_FALSE(heard(reportMessage(report, kMostBytes)));
}

TEST(Wire, LongCauseIsCut) {
    PackageReport report;
    report.causeCode = CauseCode::Crashed;
    report.cause.assign(100'000, 'x');
    const auto result = heard(reportMessage(report, kMostBytes));
    ASSERT_TRUE(result);
    EXPECT_LT(result->cause.size(), 5000U);
}

TEST(Wire, AnythingShortOrLongIsNoReport) {
    const std::string message = reportMessage(sample(), kMostBytes);
    for (std::size_t size = 0; size < message.size(); ++size) {
        EXPECT_FALSE(heard(message.substr(0, size))) << size;
    }
    EXPECT_FALSE(heard(message + "R"));
    EXPECT_FALSE(heard(message + message));
    EXPECT_FALSE(heard("x" + message));
    EXPECT_FALSE(heard(std::string(100, '\xff')));
}

TEST(Wire, ChangedBytesAreRefusedOrReadAsText) {
    const std::string message = reportMessage(sample(), kMostBytes);
    for (std::size_t i = 0; i < message.size(); ++i) {
        for (const char value : {'\0', '\x01', '\x7f', '\xff'}) {
            std::string changed = message;
            changed[i] = value;
            const auto report = heard(changed);
            EXPECT_TRUE(!report || report->judgements.size() == 2 || !report->judged()) << i;
        }
    }
}

TEST(Wire, ReportAboveTheBoundIsOfAPackageThatCouldNotBeJudged) {
    PackageReport report = sample();
    report.judgements[0].findings = {report.judgements[1].findings[0]};
    report.judgements[0].findings[0].message.assign(kMostBytes, 'x');
    const std::string message = reportMessage(report, kMostBytes);
    EXPECT_LT(message.size(), kMostBytes);
    const auto result = heard(message);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->cause, "there is more to say about it than --max-report allows");
    EXPECT_THAT(result->judgements, IsEmpty());
}

TEST(Wire, FindingsThatStandForNoneAreRefused) {
    PackageReport report = sample();
    EXPECT_EQ(heard(reportMessage(report, kMostBytes))->judgements[1].findings[0].count, 70'000U);
    report.judgements[1].findings[0].count = 0;
    EXPECT_FALSE(heard(reportMessage(report, kMostBytes)));
}

}  // namespace
