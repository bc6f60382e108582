// Workers that fail, hang and are stopped, and what they leave behind. A cpio of the test's own,
// found by way of PATH, brings about each of these while a package is being unpacked.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "pkgvet/base/remove_tree.h"
#include "tests/support/package_builder.h"
#include "tests/support/program.h"
#include "tests/support/rule_tree.h"
#include "tests/support/running_program.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

namespace fs = std::filesystem;

constexpr const char* kHang = "exec sleep 1000";

class WorkerPool : public testing::Test {
protected:
    static void SetUpTestSuite() {
        shared_ = new TemporaryDirectory;
        rules_ = new std::string(RuleTree().write(*shared_));
        // Scripts reject a package under every rule tree.
        package_ = new std::string(PackageBuilder("org.example.app")
                                       .script("%post\ntrue")
                                       .file("/usr/share/org.example.app/x", "x")
                                       .build(*shared_));
    }

    static void TearDownTestSuite() {
        delete package_;
        delete rules_;
        delete shared_;
    }

    // A cpio that notes its directory and its process, leaves something there, and does as script
    // says the first time; later it is the real one.
    void replaceCpio(const std::string& script) {
        const std::string begin = "#!/bin/sh\ncd .\nif ! mkdir '" + (own_ / "once") +
                                  "' 2>/dev/null; then PATH=$FORMER_PATH exec cpio \"$@\"; fi\n"
                                  "mkdir -p usr/share && echo x >usr/share/x && chmod 0 usr/share\n"
                                  "echo \"$(pwd) $$ $PPID\" >'" +
                                  (own_ / "note.new") + "' && mv '" + (own_ / "note.new") + "' '" +
                                  (own_ / "note") + "'\n";
        fs::permissions(own_.write("bin/cpio", begin + script + "\n"), fs::perms::owner_all);
    }

    std::vector<std::string> environment() const {
        const std::string path = std::getenv("PATH");
        return {"PATH=" + (own_ / "bin") + ":" + path, "FORMER_PATH=" + path};
    }

    static std::vector<std::string> command(std::vector<std::string> arguments) {
        const std::vector<std::string> begin = {"check", "-q", "--rules", *rules_, "--jobs", "1"};
        arguments.insert(arguments.begin(), begin.begin(), begin.end());
        return arguments;
    }

    ProgramResult check(const std::vector<std::string>& arguments) const {
        return runPkgvet(command(arguments), environment());
    }

    bool hasBegun() const { return fs::exists(own_ / "note"); }

    // Where cpio ran, and as what processes.
    struct Note {
        std::string directory;
        pid_t cpio = 0;
        pid_t shell = 0;
    };

    Note note() const {
        Note note;
        std::istringstream(readFile(own_ / "note")) >> note.directory >> note.cpio >> note.shell;
        return note;
    }

    void expectNothingLeft() const {
        const Note left = note();
        EXPECT_THAT(left.directory, StartsWith("/tmp/dir."));
        EXPECT_FALSE(fs::exists(left.directory));
        EXPECT_FALSE(isAlive(left.cpio));
        EXPECT_FALSE(isAlive(left.shell));
    }

    static const std::string& package() { return *package_; }
    static const TemporaryDirectory& shared() { return *shared_; }

    static std::string notJudged(const std::string& cause) {
        return "pkgvet: " + package() + ": could not be judged: " + cause;
    }

    static std::string rejected() { return package() + ": rejected "; }

private:
    TemporaryDirectory own_;
    static TemporaryDirectory* shared_;
    static std::string* rules_;
    static std::string* package_;
};

TemporaryDirectory* WorkerPool::shared_ = nullptr;
std::string* WorkerPool::rules_ = nullptr;
std::string* WorkerPool::package_ = nullptr;

TEST_F(WorkerPool, KilledWorkerCostsOnePackage) {
    replaceCpio("echo first >&2; echo 'last words' >&2; kill -KILL 0");
    const ProgramResult result = check({package(), package()});
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.errors, notJudged("the worker was ended by signal 9 (Killed): last words\n"));
    EXPECT_THAT(result.output, StartsWith(rejected()));
    EXPECT_THAT(result.output, HasSubstr("2 packages: 0 accepted, 1 rejected, 1 not judged\n"));
    expectNothingLeft();
}

TEST_F(WorkerPool, HangingWorkerIsEndedWithItsTools) {
    replaceCpio(kHang);
    const ProgramResult result = check({"--timeout", "5", package()});
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.errors, notJudged("it took longer than --timeout allows\n"));
    if (!hasBegun()) {
        GTEST_SKIP() << "this machine is too slow to come as far as cpio in time";
    }
    expectNothingLeft();
}

TEST_F(WorkerPool, WorkerThatNeverComesToAnythingIsEnded) {
    const ProgramResult result = check({"--timeout", "0.001", package(), package()});
    EXPECT_EQ(result.status, 3);
    EXPECT_THAT(result.output, HasSubstr("2 packages: 0 accepted, 0 rejected, 2 not judged\n"));
}

TEST_F(WorkerPool, PayloadThatDoesNotUnpackLeavesNothing) {
    replaceCpio("echo \"cpio: in $(pwd)\" >&2; exit 1");
    const ProgramResult result = check({package()});
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.errors, notJudged("the payload did not unpack: cpio: in /tmp/dir.XXXXXX\n"));
    expectNothingLeft();
}

TEST_F(WorkerPool, WhatToolsSayIsNoFinding) {
    replaceCpio(
        "chmod 755 usr/share; echo '(CRITICAL)\tnonsense' >&2; echo '(ERROR)\t\tno' >&2\n"
        "PATH=$FORMER_PATH exec cpio \"$@\"");
    const ProgramResult loud = check({package()});
    const ProgramResult quiet = check({package()});
    EXPECT_EQ(loud.status, 1);
    EXPECT_EQ(loud.errors, "");
    EXPECT_EQ(loud.output, quiet.output);
}

class WorkerPoolSignal : public WorkerPool, public testing::WithParamInterface<int> {};

TEST_P(WorkerPoolSignal, EndsTheRunAndLeavesNothing) {
    replaceCpio(kHang);
    RunningProgram program(command({"/dev/null", package(), package()}), environment());
    ASSERT_TRUE(waitUntil([this] { return hasBegun(); }));
    program.signal(GetParam());
    const ProgramResult result = program.wait();
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.output,
              "1 package: 0 accepted, 0 rejected, 1 not judged; "
              "the run was interrupted and this report is partial\n");
    EXPECT_EQ(result.errors,
              "pkgvet: /dev/null: could not be judged: not a regular file\n"
              "pkgvet: interrupted: 2 of 3 packages were not judged\n");
    expectNothingLeft();
}

INSTANTIATE_TEST_SUITE_P(Each, WorkerPoolSignal, testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST_F(WorkerPool, NoProcessOutlivesAKilledProgram) {
    replaceCpio(kHang);
    {
        RunningProgram program(command({package()}), environment());
        ASSERT_TRUE(waitUntil([this] { return hasBegun(); }));
        program.signal(SIGKILL);
        EXPECT_EQ(program.wait().status, 128 + SIGKILL);
    }
    const Note left = note();
    EXPECT_TRUE(waitUntil([&] { return !isAlive(left.cpio) && !isAlive(left.shell); }));
    pkgvet::removeTree(left.directory);
}

TEST_F(WorkerPool, OutputIsTheSameForAnyNumberOfJobs) {
    const std::string text = shared().write("text.rpm", "no package");
    const std::string other =
        PackageBuilder("org.example.other").script("%post\ntrue").build(shared());
    std::vector<std::string> arguments = {"--profile", "all", "--jobs", "1"};
    for (int i = 0; i < 5; ++i) {
        arguments.insert(arguments.end(), {package(), text, "/dev/null", other, "missing"});
    }
    const ProgramResult one = runPkgvet(command(arguments));
    EXPECT_EQ(one.status, 3);
    EXPECT_EQ(std::count(one.errors.begin(), one.errors.end(), '\n'), 15);
    for (const char* jobs : {"1", "2", "7", "100"}) {
        SCOPED_TRACE(jobs);
        arguments[3] = jobs;
        const ProgramResult many = runPkgvet(command(arguments));
        EXPECT_EQ(many.status, one.status);
        EXPECT_EQ(many.output, one.output);
        EXPECT_EQ(many.errors, one.errors);
    }
}

TEST_F(WorkerPool, FloodOnStandardErrorIsBounded) {
    replaceCpio("yes | head -c 100000000 >&2; printf 'the end' >&2; exit 1");
    const ProgramResult result = check({package()});
    EXPECT_EQ(result.errors, notJudged("the payload did not unpack: the end\n"));
    expectNothingLeft();
}

}  // namespace
