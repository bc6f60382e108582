// `pkgvet rules` as a user runs it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/support/base/temporary_directory.h"
#include "tests/support/program/program.h"
#include "tests/support/rules/rule_tree.h"

namespace {

using testing::HasSubstr;

class RulesCommand : public testing::Test {
protected:
    RulesCommand() {
        tree_.regular().paths = {"/opt/[^/]+"};
        tree_.profiles[1].inheritance = "regular";
    }

    const TemporaryDirectory directory_;
    const TemporaryDirectory other_;
    RuleTree tree_;
};

TEST_F(RulesCommand, TreeThatComesWithTheProgramIsFlawless) {
    const ProgramResult result = runPkgvet({"rules", "check"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "0 errors, 0 warnings\n");
    EXPECT_EQ(result.errors, "");
}

TEST_F(RulesCommand, WarningsDoNotFailTheCheck) {
    tree_.binDir = "/usr/bin";
    const std::string path = tree_.write(directory_);
    const ProgramResult result = runPkgvet({"rules", "check", path});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, testing::MatchesRegex("warning: " + path +
                                                     ":[0-9]+:[0-9]+: \"/usr/bin\" does not end in "
                                                     "a slash\n0 errors, 1 warning\n"));
}

TEST_F(RulesCommand, WhatDropsRulesFailsTheCheckAndIsAWarningWhereTheTreeIsUsed) {
    const std::string path = tree_.write(directory_);
    const std::string list = directory_ / "profile-0/libraries.json";
    writeFile(list, R"({"libraries": [{"name": "alowed", "list": []}]})");
    const std::string fault = list +
                              ":1:25: \"alowed\" is not the name of a tier, so its list is "
                              "dropped: did you mean allowed?\n";
    const ProgramResult result = runPkgvet({"rules", "check", path});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.output, "error: " + fault + "1 error, 0 warnings\n");
    const ProgramResult check =
        runPkgvet({"check", "--allow-empty", "--rules", path, directory_.path().string()});
    EXPECT_EQ(check.status, 0);
    EXPECT_EQ(check.errors.find("pkgvet: warning: " + fault), 0U) << check.errors;
}

TEST_F(RulesCommand, CheckNamesTheFaultsOfAllProfilesInOneRun) {
    tree_.regular().libraries.allowed = {"("};
    tree_.profiles[5].requires_.unstable = {"ok", "["};
    const std::string path = tree_.write(directory_);
    const ProgramResult result = runPkgvet({"rules", "check", path});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.output, HasSubstr("error: " + (directory_ / "profile-0/libraries.json") +
                                         ":1:41: \"(\" is not a regular expression: "));
    EXPECT_THAT(result.output, HasSubstr("error: " + (directory_ / "profile-5/requires.json") +
                                         ":1:75: \"[\" is not a regular expression: "));
    EXPECT_THAT(result.output, HasSubstr("\n2 errors, 0 warnings\n"));
    EXPECT_EQ(runPkgvet({"rules", "check", "--profile", "mdm", path}).status, 0);
}

TEST_F(RulesCommand, ShowNamesTheFileOfEachElement) {
    const std::string path = tree_.write(directory_);
    const std::string file = directory_ / "profile-0/paths.json";
    const ProgramResult text = runPkgvet({"rules", "show", "--profile", "extended", path});
    EXPECT_EQ(text.status, 0);
    EXPECT_THAT(text.output, HasSubstr("name: extended\n"));
    EXPECT_THAT(text.output, HasSubstr("\npaths (1)\n  /opt/[^/]+  " + file + "\n"));
    const ProgramResult json =
        runPkgvet({"rules", "show", "--profile", "extended", "--format", "json", path});
    EXPECT_EQ(json.status, 0);
    EXPECT_EQ(nlohmann::json::parse(json.output)["lists"]["paths"],
              nlohmann::json::parse(R"([{"text": "/opt/[^/]+", "file": ")" + file + "\"}]"));
}

TEST_F(RulesCommand, TreeThatCannotBeUsedIsNotShown) {
    const std::string path = tree_.write(directory_);
    writeFile(directory_ / "profile-0/paths.json", "{}");
    const std::string sound = tree_.write(other_);
    const std::string fault =
        "pkgvet: " + (directory_ / "profile-0/paths.json") + ":1:1: \"paths\" is missing\n";
    for (const std::vector<std::string>& command : {std::vector<std::string>{"rules", "show", path},
                                                    {"rules", "diff", sound, path},
                                                    {"rules", "diff", path, sound}}) {
        const ProgramResult result = runPkgvet(command);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors, fault);
    }
}

TEST_F(RulesCommand, DiffSaysWhatChanged) {
    const std::string before = tree_.write(directory_);
    const std::string same = tree_.write(other_);
    ProgramResult result = runPkgvet({"rules", "diff", before, same});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "");

    tree_.regular().paths = {"/srv"};
    tree_.regular().requireIcons = true;
    const std::string after = tree_.write(other_);
    result = runPkgvet({"rules", "diff", before, after});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output,
              "require_icons\n  - false\n  + true\npaths\n  - /opt/[^/]+\n  + /srv\n");
    EXPECT_EQ(runPkgvet({"rules", "diff", "--profile", "extended", before, after}).output,
              "paths\n  - /opt/[^/]+\n  + /srv\n");
    result = runPkgvet({"rules", "diff", "--format", "json", before, after});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(nlohmann::json::parse(result.output)["differences"]["paths"]["added"][0], "/srv");
}

TEST_F(RulesCommand, UsageErrorsEndWithTwo) {
    EXPECT_EQ(runPkgvet({"rules"}).status, 2);
    EXPECT_EQ(runPkgvet({"rules", "diff", "/a"}).status, 2);
    EXPECT_EQ(runPkgvet({"rules", "show", "--profile", "all"}).status, 2);
    EXPECT_EQ(runPkgvet({"rules", "show", "--format", "sarif"}).status, 2);
    EXPECT_EQ(runPkgvet({"rules", "check", "/none.json"}).status, 2);
}

TEST(Version, NamesTheLibrariesInUse) {
    const ProgramResult result = runPkgvet({"--version"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output,
                testing::MatchesRegex("pkgvet [0-9.]+\nlibrpm [0-9.]+\nGLib [0-9.]+\n"
                                      "json-glib [0-9.]+\nlibpng [0-9.]+\nlibxml2 [0-9.]+\n"));
}

}  // namespace
