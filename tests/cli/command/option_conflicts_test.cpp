// Options that contradict one another or come to nothing.
#include "cli/command/option_conflicts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/command/options.h"

namespace {

using namespace pkgvet::cli;
using testing::HasSubstr;

std::string conflictOf(std::vector<const char*> line) {
    line.insert(line.begin(), {"pkgvet", "check", "a.rpm"});
    Options options;
    const int count = static_cast<int>(line.size());
    EXPECT_EQ(parseCommandLine(commandTable(&options), count, line.data()), std::nullopt);
    return conflictIn(options.check);
}

TEST(OptionConflicts, WhatComesToNothingIsNamed) {
    struct Case {
        std::vector<const char*> line;
        const char* option;
    };
    const Case cases[] = {
        {{"-0"}, "--null"},
        {{"--format", "json", "-o", "text:-"}, "one format"},
        {{"-o", "json:-", "-o", "text:-"}, "one format"},
        {{"-q", "--explain"}, "contradict"},
        {{"--explain", "--format", "json"}, "--explain"},
        {{"--explain", "-o", "sarif:-"}, "--explain"},
        {{"-q", "--format", "concise"}, "--quiet"},
        {{"--color", "always", "--format", "junit"}, "--color"},
        {{"--show-waived", "--format", "sarif"}, "--show-waived"},
        {{"--timings", "--format", "github"}, "--timings"},
        {{"--split", "-o", "sarif:-"}, "--split"},
        {{"--sandbox", "off", "--scratch", "/tmp"}, "--scratch"},
        {{"--integrity", "off", "--keyring", "keys"}, "--keyring"},
        {{"-q", "--format", "gitlab"}, "--quiet"},
        {{"--explain", "--format", "markdown"}, "--explain"},
        {{"--timings", "--format", "markdown"}, "--timings"},
        {{"--timings", "--format", "gitlab"}, "--timings"},
        {{"--show-waived", "--format", "gitlab"}, "--show-waived"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.option);
        EXPECT_THAT(conflictOf(test.line), HasSubstr(test.option));
    }
}

TEST(OptionConflicts, WhatHasAnEffectIsLeftAlone) {
    const std::vector<const char*> lines[] = {
        {},
        {"-0", "--files-from", "list"},
        {"--format", "json", "-o", "json:-", "-o", "text:file"},
        {"--explain", "--format", "json", "-o", "text:file"},
        {"--explain", "--format", "github"},
        {"-q", "--timings", "--color", "always", "--show-waived"},
        {"--color", "never", "--format", "json"},
        {"--split", "-o", "sarif:file"},
        {"--scratch", "/tmp"},
        {"--keyring", "keys"},
    };
    for (const std::vector<const char*>& line : lines) {
        EXPECT_EQ(conflictOf(line), "");
    }
}

}  // namespace
