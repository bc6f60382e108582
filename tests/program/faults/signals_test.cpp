// Signals of each kind, to the program and to its group, while a package is being unpacked.
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <cctype>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "tests/support/package/accepted_package.h"
#include "tests/support/program/replaced_tool.h"
#include "tests/support/program/running_program.h"
#include "tests/support/program/sandboxes.h"

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

// The process that has this argument, once there is one.
pid_t processWith(const std::string& argument) {
    for (const auto& entry : fs::directory_iterator("/proc")) {
        const std::string name = entry.path().filename();
        std::ifstream stream(entry.path() / "cmdline");
        std::string line;
        std::getline(stream, line);
        if (std::isdigit(static_cast<unsigned char>(name.front())) != 0 &&
            line.find('\0' + argument + '\0') != std::string::npos) {
            return std::stoi(name);
        }
    }
    return 0;
}

class Signals : public testing::TestWithParam<SandboxCase> {
protected:
    void SetUp() override {
        if (!ReplacedRpm2cpio::isPossible() || !isThere(GetParam())) {
            GTEST_SKIP() << "this machine does not let a test replace a tool there";
        }
        arguments_ = {"check", "--rules", acceptingRules().write(directory_), "--jobs", "1"};
        arguments_.insert(arguments_.end(), GetParam().options.begin(), GetParam().options.end());
        arguments_.push_back(acceptedPackage().write(directory_));
    }

    // The tool that reads the package is at it as long as nobody ends it.
    void expectEffect(const Case& test, void (RunningProgram::*send)(int) const) {
        SCOPED_TRACE(strsignal(test.signal));
        // Nobody else sleeps for just as long.
        const std::string seconds =
            "1000." + std::to_string(getpid()) + std::to_string(1000 + count_++);
        const ReplacedRpm2cpio tool("exec /bin/sleep " + seconds);
        RunningProgram program(arguments_, environment(tool));
        pid_t process = 0;
        ASSERT_TRUE(waitUntil([&] { return (process = processWith(seconds)) > 0; }));
        std::error_code error;
        const fs::path directory =
            fs::read_symlink("/proc/" + std::to_string(process) + "/cwd", error);
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
        // What a program that is killed leaves, its template removes. In namespaces nobody else has
        // seen the directory.
        EXPECT_TRUE(waitUntil([&] { return !isAlive(process) && !fs::exists(directory); }));
    }

private:
    static std::vector<std::string> environment(const ReplacedRpm2cpio& tool) {
        std::vector<std::string> words = {sanitizerOptions(kNoHandlers)};
        for (const auto& more : {tool.words(), GetParam().environment}) {
            words.insert(words.end(), more.begin(), more.end());
        }
        return words;
    }

    TemporaryDirectory directory_;
    std::vector<std::string> arguments_;
    int count_ = 0;
};

TEST_P(Signals, ToTheProgramEndItOrDoNothing) {
    for (const Case& test : kCases) {
        expectEffect(test, &RunningProgram::signal);
    }
}

TEST_P(Signals, ToItsGroupDoTheSame) {
    for (const Case& test : kCases) {
        expectEffect(test, &RunningProgram::signalGroup);
    }
}

INSTANTIATE_TEST_SUITE_P(Sandbox, Signals,
                         testing::Values(chosenSandbox(), landlockAlone(), noSandbox()),
                         [](const auto& sandbox) { return sandbox.param.name; });

}  // namespace
