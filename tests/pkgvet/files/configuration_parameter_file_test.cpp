// The package's file of managed configuration.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "pkgvet/files/file_rules.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/rules/rule_run.h"

namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kDirectory = "usr/share/app/managed-configuration";
constexpr const char* kFile = "usr/share/app/managed-configuration/configuration.xml";
constexpr const char* kInvalidLine =
    "[/usr/share/app/managed-configuration/configuration.xml] Configuration parameter file for "
    "managed configuration is invalid";

class ConfigurationParameterFile : public testing::Test {
protected:
    RuleRun check() {
        return runRule([this](pkgvet::Findings* findings) {
            pkgvet::checkConfigurationParameterFile("app", root_.path(), findings);
        });
    }

    void expectInvalid() {
        const CapturedDescriptor descriptor;
        const RuleRun run = check();
        EXPECT_THAT(run.lines, ElementsAre(errorLine(kInvalidLine)));
        EXPECT_EQ(run.failures, pkgvet::kViolation);
        EXPECT_THAT(descriptor.text(), testing::Not(testing::HasSubstr("configuration.xml")));
    }

    void expectNothing() {
        const RuleRun run = check();
        EXPECT_THAT(run.lines, IsEmpty());
        EXPECT_EQ(run.failures, 0U);
    }

    TemporaryDirectory root_;
};

TEST_F(ConfigurationParameterFile, IsOptional) {
    expectNothing();
    root_.write("usr/share/app/x", "");
    expectNothing();
}

TEST_F(ConfigurationParameterFile, ValidFileDrawsNoLine) {
    root_.write(kFile, "<pkgvet-test/>");
    expectNothing();
}

TEST_F(ConfigurationParameterFile, InvalidFileIsReportedWhereItIsInstalled) {
    root_.write(kFile, "<pkgvet-test>");
    expectInvalid();
}

TEST_F(ConfigurationParameterFile, DirectoryInItsPlaceCounts) {
    fs::create_directories(root_ / kFile);
    expectInvalid();
}

TEST_F(ConfigurationParameterFile, DeviceInItsPlaceCounts) {
    fs::create_directories(root_ / kDirectory);
    fs::create_symlink("/dev/zero", root_ / kFile);
    expectInvalid();
}

TEST_F(ConfigurationParameterFile, LinkThatLeadsNowhereIsNoFile) {
    fs::create_directories(root_ / kDirectory);
    fs::create_symlink("missing", root_ / kFile);
    expectNothing();
}

TEST_F(ConfigurationParameterFile, OnlyTheFileOfThePackagesNameIsLookedAt) {
    root_.write("usr/share/other/managed-configuration/configuration.xml", "<");
    expectNothing();
}

TEST_F(ConfigurationParameterFile, LinkThatCannotBeFollowedIsAnException) {
    fs::create_directories(root_ / kDirectory);
    fs::create_symlink("configuration.xml", root_ / kFile);
    EXPECT_THROW(check(), fs::filesystem_error);
}

}  // namespace
