// `pkgvet check` in the directories of a project.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "tests/support/package/package_builder.h"
#include "tests/support/program/program.h"
#include "tests/support/rules/rule_tree.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

namespace fs = std::filesystem;

class ProjectFileInUse : public testing::Test {
protected:
    static void SetUpTestSuite() {
        shared_ = new TemporaryDirectory;
        RuleTree().write(*shared_);
        package_ = new std::string(PackageBuilder("org.example.app")
                                       .file("/usr/share/org.example.app/x", "x")
                                       .build(*shared_));
    }

    static void TearDownTestSuite() {
        delete package_;
        delete shared_;
    }

    void SetUp() override { fs::create_directories(project_ / "sub"); }

    std::string write(const std::string& content) const {
        return project_.write(".pkgvet.json", content);
    }

    ProgramResult checkIn(const std::string& directory, std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"check", "--validation", "off"});
        return runPkgvet(arguments, {"-C", project_ / directory});
    }

    static const std::string& package() { return *package_; }
    static std::string rules() { return *shared_ / "configuration.json"; }

    const TemporaryDirectory project_;

private:
    static TemporaryDirectory* shared_;
    static std::string* package_;
};

TemporaryDirectory* ProjectFileInUse::shared_ = nullptr;
std::string* ProjectFileInUse::package_ = nullptr;

TEST_F(ProjectFileInUse, SettingsHoldBelowItUnlessIsolatedOrOverruled) {
    write(R"({"rules": ")" + rules() + R"(", "profile": "mdm", "fail-on": "error"})");
    EXPECT_EQ(checkIn("sub", {package()}).status, 1);
    EXPECT_THAT(checkIn("sub", {"--format", "json", package()}).output,
                HasSubstr("\"profile\": \"mdm\""));
    EXPECT_THAT(checkIn("sub", {"--format", "json", "--profile", "auth", package()}).output,
                HasSubstr("\"profile\": \"auth\""));
    EXPECT_EQ(checkIn("sub", {"--isolated", "--rules", rules(), package()}).status, 0);
}

TEST_F(ProjectFileInUse, ShownSettingsSayWhereTheyComeFrom) {
    const std::string file =
        write("{\"profile\": \"mdm\",\n \"waivers\": [\"a.json\", \"b.json\"]}");
    const ProgramResult result = checkIn("sub", {"--show-settings", "--fail-on", "warning"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(result.output,
                StartsWith("project file: " + file + "\nprofile: mdm (" + file +
                           ":1:13)\nrules: the tree that comes with pkgvet (default)\n" +
                           "waivers: " + project_ / "a.json" + " (" + file +
                           ":2:13)\nwaivers: " + project_ / "b.json" + " (" + file +
                           ":2:13)\nbaseline: none (default)\nfail-on: warning (command line)\n"
                           "validation: off (command line)\njobs: the processors (default)\n"));
    EXPECT_THAT(
        checkIn("sub", {"--show-settings", "--isolated", "-j", "2", "--jobs", "3", "-o", "json:a",
                        "-o", "text:b", "-q"})
            .output,
        StartsWith(
            "project file: ignored (--isolated)\nprofile: regular (default)\n"
            "rules: the tree that comes with pkgvet (default)\nwaivers: none (default)\n"
            "baseline: none (default)\nfail-on: none (default)\n"
            "isolated: on (command line)\nvalidation: off (command line)\njobs: 3 (command line)\n"
            "output: json:a (command line)\noutput: text:b (command line)\n"
            "quiet: on (command line)\n"
            "sandbox: auto (default)\nscratch: none: in memory (default)\ntimeout: 120 "
            "(default)\n"));
}

TEST_F(ProjectFileInUse, DefaultsOfOtherOptionsAreShown) {
    const std::string shown = checkIn("sub", {"--show-settings"}).output;
    for (const std::string setting :
         {"cpu-time: 60", "max-unpacked: 4G, or its share of half the memory", "memory: 2G",
          "max-report: 64M", "integrity: on", "keyring: signatures do not count", "format: text",
          "color: auto"}) {
        EXPECT_THAT(shown, HasSubstr("\n" + setting + " (default)\n"));
    }
}

TEST_F(ProjectFileInUse, OneThatMayNotBeUsedIsTold) {
    const std::string file = write(R"({"fail-on": "warning"})");
    ASSERT_EQ(chmod(file.c_str(), 0666), 0);
    const ProgramResult result = checkIn("sub", {"--rules", rules(), package()});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors,
              "pkgvet: " + file + " is not used: it can be written to by every user\n");
}

TEST_F(ProjectFileInUse, FaultsEndTheRun) {
    const std::string file = write("{\"rule\": 1}");
    const ProgramResult result = checkIn("sub", {package()});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors,
              "pkgvet: " + file + ":1:2: \"rule\" is not a known key: did you mean rules?\n");
    EXPECT_EQ(checkIn("sub", {"--isolated", "--rules", rules(), package()}).status, 0);
}

TEST_F(ProjectFileInUse, BaselineOfTheProjectCanBeWrittenAndIsNotLostOtherwise) {
    const std::string file =
        write(R"({"rules": ")" + rules() + R"(", "baseline": "known.json", "fail-on": "error"})");
    EXPECT_EQ(checkIn("sub", {"--write-baseline", "../known.json", package()}).status, 1);
    EXPECT_EQ(checkIn("sub", {package()}).status, 0);
    EXPECT_EQ(checkIn("", {"--write-baseline", "known.json", package()}).status, 1);
    EXPECT_EQ(checkIn("sub", {package()}).status, 0);
    const ProgramResult result = checkIn("sub", {"-o", "json:../known.json", package()});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.errors, HasSubstr("it is also read"));
    EXPECT_EQ(checkIn("sub", {"-o", "json:" + file, package()}).status, 2);
}

}  // namespace
