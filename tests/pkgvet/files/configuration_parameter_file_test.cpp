// The package's file of managed configuration.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/captured_log.h"
#include "tests/support/rule_run.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kFile = "/usr/share/app/managed-configuration/configuration.xml";
constexpr const char* kInvalidLine =
    "[/usr/share/app/managed-configuration/configuration.xml] Configuration parameter file for "
    "managed configuration is invalid";

RuleRun check(const PackageBuilder& builder) {
    const TemporaryDirectory directory;
    const std::string file = builder.build(directory);
    const RpmMeta meta(file.c_str());
    ContentValidator validator(file);
    return runRule(validator, [&] { validator.checkConfigurationParameterFile(meta); });
}

void expectInvalid(const PackageBuilder& builder) {
    const CapturedDescriptor descriptor;
    const RuleRun run = check(builder);
    EXPECT_THAT(run.lines, ElementsAre(errorLine(kInvalidLine)));
    EXPECT_EQ(run.failures, pkgvet::kViolation);
    EXPECT_THAT(descriptor.text(), testing::Not(testing::HasSubstr("configuration.xml")));
}

TEST(ConfigurationParameterFile, IsOptional) {
    const RuleRun run = check(PackageBuilder("app").file("/usr/share/app/x", ""));
    EXPECT_THAT(run.lines, IsEmpty());
    EXPECT_EQ(run.failures, 0U);
}

TEST(ConfigurationParameterFile, ValidFileDrawsNoLine) {
    const RuleRun run = check(PackageBuilder("app").file(kFile, "<pkgvet-test/>"));
    EXPECT_THAT(run.lines, IsEmpty());
    EXPECT_EQ(run.failures, 0U);
}

TEST(ConfigurationParameterFile, InvalidFileIsReportedWhereItIsInstalled) {
    expectInvalid(PackageBuilder("app").file(kFile, "<pkgvet-test>"));
}

TEST(ConfigurationParameterFile, WhateverStandsInItsPlaceCounts) {
    expectInvalid(PackageBuilder("app").directory(kFile));
    expectInvalid(PackageBuilder("app").link(kFile, "/dev/zero"));
}

TEST(ConfigurationParameterFile, OnlyTheFileOfThePackagesNameIsLookedAt) {
    EXPECT_THAT(check(PackageBuilder("app").file(
                          "/usr/share/other/managed-configuration/configuration.xml", "<"))
                    .lines,
                IsEmpty());
    EXPECT_THAT(check(PackageBuilder("app").link(kFile, "missing")).lines, IsEmpty());
}

}  // namespace
