// Manual pages and completion scripts against the table of options.
#include "cli/generate/completions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "cli/command/options.h"
#include "tests/support/base/source_tree.h"
#include "tests/support/package/package_builder.h"

namespace {

using namespace pkgvet::cli;
using testing::ElementsAre;
using testing::HasSubstr;

// With few ids, so that what is offered can be compared whole.
CommandRow table() {
    static Options options;
    CommandRow all = commandTable(&options);
    for (CommandRow& command : all.commands) {
        if (command.name == "explain") {
            command.operand->words = {"icon-missing", "rpath-not-allowed"};
        }
    }
    return all;
}

std::string scriptOf(void (*write)(const CommandRow&, std::ostream&)) {
    std::ostringstream stream;
    write(table(), stream);
    return stream.str();
}

// What bash offers once words are typed, the last of them being completed; sorted.
std::vector<std::string> offered(const std::vector<std::string>& words) {
    const TemporaryDirectory directory;
    std::string line = "source " + directory.write("pkgvet", scriptOf(writeBashCompletion)) +
                       "; COMP_WORDS=(pkgvet";
    for (const std::string& word : words) {
        line += " '" + word + "'";
    }
    line += "); COMP_CWORD=" + std::to_string(words.size()) +
            "; _pkgvet; printf '%s\\n' \"${COMPREPLY[@]}\"";
    std::string output;
    // A locale that the machine lacks makes bash complain.
    EXPECT_EQ(runProgram({"env", "LC_ALL=C", "bash", "-euc", line}, &output), 0) << output;
    std::istringstream stream(output);
    std::vector<std::string> result;
    for (std::string reply; std::getline(stream, reply);) {
        if (!reply.empty()) {
            result.push_back(reply);
        }
    }
    std::sort(result.begin(), result.end());
    return result;
}

TEST(ManualPage, NamesEveryCommandAndOption) {
    const std::string page = readFile(sourceFile("docs/man/pkgvet.1.scd"));
    for (const CommandRow& command : visibleCommands(table())) {
        EXPECT_THAT(page, HasSubstr("*" + command.path));
        for (const Option& option : command.options) {
            for (const std::string& name : option.names) {
                EXPECT_THAT(page, HasSubstr("*" + name + "*")) << command.path;
            }
            for (const std::string& word : option.words) {
                EXPECT_THAT(page, HasSubstr("*" + word + "*")) << command.path;
            }
        }
    }
}

TEST(Completions, NameEveryCommandAndOption) {
    const std::string bash = scriptOf(writeBashCompletion);
    const std::string fish = scriptOf(writeFishCompletion);
    const std::string zsh = scriptOf(writeZshCompletion);
    for (const CommandRow& command : visibleCommands(table())) {
        for (const Option& option : command.options) {
            for (const std::string& name : option.names) {
                SCOPED_TRACE(command.path + " " + name);
                const bool isLong = name.starts_with("--");
                EXPECT_THAT(bash, HasSubstr(" " + name));
                EXPECT_THAT(fish, HasSubstr(isLong ? " -l " + name.substr(2) + " "
                                                   : " -s " + name.substr(1) + " "));
                EXPECT_THAT(zsh, testing::ContainsRegex("[)*]" + name + "[=+]?\\["));
            }
        }
    }
}

TEST(Completions, HiddenCommandsAreNotOffered) {
    for (const auto write : {writeBashCompletion, writeFishCompletion, writeZshCompletion}) {
        EXPECT_THAT(scriptOf(write), testing::Not(HasSubstr("worker")));
    }
}

TEST(BashCompletion, OffersWhatFitsThePlace) {
    EXPECT_THAT(offered({"ru"}), ElementsAre("rules"));
    EXPECT_THAT(offered({"rules", ""}), ElementsAre("--help", "-h", "check", "diff", "show"));
    EXPECT_THAT(offered({"explain", "i"}), ElementsAre("icon-missing"));
    EXPECT_THAT(offered({"check", "--wa"}), ElementsAre("--waivers"));
    EXPECT_THAT(offered({"check", "--profile", "a"}), ElementsAre("all", "antivirus", "auth"));
    EXPECT_THAT(offered({"check", "--profile", "=", "a"}), ElementsAre("all", "antivirus", "auth"));
    EXPECT_THAT(offered({"check", "--profile", "="}), testing::SizeIs(7));
    EXPECT_THAT(offered({"rules", "show", "--format", ""}), ElementsAre("json", "text"));
    EXPECT_THAT(offered({"check", "a.rpm", "--fail-on", ""}), ElementsAre("error", "warning"));
}

TEST(BashCompletion, LeavesFilesToTheShell) {
    EXPECT_THAT(offered({"check", ""}), ElementsAre());
    EXPECT_THAT(offered({"check", "--rules", ""}), ElementsAre());
    EXPECT_THAT(offered({"rules", "check", "a"}), ElementsAre());
}

TEST(Completions, ExplainTakesIds) {
    EXPECT_THAT(scriptOf(writeFishCompletion),
                HasSubstr("pkgvet explain' -a 'icon-missing rpath-not-allowed'\n"));
    EXPECT_THAT(scriptOf(writeZshCompletion), HasSubstr("(icon-missing rpath-not-allowed)'\n"));
}

// The other shells are not always there.
TEST(Completions, ScriptsAreWellFormed) {
    const TemporaryDirectory directory;
    struct Case {
        const char* shell;
        std::string script;
    };
    const Case cases[] = {{"bash", scriptOf(writeBashCompletion)},
                          {"fish", scriptOf(writeFishCompletion)},
                          {"zsh", scriptOf(writeZshCompletion)}};
    for (const Case& test : cases) {
        if (runProgram({"which", test.shell}) == 0) {
            std::string output;
            EXPECT_EQ(
                runProgram({test.shell, "-n", directory.write("script", test.script)}, &output), 0)
                << output;
        }
    }
}

}  // namespace
