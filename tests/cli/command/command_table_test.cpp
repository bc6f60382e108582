// The commands of the program as plain data.
#include "cli/command/command_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "cli/command/options.h"

namespace {

using namespace pkgvet::cli;
using testing::ElementsAre;

CommandRow table() {
    static Options options;
    return commandTable(&options);
}

TEST(CommandTable, HoldsWhatUsersMayType) {
    std::vector<std::string> paths;
    for (const CommandRow& command : visibleCommands(table())) {
        paths.push_back(command.path);
    }
    EXPECT_THAT(paths, ElementsAre("pkgvet", "pkgvet check", "pkgvet explain", "pkgvet report",
                                   "pkgvet merge", "pkgvet compare", "pkgvet rules",
                                   "pkgvet rules check", "pkgvet rules show", "pkgvet rules diff",
                                   "pkgvet impact", "pkgvet verify", "pkgvet waive"));
}

TEST(CommandTable, OptionsKnowTheirArguments) {
    const CommandRow check = table().commands.front();
    const auto named = [&check](const std::string& name) {
        return *std::find_if(check.options.begin(), check.options.end(),
                             [&name](const Option& row) { return row.names.back() == name; });
    };
    EXPECT_THAT(named("--quiet").names, ElementsAre("-q", "--quiet"));
    EXPECT_EQ(named("--quiet").argument, "");
    EXPECT_THAT(named("--validation").words, ElementsAre("auto", "on", "off"));
    EXPECT_TRUE(named("--waivers").takesFile);
    EXPECT_TRUE(named("--waivers").mayRepeat);
    EXPECT_TRUE(named("--output").takesFile);
    EXPECT_FALSE(named("--timeout").takesFile);
    EXPECT_TRUE(takesFiles(check));
    EXPECT_FALSE(takesFiles(table().commands[1]));
}

TEST(CommandTable, EachCommandAnswersToHelpFirst) {
    for (const CommandRow& command : visibleCommands(table())) {
        ASSERT_FALSE(command.options.empty());
        EXPECT_THAT(command.options.front().names, ElementsAre("-h", "--help")) << command.path;
    }
    EXPECT_THAT(table().options.back().names, ElementsAre("--version"));
}

// The hidden ones, which the program calls by itself, stay in the table for the parser.
TEST(CommandTable, HiddenCommandsAreNotVisibleAnywhere) {
    CommandRow hidden;
    hidden.name = "hidden";
    hidden.hidden = true;
    CommandRow shown;
    shown.name = "shown";
    CommandRow root;
    root.name = "root";
    root.commands = {hidden, shown};
    const std::vector<CommandRow> rows = visibleCommands(completed(root));
    ASSERT_EQ(rows.size(), 2U);
    ASSERT_EQ(rows[0].commands.size(), 1U);
    EXPECT_EQ(rows[0].commands[0].path, "root shown");
    EXPECT_EQ(rows[1].path, "root shown");
    EXPECT_EQ(completed(root).commands.size(), 2U);
}

TEST(CommandTable, NoOptionOccursTwiceInACommand) {
    for (const CommandRow& command : visibleCommands(table())) {
        std::vector<std::string> names;
        for (const Option& option : command.options) {
            names.insert(names.end(), option.names.begin(), option.names.end());
        }
        std::sort(names.begin(), names.end());
        EXPECT_EQ(std::adjacent_find(names.begin(), names.end()), names.end()) << command.path;
    }
}

TEST(CommandTable, OperandsAreWordsOrFiles) {
    for (const CommandRow& command : visibleCommands(table())) {
        if (command.operand) {
            EXPECT_NE(takesFiles(command), !operandWords(command).empty()) << command.path;
        } else {
            EXPECT_FALSE(takesFiles(command));
            EXPECT_TRUE(operandWords(command).empty());
        }
    }
}

}  // namespace
