// Command lines and what they ask for.
#include "cli/command/options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/program/program.h"

namespace {

using namespace pkgvet::cli;
using testing::ElementsAre;
using testing::IsEmpty;

Options parsed(std::vector<const char*> line) {
    Options options;
    line.insert(line.begin(), "pkgvet");
    const int count = static_cast<int>(line.size());
    EXPECT_EQ(parseCommandLine(commandTable(&options), count, line.data()), std::nullopt);
    return options;
}

TEST(Options, CheckStartsOutWithDefaults) {
    const Options options = parsed({"check", "a.rpm"});
    EXPECT_EQ(options.command, Command::Check);
    EXPECT_THAT(options.check.input.paths, ElementsAre("a.rpm"));
    EXPECT_EQ(options.check.judging.rules, "");
    EXPECT_THAT(options.check.judging.profiles, IsEmpty());
    EXPECT_EQ(options.check.judging.validation, ValidationMode::Auto);
    EXPECT_EQ(options.check.judging.jobs, 0U);
    EXPECT_EQ(options.check.judging.limits.seconds, 120);
    EXPECT_THAT(options.check.policy.waivers, IsEmpty());
    EXPECT_EQ(options.check.policy.failOn, std::nullopt);
    EXPECT_EQ(options.check.report.format, std::nullopt);
    EXPECT_EQ(options.check.report.color, ColorMode::Auto);
    EXPECT_FALSE(options.check.report.quiet);
}

TEST(Options, EachFloorOfCheckReceivesItsOwn) {
    const CheckOptions check = parsed({"check",
                                       "a",
                                       "--files-from",
                                       "l",
                                       "-0",
                                       "--files-from=m",
                                       "--rules",
                                       "r.json",
                                       "--profile",
                                       "mdm",
                                       "--validation",
                                       "off",
                                       "-j4",
                                       "--timeout=2.5",
                                       "--waivers",
                                       "w",
                                       "--show-waived",
                                       "--baseline",
                                       "b",
                                       "--write-baseline",
                                       "n",
                                       "--fail-on",
                                       "warning",
                                       "--exit-zero",
                                       "--format",
                                       "json",
                                       "-qo",
                                       "sarif:s:t",
                                       "--color",
                                       "never",
                                       "--explain",
                                       "--timings",
                                       "z"})
                                   .check;
    EXPECT_THAT(check.input.paths, ElementsAre("a", "z"));
    EXPECT_THAT(check.input.filesFrom, ElementsAre("l", "m"));
    EXPECT_TRUE(check.input.nulSeparated);
    EXPECT_EQ(check.judging.rules, "r.json");
    EXPECT_THAT(check.judging.profiles, ElementsAre(Profiles::Mdm));
    EXPECT_EQ(check.judging.validation, ValidationMode::Off);
    EXPECT_EQ(check.judging.jobs, 4U);
    EXPECT_EQ(check.judging.limits.seconds, 2.5);
    EXPECT_THAT(check.policy.waivers, ElementsAre("w"));
    EXPECT_TRUE(check.policy.showWaived);
    EXPECT_EQ(check.policy.baseline, "b");
    EXPECT_EQ(check.policy.writeBaseline, "n");
    EXPECT_EQ(check.policy.failOn, Severity::Warning);
    EXPECT_TRUE(check.policy.exitZero);
    EXPECT_EQ(check.report.format, Format::Json);
    ASSERT_EQ(check.report.outputs.size(), 1U);
    EXPECT_EQ(check.report.outputs[0].format, Format::Sarif);
    EXPECT_EQ(check.report.outputs[0].path, "s:t");
    EXPECT_EQ(check.report.color, ColorMode::Never);
    EXPECT_TRUE(check.report.quiet);
    EXPECT_TRUE(check.report.explain);
    EXPECT_TRUE(check.report.timings);
}

TEST(Options, LastOccurrenceCountsUnlessAnOptionMayRepeat) {
    const CheckOptions check =
        parsed({"check", "a", "--rules", "1", "--rules", "2", "--profile", "mdm", "--profile",
                "auth", "--profile", "mdm", "--jobs", "1", "--jobs", "2", "-otext:1", "-ojson:2"})
            .check;
    EXPECT_EQ(check.judging.rules, "2");
    EXPECT_THAT(check.judging.profiles, ElementsAre(Profiles::Mdm, Profiles::Auth));
    EXPECT_EQ(check.judging.jobs, 2U);
    EXPECT_EQ(check.report.outputs.size(), 2U);
}

TEST(Options, AnyTextCanBeAPath) {
    EXPECT_THAT(parsed({"check", "--", "--help", "{}", ""}).check.input.paths,
                ElementsAre("--help", "{}", ""));
}

TEST(Options, EachActionOnRulesIsKnown) {
    const RulesOptions check = parsed({"rules", "check", "t"}).rules;
    EXPECT_EQ(check.action, RulesAction::Check);
    EXPECT_THAT(check.trees, ElementsAre("t"));
    EXPECT_THAT(check.profiles, IsEmpty());
    const RulesOptions show = parsed({"rules", "show", "--format", "json"}).rules;
    EXPECT_EQ(show.action, RulesAction::Show);
    EXPECT_THAT(show.trees, IsEmpty());
    EXPECT_EQ(show.format, Format::Json);
    const RulesOptions diff = parsed({"rules", "diff", "a", "b", "--profile", "market"}).rules;
    EXPECT_EQ(diff.action, RulesAction::Diff);
    EXPECT_THAT(diff.trees, ElementsAre("a", "b"));
    EXPECT_THAT(diff.profiles, ElementsAre(Profiles::Market));
}

TEST(Options, ExplainTakesAnyNumberOfIds) {
    const Options options = parsed({"explain", "a", "--color=always", "b"});
    EXPECT_EQ(options.command, Command::Explain);
    EXPECT_THAT(options.explain.ids, ElementsAre("a", "b"));
    EXPECT_EQ(options.explain.color, ColorMode::Always);
    EXPECT_THAT(parsed({"explain"}).explain.ids, IsEmpty());
}

// Through the program, since the parser writes to standard error.
TEST(Options, WhatIsWrongIsSaid) {
    struct Case {
        std::vector<std::string> line;
        const char* error;
    };
    const Case cases[] = {
        {{}, "a command is missing; see pkgvet --help"},
        {{"nope"}, "unknown command nope; see pkgvet --help"},
        {{"chek"}, "unknown command chek: did you mean check?"},
        {{"check"}, "PATH or --files-from is required; see pkgvet check --help"},
        {{"check", "a", "--frob"}, "unknown option --frob; see pkgvet check --help"},
        {{"check", "a", "--formt=json"}, "unknown option --formt: did you mean --format?"},
        {{"check", "a", "--jobs", "0"},
         "--jobs: Value 0 not in range 1 to 1024; see pkgvet check --help"},
        {{"check", "a", "-j0", "-j1"},
         "--jobs: Value 0 not in range 1 to 1024; see pkgvet check --help"},
        {{"check", "a", "--timeout", "nan"},
         "--timeout: nan is not a time; see pkgvet check --help"},
        {{"check", "a", "--profile", "Mdm"},
         "--profile: Mdm not in {regular,extended,mdm,antivirus,auth,market,all}; see pkgvet check "
         "--help"},
        {{"check", "a", "--fail-on", "info"},
         "--fail-on: info not in {error,warning}; see pkgvet check --help"},
        {{"check", "a", "--output", "text"},
         "--output: not FORMAT:PATH: text; see pkgvet check --help"},
        {{"check", "a", "--output", "text:"},
         "--output: not FORMAT:PATH: text:; see pkgvet check --help"},
        {{"check", "a", "-o", "pdf:x"},
         "--output: not FORMAT:PATH: pdf:x; see pkgvet check --help"},
        {{"rules"}, "a command is missing; see pkgvet rules --help"},
        {{"rules", "shw"}, "unknown command shw: did you mean show?"},
        {{"rules", "diff"}, "FILE is required; see pkgvet rules diff --help"},
        {{"rules", "show", "--profile", "all"},
         "--profile: all not in {regular,extended,mdm,antivirus,auth,market}; see pkgvet rules "
         "show --help"},
        {{"explain", "--color", "red"},
         "--color: red not in {auto,always,never}; see pkgvet explain --help"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.error);
        const ProgramResult result = runPkgvet(test.line);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors, std::string("pkgvet: ") + test.error + "\n");
    }
}

TEST(Options, HelpAndVersionAreNoErrors) {
    for (const char* flag : {"--help", "-h", "--version"}) {
        const ProgramResult result = runPkgvet({flag});
        EXPECT_EQ(result.status, 0) << flag;
        EXPECT_NE(result.output, "");
        EXPECT_EQ(result.errors, "");
    }
}

}  // namespace
