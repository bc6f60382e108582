// What is said of a command line that makes no sense.
#include "cli/command/command_line_error.h"

#include <gtest/gtest.h>

#include "cli/command/options.h"

namespace {

using namespace pkgvet::cli;

std::string errorOf(const std::vector<std::string>& words) {
    Options options;
    return commandLineError(commandTable(&options), words, "the cause");
}

TEST(CommandLineError, NamesTheWordThatDoesNotExistAndTheNearest) {
    struct Case {
        std::vector<std::string> words;
        const char* error;
    };
    const Case cases[] = {
        {{"explian", "x"}, "unknown command explian: did you mean explain?"},
        {{"--vresion"}, "unknown option --vresion: did you mean --version?"},
        {{"check", "a", "--quite"}, "unknown option --quite: did you mean --quiet?"},
        {{"check", "-quiet", "a"}, "unknown option -quiet: did you mean --quiet?"},
        {{"check", "--zzzzzzz=3"}, "unknown option --zzzzzzz; see pkgvet check --help"},
        {{"rules", "dif", "a", "b"}, "unknown command dif: did you mean diff?"},
        {{"rules", "show", "--profil", "x"}, "unknown option --profil: did you mean --profile?"},
        {{"\033[31m"}, "unknown command \\x1b[31m; see pkgvet --help"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.error);
        EXPECT_EQ(errorOf(test.words), test.error);
    }
}

TEST(CommandLineError, WordsThatExistLeaveTheCauseToTheParser) {
    const std::vector<std::string> lines[] = {
        {"check"},
        {"check", "--rules", "--formt", "a"},
        {"check", "--rules=x", "-qj4", "-qj", "--nope", "-", "--", "--nope"},
    };
    for (const std::vector<std::string>& words : lines) {
        EXPECT_EQ(errorOf(words), "the cause; see pkgvet check --help");
    }
}

TEST(CommandLineError, CommandThatIsMissingIsSaid) {
    EXPECT_EQ(errorOf({}), "a command is missing; see pkgvet --help");
    EXPECT_EQ(errorOf({"rules"}), "a command is missing; see pkgvet rules --help");
}

}  // namespace
