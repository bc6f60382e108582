// How judges end, and what becomes of what they leave.
#include "cli/worker/judge_process.h"

#include <fcntl.h>
#include <glib.h>
#include <gmock/gmock.h>
#include <rpm/rpmutil.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <limits>
#include <new>
#include <vector>

#include "tests/support/program/judge_run.h"
#include "tests/support/program/running_program.h"

namespace {

using namespace pkgvet::cli;
using testing::HasSubstr;

namespace fs = std::filesystem;

std::string causeOf(const JudgeFunction& judge, SandboxMode sandbox, const Limits& limits = {}) {
    const PackageReport report = runJudge(judge, sandbox, limits);
    return std::string(causeCodeName(report.causeCode)) + ": " + report.cause;
}

// How many processes of this machine have such an argument.
std::size_t processesWith(const std::string& argument) {
    std::size_t count = 0;
    for (const auto& entry : fs::directory_iterator("/proc")) {
        std::ifstream stream(entry.path() / "cmdline");
        std::string line;
        count += std::getline(stream, line) && line.find(argument) != std::string::npos ? 1 : 0;
    }
    return count;
}

class JudgeProcessTest : public testing::TestWithParam<SandboxMode> {};

TEST_P(JudgeProcessTest, JudgeThatAnswersIsHeard) {
    const PackageReport report =
        runJudge([](const Surroundings&) { return acceptedReport("org.example.app"); }, GetParam());
    EXPECT_TRUE(report.judged()) << report.cause;
    EXPECT_EQ(report.name, "org.example.app");
}

TEST_P(JudgeProcessTest, EndsOfJudgesAreCauses) {
    struct Case {
        const char* name;
        JudgeFunction judge;
        std::string cause;
    };
    const Case cases[] = {
        {"kill",
         [](const Surroundings&) -> PackageReport {
             raise(SIGKILL);
             _exit(0);
         },
         "crashed: the judge "},
        {"abort", [](const Surroundings&) -> PackageReport { std::abort(); },
         "crashed: the judge was ended by signal 6 (Aborted)"},
        {"status", [](const Surroundings&) -> PackageReport { _exit(3); },
         "crashed: the judge ended with status 3"},
        {"silence", [](const Surroundings&) -> PackageReport { _exit(0); },
         "crashed: the judge gave no valid answer"},
        {"exception", [](const Surroundings&) -> PackageReport { throw std::runtime_error("x"); },
         "crashed: the judge ended with status 1"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        EXPECT_THAT(causeOf(test.judge, GetParam()), testing::StartsWith(test.cause));
    }
}

#if !defined(__SANITIZE_ADDRESS__)
// The sanitizers end a process that gets no memory with words of their own.
TEST_P(JudgeProcessTest, WhateverEndsItForWantOfMemoryItIsOutOfIt) {
    struct Case {
        const char* name;
        JudgeFunction judge;
    };
    const Case cases[] = {
        {"GLib",
         [](const Surroundings&) -> PackageReport {
             g_malloc(std::numeric_limits<gssize>::max());
             _exit(0);
         }},
        {"librpm",
         [](const Surroundings&) -> PackageReport {
             rmalloc(std::numeric_limits<ssize_t>::max());
             _exit(0);
         }},
        {"a judge", [](const Surroundings&) -> PackageReport { throw std::bad_alloc(); }},
        {"a judge where nothing may be thrown",
         [](const Surroundings&) noexcept -> PackageReport {
             return acceptedReport(std::string(std::string().max_size(), 'x'));
         }},
    };
    // A judge that exits would write what this process has not written yet.
    std::fflush(stdout);
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        const PackageReport report = runJudge(test.judge, GetParam());
        EXPECT_EQ(report.causeCode, CauseCode::OutOfMemory);
        EXPECT_EQ(report.cause, "it took more memory than --memory allows");
        EXPECT_EQ(report.lastErrorLine, "");
    }
}
#endif

TEST_P(JudgeProcessTest, ProcessorTimeIsBounded) {
    Limits limits;
    limits.processorSeconds = 1;
    const auto spin = [](const Surroundings&) -> PackageReport {
        while (getppid() >= 0) {
        }
        return {};
    };
    EXPECT_EQ(causeOf(spin, GetParam(), limits),
              "out-of-time: it took more processor time than --cpu-time allows");
}

TEST_P(JudgeProcessTest, AnswerIsBounded) {
    Limits limits;
    limits.report = 1000;
    const auto talk = [](const Surroundings&) { return acceptedReport(std::string(2000, 'x')); };
    EXPECT_EQ(causeOf(talk, GetParam(), limits),
              "too-large: there is more to say about it than --max-report allows");
}

TEST_P(JudgeProcessTest, LastLineOnStandardErrorIsKept) {
    const PackageReport report = runJudge(
        [](const Surroundings&) -> PackageReport {
            for (int i = 0; i < 100000; ++i) {
                static_cast<void>(write(STDERR_FILENO, "noise\n", 6));
            }
            static_cast<void>(write(STDERR_FILENO, "the end\n", 8));
            _exit(3);
        },
        GetParam());
    EXPECT_EQ(report.lastErrorLine, "the end");
}

TEST_P(JudgeProcessTest, WhatAJudgeStartedEndsWithIt) {
    // Nobody else sleeps for just as long.
    const std::string seconds = "1000." + std::to_string(getpid());
    const std::string command = "sleep " + seconds + "; sleep " + seconds;
    const auto leaveBehind = [&command](const Surroundings&) {
        if (fork() == 0) {
            if (fork() == 0) {
                execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char*>(nullptr));
            }
            _exit(0);
        }
        return acceptedReport("x");
    };
    runJudge(leaveBehind, GetParam());
    EXPECT_TRUE(waitUntil([&seconds] { return processesWith(seconds) == 0; }));
}

// The program may give a judge up at any time, with what that has made and started.
TEST_P(JudgeProcessTest, JudgeEndsWithItsObject) {
    adoptOrphans();
    // Those of other tests.
    while (waitpid(-1, nullptr, WNOHANG) > 0) {
    }
    TemplateOptions options;
    options.sandbox = GetParam();
    options.prepare = [] {
        return [](const Surroundings& surroundings) -> PackageReport {
            std::ofstream(surroundings.copyPath) << "x" << std::flush;
            fork();
            for (;;) {
                pause();
            }
        };
    };
    TemplateProcess from(options);
    const pkgvet::Descriptor package(open("/dev/null", O_RDONLY));
    std::vector<std::string> directories;
    {
        const JudgeProcess judge(&from, package.get(), -1, 100);
        directories = judge.directories();
        EXPECT_EQ(directories.empty(), from.sandbox().namespaces);
    }
    for (const std::string& directory : directories) {
        EXPECT_FALSE(fs::exists(directory)) << directory;
    }
    // All that is left is the template, and nobody else has ended unnoticed.
    kill(from.process(), SIGSTOP);
    siginfo_t info{};
    EXPECT_EQ(waitid(P_ALL, 0, &info, WEXITED | WSTOPPED | WNOWAIT), 0);
    EXPECT_EQ(info.si_pid, from.process());
    kill(from.process(), SIGCONT);
}

INSTANTIATE_TEST_SUITE_P(Each, JudgeProcessTest,
                         testing::Values(SandboxMode::Auto, SandboxMode::Off),
                         [](const auto& mode) {
                             return mode.param == SandboxMode::Auto ? "Auto" : "Off";
                         });

}  // namespace
