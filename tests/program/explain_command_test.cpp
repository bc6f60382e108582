// The command explain as a whole.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/command/explain.h"
#include "tests/support/program/program.h"

namespace pkgvet::cli {

namespace {

std::string textOf(std::string_view id) {
    std::ostringstream stream;
    writeEntry(*findEntry(id), false, stream);
    return stream.str();
}

}  // namespace

TEST(ExplainCommand, PrintsTheEntriesThatWereAskedForInTheirOrder) {
    const ProgramResult result = runPkgvet({"explain", "rpath-missing", "setuid-file"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, textOf("rpath-missing") + "\n" + textOf("setuid-file"));
    EXPECT_EQ(result.errors, "");
}

TEST(ExplainCommand, PrintsAllEntriesByChapterWhenNoneIsAskedFor) {
    const ProgramResult result = runPkgvet({"explain"});
    EXPECT_EQ(result.status, 0);
    std::size_t position = 0;
    for (const Chapter& chapter : chapters()) {
        position = result.output.find(std::string(chapter.title) + "\n====", position);
        ASSERT_NE(position, std::string::npos) << chapter.title;
        for (const Entry& entry : chapter.entries) {
            position = result.output.find(textOf(entry.id), position);
            ASSERT_NE(position, std::string::npos) << entry.id;
        }
    }
}

TEST(ExplainCommand, AnUnknownIdIsAUsageErrorThatNamesTheNearest) {
    const ProgramResult result = runPkgvet({"explain", "setuid-file", "rpath", "libary\033"});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_TRUE(result.errors.starts_with(
        "pkgvet: no finding has the id \"rpath\"; the nearest are rpath-empty, rpath-missing, "
        "rpath-not-allowed\npkgvet: no finding has the id \"libary"));
    EXPECT_EQ(result.errors.find('\033'), std::string::npos);
}

TEST(ExplainCommand, ColourIsForTerminalsUnlessAskedFor) {
    EXPECT_EQ(runPkgvet({"explain", "rpath-empty"}).output.find('\033'), std::string::npos);
    EXPECT_NE(runPkgvet({"explain", "--color", "always", "rpath-empty"}).output.find('\033'),
              std::string::npos);
}

TEST(ExplainCommand, JsonHasTheCatalogueForPrograms) {
    const ProgramResult one = runPkgvet({"explain", "--format", "json", "setuid-file"});
    EXPECT_EQ(one.status, 0);
    const auto rules = nlohmann::json::parse(one.output)["rules"];
    ASSERT_EQ(rules.size(), 1U);
    EXPECT_EQ(rules[0]["id"], "setuid-file");
    EXPECT_EQ(rules[0]["severity"], "error");
    EXPECT_EQ(rules[0]["never_excused"], true);
    EXPECT_EQ(rules[0]["chapter"], "Files");
    EXPECT_NE(rules[0]["fix"], "");
    const ProgramResult all = runPkgvet({"explain", "--format", "json"});
    EXPECT_GT(nlohmann::json::parse(all.output)["rules"].size(), 90U);
}

TEST(ExplainCommand, WhatWasNotJudgedIsExplained) {
    const ProgramResult result = runPkgvet({"explain", "not-judged"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output.find("not-judged (error)\n"), 0U) << result.output;
}

}  // namespace pkgvet::cli
