// The template: how long it lives, whom it believes, and what it clears up.
#include "cli/worker/template_process.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <new>
#include <thread>
#include <vector>

#include "cli/worker/channel.h"
#include "cli/worker/judge_process.h"
#include "cli/worker/judge_user.h"
#include "cli/worker/landlock.h"
#include "cli/worker/system_call_filter.h"
#include "cli/worker/wait.h"
#include "tests/support/base/child_process.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/program/judge_run.h"
#include "tests/support/program/running_program.h"

namespace {

using namespace pkgvet::cli;
using testing::HasSubstr;

namespace fs = std::filesystem;

// A judge that only answers.
JudgeFunction simpleJudge() {
    return [](const Surroundings&) { return acceptedReport("x"); };
}

TEST(Template, IsOnlyAliveUntilItIsKilled) {
    TemplateOptions options;
    options.prepare = simpleJudge;
    TemplateProcess from(options);
    EXPECT_TRUE(from.isAlive());
    kill(from.process(), SIGKILL);
    EXPECT_TRUE(waitUntil([&from] { return !from.isAlive(); }));
    const pkgvet::Descriptor package(open("/dev/null", O_RDONLY));
    EXPECT_THROW(JudgeProcess(&from, package.get(), -1, 100), std::system_error);
}

TEST(Template, ThatDoesNotAnswerIsGivenUp) {
    TemplateOptions options;
    options.prepare = simpleJudge;
    options.patience = 100;
    TemplateProcess from(options);
    from.waitUntilPrepared();
    kill(from.process(), SIGSTOP);
    const pkgvet::Descriptor package(open("/dev/null", O_RDONLY));
    EXPECT_THROW(JudgeProcess(&from, package.get(), -1, 100), std::system_error);
    // Late answers would be taken for those to later requests.
    kill(from.process(), SIGCONT);
    EXPECT_FALSE(from.isAlive());
}

bool isGone(pid_t process) {
    return kill(process, 0) != 0 && errno == ESRCH;
}

TEST(Template, EndsWithItsObject) {
    TemplateOptions options;
    options.prepare = simpleJudge;
    pid_t process = -1;
    {
        TemplateProcess from(options);
        process = from.process();
    }
    EXPECT_TRUE(isGone(process));
    {
        TemplateProcess from(options);
        from.waitUntilPrepared();
        process = from.process();
    }
    EXPECT_TRUE(isGone(process));
}

// One that is stopped would be waited for without end.
TEST(Template, ThatDoesNotAnswerIsKilledWithItsObject) {
    TemplateOptions options;
    options.prepare = simpleJudge;
    options.patience = 100;
    pid_t process = -1;
    {
        TemplateProcess from(options);
        from.waitUntilPrepared();
        process = from.process();
        kill(process, SIGSTOP);
        const pkgvet::Descriptor package(open("/dev/null", O_RDONLY));
        EXPECT_THROW(JudgeProcess(&from, package.get(), -1, 100), std::system_error);
    }
    EXPECT_TRUE(isGone(process));
}

// The rules are read once the program found them sound.
TEST(Template, PreparesWhenItIsTold) {
    const TemporaryDirectory notes;
    const std::string note = notes / "note";
    TemplateOptions options;
    options.sandbox = SandboxMode::Off;
    options.prepare = [&note] {
        std::ofstream(note) << "x";
        return simpleJudge();
    };
    { TemplateProcess from(options); }
    EXPECT_FALSE(fs::exists(note));
    TemplateProcess from(options);
    from.prepare();
    from.waitUntilPrepared();
    EXPECT_TRUE(fs::exists(note));
}

TEST(Template, WhatCannotPrepareIsReported) {
    TemplateOptions options;
    options.prepare = []() -> JudgeFunction { _exit(0); };
    TemplateProcess from(options);
    EXPECT_THROW(from.waitUntilPrepared(), std::system_error);
}

// The superuser's judges are somebody else, who may not enter the directory in which the program
// was started, and unpacking goes away from it and back. A process that cannot make namespaces
// leaves Landlock alone, where that directory is the judge's as well.
TEST(Template, FirstJudgeCanReturnToItsDirectory) {
    if (geteuid() != 0 || judgeUser(true) == 0) {
        GTEST_SKIP() << "only the superuser's judges are somebody else";
    }
    if (!hasLandlock()) {
        GTEST_SKIP() << "this machine has no Landlock";
    }
    const TemporaryDirectory closed;
    fs::permissions(closed.path(), fs::perms::owner_all);
    EXPECT_TRUE(holdsInChild([&closed] {
        SystemCallFilter().apply();
        fs::current_path(closed.path());
        const std::string answer = observed(
            [] {
                const fs::path begin = fs::current_path();
                std::error_code error;
                fs::current_path("/tmp", error);
                fs::current_path(begin, error);
                return std::to_string(getuid()) + ": " + error.message();
            },
            SandboxMode::Auto);
        return answer == std::to_string(judgeUser(true)) + ": Success";
    }));
}

TEST(Template, WhatWasDecidedIsNotFoundOutAgain) {
    TemplateOptions options;
    options.decided = Sandbox{};
    options.prepare = simpleJudge;
    TemplateProcess from(options);
    from.waitUntilPrepared();
    EXPECT_EQ(from.sandbox().name(), "none");
}

// A process that has become unable to make namespaces stands for a machine that has. It does not
// get as far as to judge.
TEST(Template, WhatWasDecidedIsNotReplacedByLess) {
    TemplateOptions options;
    options.decided = Sandbox{true, false, ""};
    options.prepare = [] {
        SystemCallFilter().apply();
        return simpleJudge();
    };
    TemplateProcess from(options);
    EXPECT_THROW(from.waitUntilPrepared(), std::system_error);
}

TEST(Template, IsBelievedAboutChildrenAlone) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        pause();
        _exit(0);
    }
    struct Case {
        const char* name;
        pid_t process;
        const char* tree;
        const char* copy;
        bool hasNamespaces;
        bool isCredible;
    };
    const Case cases[] = {
        {"child", child, "", "", true, true},
        {"child with directories", child, "/tmp/dir.aB3xyz", "/tmp/pkgvet.aB3xyz", false, true},
        {"nobody", -1, "", "", true, false},
        {"own group", 0, "", "", true, false},
        {"first process", 1, "", "", true, false},
        {"parent", getppid(), "", "", true, false},
        {"itself", getpid(), "", "", true, false},
        {"directory without need", child, "/tmp/dir.aB3xyz", "", true, false},
        {"no directories", child, "", "", false, false},
        {"one directory", child, "/tmp/dir.aB3xyz", "", false, false},
        {"elsewhere", child, "/etc/dir.aB3xyz", "/tmp/pkgvet.aB3xyz", false, false},
        {"below", child, "/tmp/dir.aB/xyz", "/tmp/pkgvet.aB3xyz", false, false},
        {"above", child, "/tmp/dir.a/../b", "/tmp/pkgvet.aB3xyz", false, false},
        {"exchanged", child, "/tmp/pkgvet.aB3", "/tmp/pkgvet.aB3xyz", false, false},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        StartAnswer answer;
        answer.process = test.process;
        std::string(test.tree).copy(answer.tree.data(), answer.tree.size());
        std::string(test.copy).copy(answer.copy.data(), answer.copy.size());
        const Sandbox sandbox{test.hasNamespaces, true, ""};
        EXPECT_EQ(isCredible(answer, sandbox), test.isCredible);
    }
    kill(child, SIGKILL);
    waitForEnd(child);
}

// Without namespaces there are directories in /tmp, which the template removes when the program
// cannot.
TEST(Template, ClearsUpBehindAProgramThatWasKilled) {
    const TemporaryDirectory notes;
    const std::string note = notes / "note";
    const pid_t program = fork();
    ASSERT_GE(program, 0);
    if (program == 0) {
        adoptOrphans();
        TemplateOptions options;
        options.sandbox = SandboxMode::Off;
        options.prepare = [] {
            return [](const Surroundings& surroundings) -> PackageReport {
                std::ofstream(surroundings.copyPath) << "x" << std::flush;
                std::this_thread::sleep_for(std::chrono::hours(1));
                return {};
            };
        };
        TemplateProcess from(options);
        const pkgvet::Descriptor package(open("/dev/null", O_RDONLY));
        JudgeProcess judge(&from, package.get(), -1, 100);
        std::ofstream(note + ".new") << judge.directories()[0] << '\n' << judge.directories()[1];
        fs::rename(note + ".new", note);
        std::this_thread::sleep_for(std::chrono::hours(1));
        _exit(0);
    }
    ASSERT_TRUE(waitUntil([&note] { return fs::exists(note); }));
    kill(program, SIGKILL);
    waitpid(program, nullptr, 0);
    std::ifstream stream(note);
    std::string tree;
    std::string copy;
    stream >> tree >> copy;
    EXPECT_THAT(tree, testing::StartsWith("/tmp/dir."));
    EXPECT_TRUE(waitUntil([&] { return !fs::exists(tree) && !fs::exists(copy); }));
}

}  // namespace
