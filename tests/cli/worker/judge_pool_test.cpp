// Judges that fail, hang and are stopped, and what they leave behind. An rpm2cpio of the test's own
// brings about each of these while a package is being unpacked.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <optional>

#include "tests/support/package/package_builder.h"
#include "tests/support/program/program.h"
#include "tests/support/program/replaced_tool.h"
#include "tests/support/program/running_program.h"
#include "tests/support/rules/rule_tree.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

namespace fs = std::filesystem;

constexpr const char* kHang = "exec sleep 1000";

class JudgePool : public testing::Test {
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

    void SetUp() override {
        if (!ReplacedRpm2cpio::isPossible()) {
            GTEST_SKIP() << "this machine does not let a test replace a tool";
        }
    }

    static void TearDownTestSuite() {
        delete package_;
        delete rules_;
        delete shared_;
    }

    // An rpm2cpio that does as script says, with the real one as "$REAL".
    void replaceRpm2cpio(const std::string& script) { rpm2cpio_.emplace(script); }

    static std::vector<std::string> command(std::vector<std::string> arguments) {
        const std::vector<std::string> begin = {"check", "-q", "--rules", *rules_, "--jobs", "1"};
        arguments.insert(arguments.begin(), begin.begin(), begin.end());
        return arguments;
    }

    ProgramResult check(const std::vector<std::string>& arguments) const {
        return runPkgvet(command(arguments), rpm2cpio_->words());
    }

    static const std::string& package() { return *package_; }
    static const TemporaryDirectory& shared() { return *shared_; }

    static std::string notJudged(const std::string& cause) {
        return "pkgvet: " + package() + ": could not be judged: " + cause;
    }

    static std::string rejected() { return package() + ": rejected "; }

    std::string note(const std::string& name) const { return rpm2cpio_->note(name); }
    std::vector<std::string> words() const { return rpm2cpio_->words(); }

private:
    std::optional<ReplacedRpm2cpio> rpm2cpio_;
    static TemporaryDirectory* shared_;
    static std::string* rules_;
    static std::string* package_;
};

TemporaryDirectory* JudgePool::shared_ = nullptr;
std::string* JudgePool::rules_ = nullptr;
std::string* JudgePool::package_ = nullptr;

TEST_F(JudgePool, UnpackingThatFailsCostsOnePackage) {
    // It fails where it finds a directory of the package that comes first.
    replaceRpm2cpio("echo 'last words' >&2; exit 1");
    const ProgramResult result = check({package(), "/dev/null"});
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.errors, notJudged("the payload did not unpack to its end: last words\n") +
                                 "pkgvet: /dev/null: could not be judged: not a regular file\n");
    EXPECT_THAT(result.output, HasSubstr("2 packages: 0 accepted, 0 rejected, 2 not judged\n"));
}

TEST_F(JudgePool, HangingJudgeIsEnded) {
    replaceRpm2cpio(kHang);
    const ProgramResult result = check({"--timeout", "1", package()});
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.errors, notJudged("it took longer than --timeout allows\n"));
}

// Judges run as another user then, whom the program may not signal by itself.
TEST_F(JudgePool, HangingJudgeIsEndedByASuperuserWithoutTheRightToKill) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only the superuser has rights to lose";
    }
    replaceRpm2cpio(kHang);
    std::vector<std::string> environment = words();
    environment.insert(environment.end(),
                       {"setpriv", "--bounding-set", "-kill", "--inh-caps", "-kill"});
    const ProgramResult result = runPkgvet(command({"--timeout", "1", package()}), environment);
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.errors, notJudged("it took longer than --timeout allows\n"));
}

TEST_F(JudgePool, JudgeThatNeverComesToAnythingIsEnded) {
    replaceRpm2cpio(kHang);
    const ProgramResult result = check({"--timeout", "0.001", package(), package()});
    EXPECT_EQ(result.status, 3);
    EXPECT_THAT(result.output, HasSubstr("2 packages: 0 accepted, 0 rejected, 2 not judged\n"));
}

TEST_F(JudgePool, NamesOfDirectoriesAreNotTold) {
    replaceRpm2cpio("echo \"error: in $(pwd)\" >&2; exit 1");
    const ProgramResult result = check({"--sandbox", "off", package()});
    EXPECT_EQ(result.errors,
              notJudged("the payload did not unpack to its end: error: in /tmp/dir.XXXXXX\n"));
}

TEST_F(JudgePool, NothingIsLeftWithoutASandbox) {
    replaceRpm2cpio("pwd >$NOTES/directory; mkdir -p a/b; echo x >a/b/c; chmod 0 a; exit 1");
    check({"--sandbox", "off", package()});
    const std::string directory = note("directory");
    EXPECT_THAT(directory, StartsWith("/tmp/dir."));
    EXPECT_FALSE(fs::exists(directory.substr(0, directory.size() - 1)));
}

TEST_F(JudgePool, WhatToolsSayIsNoFinding) {
    replaceRpm2cpio("echo '(CRITICAL)\tnonsense' >&2; echo '(ERROR)\t\tno' >&2; exec $REAL \"$@\"");
    const ProgramResult loud = check({package()});
    const ProgramResult quiet = runPkgvet(command({package()}));
    EXPECT_EQ(loud.status, 1);
    EXPECT_EQ(loud.errors, "");
    EXPECT_EQ(loud.output, quiet.output);
}

class JudgePoolSignal : public JudgePool, public testing::WithParamInterface<int> {};

TEST_P(JudgePoolSignal, EndsTheRunAndLeavesNothing) {
    replaceRpm2cpio("pwd >$NOTES/directory; echo $$ >$NOTES/process; " + std::string(kHang));
    RunningProgram program(command({"--sandbox", "off", "/dev/null", package(), package()}),
                           words());
    ASSERT_TRUE(waitUntil([this] { return note("process").ends_with('\n'); }));
    program.signal(GetParam());
    const ProgramResult result = program.wait();
    EXPECT_EQ(result.status, 128 + GetParam());
    EXPECT_EQ(result.output,
              "/dev/null: not judged: not a regular file\n"
              "1 package: 0 accepted, 0 rejected, 1 not judged; "
              "the run was interrupted and this report is partial\n");
    EXPECT_EQ(result.errors,
              "pkgvet: /dev/null: could not be judged: not a regular file\n"
              "pkgvet: interrupted: 2 of 3 packages were not judged\n");
    const std::string directory = note("directory");
    EXPECT_FALSE(fs::exists(directory.substr(0, directory.size() - 1)));
    EXPECT_FALSE(isAlive(std::stoi(note("process"))));
}

INSTANTIATE_TEST_SUITE_P(Each, JudgePoolSignal, testing::Values(SIGINT, SIGTERM, SIGHUP, SIGQUIT));

TEST_F(JudgePool, NothingOutlivesAKilledProgram) {
    replaceRpm2cpio("pwd >$NOTES/directory; echo $$ >$NOTES/process; " + std::string(kHang));
    {
        RunningProgram program(command({"--sandbox", "off", package()}), words());
        ASSERT_TRUE(waitUntil([this] { return note("process").ends_with('\n'); }));
        program.signal(SIGKILL);
        EXPECT_EQ(program.wait().status, 128 + SIGKILL);
    }
    const std::string directory = note("directory");
    EXPECT_TRUE(waitUntil([&] {
        return !isAlive(std::stoi(note("process"))) &&
               !fs::exists(directory.substr(0, directory.size() - 1));
    }));
}

// Of a run all of whose processes were killed at once, the next one clears up.
TEST_F(JudgePool, WhatAKilledRunLeftIsRemovedByTheNext) {
    replaceRpm2cpio("pwd >$NOTES/directory; echo $$ >$NOTES/process; " + std::string(kHang));
    const std::vector<std::string> line = command({"--sandbox", "off", package()});
    RunningProgram program(line, words());
    ASSERT_TRUE(waitUntil([this] { return note("process").ends_with('\n'); }));
    program.kill();
    const std::string note = this->note("directory");
    const std::string directory = note.substr(0, note.size() - 1);
    EXPECT_TRUE(waitUntil([this] { return !isAlive(std::stoi(this->note("process"))); }));
    // A run of another test may hold it meanwhile, and be killed itself.
    EXPECT_TRUE(waitUntil([&] {
        EXPECT_EQ(runPkgvet(line).status, 1);
        return !fs::exists(directory);
    }));
}

TEST_F(JudgePool, OutputIsTheSameForAnyNumberOfJobs) {
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

}  // namespace
