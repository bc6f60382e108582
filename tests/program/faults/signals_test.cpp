// Signals of each kind, to the program and to its group, while a package is being unpacked.
#include <gtest/gtest.h>
#include <signal.h>

#include <filesystem>

#include "tests/support/package/accepted_package.h"
#include "tests/support/program/replaced_tool.h"
#include "tests/support/program/running_program.h"

namespace {

namespace fs = std::filesystem;

// The sanitizers have handlers for some of these signals.
const std::string kNoHandlers =
    "handle_segv=0:handle_sigbus=0:handle_sigfpe=0:handle_sigill=0:handle_abort=0";

enum class Effect { EndsInOrder, Ends, None };

struct Case {
    int signal;
    Effect effect;
};

const Case kCases[] = {
    {SIGINT, Effect::EndsInOrder},  {SIGTERM, Effect::EndsInOrder}, {SIGHUP, Effect::EndsInOrder},
    {SIGQUIT, Effect::EndsInOrder}, {SIGABRT, Effect::Ends},        {SIGALRM, Effect::Ends},
    {SIGBUS, Effect::Ends},         {SIGFPE, Effect::Ends},         {SIGILL, Effect::Ends},
    {SIGIO, Effect::Ends},          {SIGKILL, Effect::Ends},        {SIGPROF, Effect::Ends},
    {SIGPWR, Effect::Ends},         {SIGSEGV, Effect::Ends},        {SIGSYS, Effect::Ends},
    {SIGTRAP, Effect::Ends},        {SIGUSR1, Effect::Ends},        {SIGUSR2, Effect::Ends},
    {SIGVTALRM, Effect::Ends},      {SIGXCPU, Effect::Ends},        {SIGXFSZ, Effect::Ends},
    {SIGRTMIN, Effect::Ends},       {SIGRTMAX, Effect::Ends},       {SIGCHLD, Effect::None},
    {SIGCONT, Effect::None},        {SIGPIPE, Effect::None},        {SIGSTOP, Effect::None},
    {SIGTSTP, Effect::None},        {SIGTTIN, Effect::None},        {SIGTTOU, Effect::None},
    {SIGURG, Effect::None},         {SIGWINCH, Effect::None},
};

class Signals : public testing::Test {
protected:
    void SetUp() override {
        if (!ReplacedCpio::isPossible()) {
            GTEST_SKIP() << "this machine does not let a test replace a tool";
        }
        arguments_ = {"check",
                      "--sandbox",
                      "off",
                      "--rules",
                      acceptingRules().write(directory_),
                      "--jobs",
                      "1",
                      acceptedPackage().write(directory_)};
    }

    void expectEffect(const Case& test, void (RunningProgram::*send)(int) const) const {
        SCOPED_TRACE(strsignal(test.signal));
        const ReplacedCpio cpio("pwd >$NOTES/directory; echo $$ >$NOTES/process; exec sleep 1000");
        std::vector<std::string> words = {sanitizerOptions(kNoHandlers)};
        const std::vector<std::string> more = cpio.words();
        words.insert(words.end(), more.begin(), more.end());
        RunningProgram program(arguments_, words);
        ASSERT_TRUE(waitUntil([&cpio] { return cpio.note("process").ends_with('\n'); }));
        (program.*send)(test.signal);
        if (test.effect == Effect::None) {
            // It goes on as if nothing had been, so that it can be ended as ever.
            program.signal(SIGCONT);
            program.signal(SIGTERM);
        }
        const ProgramResult result = program.wait();
        EXPECT_EQ(result.status, 128 + (test.effect == Effect::None ? SIGTERM : test.signal));
        EXPECT_EQ(result.errors.find("interrupted") != std::string::npos,
                  test.effect != Effect::Ends)
            << result.errors;
        expectNothingLeft(cpio);
    }

    static void expectNothingLeft(const ReplacedCpio& cpio) {
        const pid_t process = std::stoi(cpio.note("process"));
        const std::string line = cpio.note("directory");
        const std::string directory = line.substr(0, line.size() - 1);
        // What a program that is killed leaves, its template removes.
        EXPECT_TRUE(waitUntil([&] { return !isAlive(process) && !fs::exists(directory); }));
    }

private:
    TemporaryDirectory directory_;
    std::vector<std::string> arguments_;
};

TEST_F(Signals, ToTheProgramEndItOrDoNothing) {
    for (const Case& test : kCases) {
        expectEffect(test, &RunningProgram::signal);
    }
}

TEST_F(Signals, ToItsGroupDoTheSame) {
    for (const Case& test : kCases) {
        expectEffect(test, &RunningProgram::signalGroup);
    }
}

}  // namespace
