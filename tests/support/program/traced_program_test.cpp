// The faults that tests have made are really made, and a test that makes none is told so.
#include "tests/support/program/traced_program.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/syscall.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

#include "tests/support/program/fault_run.h"

namespace {

using Words = std::vector<std::string>;

bool opensForTheProgram(const SystemCall& call, const std::string& path) {
    return call.process == "0" && call.number == SYS_openat && call.text(1) == path;
}

class TracedProgram : public testing::Test {
protected:
    void SetUp() override {
        if (!canTrace()) {
            GTEST_SKIP() << "this machine does not let a test trace the program";
        }
    }

    // A run that answers the given call of the program, by their number, and counts all of them.
    TracedRun answering(std::size_t number, const Answer& answer) {
        calls_ = 0;
        return runTraced({"--version"}, [this, number, answer](const SystemCall& call) {
            return call.process == "0" && calls_++ == number ? answer : Answer();
        });
    }

    std::size_t calls_ = 0;
};

TEST_F(TracedProgram, RunsAsEverWhileNothingIsDoneToIt) {
    const ProgramResult expected = runPkgvet({"--version"});
    const TracedRun run = answering(0, Answer());
    EXPECT_GT(calls_, 10U);
    EXPECT_EQ(run.result.status, 0);
    EXPECT_EQ(run.result.output, expected.output);
    EXPECT_EQ(run.faults, 0U);
    EXPECT_EQ(run.left, 0U);
}

TEST_F(TracedProgram, CallFailsWithTheErrorThatIsAskedFor) {
    FaultRun faults(noSandbox());
    for (const int error : {EIO, ENFILE}) {
        const TracedRun run = faults.run([&faults, error](const SystemCall& call) {
            return opensForTheProgram(call, faults.package()) ? Answer{Answer::Kind::Fail, error}
                                                              : Answer();
        });
        EXPECT_EQ(run.faults, 1U);
        EXPECT_EQ(run.result.status, 3);
        EXPECT_NE(run.result.output.find(std::strerror(error)), std::string::npos)
            << run.result.output;
    }
}

TEST_F(TracedProgram, IsKilledBeforeTheCallAndMakesNoOther) {
    answering(0, Answer());
    const std::size_t all = calls_;
    for (const std::size_t number : {std::size_t{0}, all / 2, all - 1}) {
        SCOPED_TRACE(number);
        const TracedRun run = answering(number, {Answer::Kind::KillProcess});
        EXPECT_EQ(run.result.status, 128 + SIGKILL);
        EXPECT_EQ(calls_, number + 1);
        EXPECT_EQ(run.faults, 1U);
    }
}

TEST_F(TracedProgram, OneThatNeverComesToThePointHasNoFault) {
    const TracedRun run = answering(~std::size_t{0}, {Answer::Kind::KillProcess});
    EXPECT_EQ(run.result.status, 0);
    EXPECT_EQ(run.faults, 0U);
    FaultRun faults(noSandbox());
    EXPECT_THROW(faults.run([](const SystemCall&) { return Answer(); }), std::runtime_error);
}

// What sets the surroundings up is no part of it.
TEST_F(TracedProgram, IsObservedFromItsOwnBeginning) {
    Words executed;
    const auto observe = [&executed](const SystemCall& call) {
        if (call.number == SYS_execve) {
            executed.push_back(call.text(0));
        }
        return Answer();
    };
    const TracedRun run =
        runTraced({"--version"}, observe, {"sh", "-c", "exit_with=7; exec \"$@\"", "sh"});
    EXPECT_EQ(run.result.status, 0) << run.result.errors;
    EXPECT_EQ(executed, Words());
    EXPECT_EQ(runTraced({"--version"}, observe, {"sh", "-c", "exit 7"}).result.status, 7);
}

TEST_F(TracedProgram, ProcessesHaveTheSameNamesInEachRun) {
    FaultRun one(noSandbox());
    FaultRun other(noSandbox());
    EXPECT_EQ(one.cast().judge, "0.1.1");
    EXPECT_EQ(one.cast().judge, other.cast().judge);
    EXPECT_EQ(one.cast().maker, "0.1");
}

}  // namespace
