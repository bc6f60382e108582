// Processes of the program that something kills, wherever they have got to.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/syscall.h>

#include <algorithm>
#include <functional>
#include <nlohmann/json.hpp>

#include "tests/support/program/fault_run.h"
#include "tests/support/program/running_program.h"

namespace {

using Json = nlohmann::json;

using Words = std::vector<std::string>;

constexpr std::size_t kPoints = 10;

void append(const Words& more, Words* words) {
    words->insert(words->end(), more.begin(), more.end());
}

// A run of another test may hold some of them already, and be killed itself.
void expectTheNextRunClears(const Words& directories, FaultRun* faults) {
    waitUntil([&] {
        faults->watch([](const SystemCall&) { return Answer(); });
        return stillThere(directories).empty();
    });
    EXPECT_EQ(stillThere(directories), Words());
}

// What a process does from a call of its own that begins it until one of a certain number.
struct Part {
    std::string process;
    bool (*begins)(const SystemCall&);
    std::uint64_t lastCall;
    // The program is killed ahead of it, when this one makes its call of this number.
    std::string judge = {};
    std::size_t callOfJudge = 0;
    std::size_t step = 1;  // from a call to be killed at to the next
};

// Kills the program where the part asks for it.
std::function<void(const SystemCall&)> endOfTheProgram(const Part& part) {
    return [part, program = pid_t{0}, calls = std::size_t{0}](const SystemCall& call) mutable {
        program = call.process == "0" ? call.id : program;
        if (call.process == part.judge && calls++ == part.callOfJudge) {
            kill(program, SIGKILL);
        }
    };
}

// Tells the calls of the part apart: 1 for the next after the one that begins it, 0 for all before.
// How many those are depends on what else there is in /tmp.
std::function<std::size_t(const SystemCall&)> callsOf(const Part& part) {
    return [part, endProgram = endOfTheProgram(part), count = std::size_t{0},
            hasBegun = false](const SystemCall& call) mutable -> std::size_t {
        endProgram(call);
        if (call.process != part.process) {
            return 0;
        }
        count += hasBegun ? 1 : 0;
        hasBegun = hasBegun || part.begins(call);
        return count;
    };
}

// The number of its last call; 0 for a part that no run comes to.
std::size_t lengthOf(const Part& part, FaultRun* faults) {
    std::size_t length = 0;
    const auto numberOf = callsOf(part);
    faults->watch([&](const SystemCall& call) {
        const std::size_t number = numberOf(call);
        if (length == 0 && call.number == part.lastCall) {
            length = number;
        }
        return Answer();
    });
    return length;
}

bool makesMarkedDirectory(const SystemCall& call) {
    return nameOfDirectory(call).starts_with("/tmp/pkgvet.");
}

bool opensUnpacked(const SystemCall& call) {
    return call.number == SYS_openat && call.text(1).starts_with("/tmp/dir.");
}

class KilledProcess : public testing::TestWithParam<SandboxCase> {
protected:
    void SetUp() override {
        if (!canTrace() || !isThere(GetParam())) {
            GTEST_SKIP() << "this machine does not let a test trace the program there";
        }
    }

    // A run in which process is killed as it is about to make its call of this number. How many it
    // makes depends on who is quicker and on what else there is in /tmp: where it made fewer, one
    // of the last.
    static TracedRun killedAt(FaultRun* faults, const std::string& process, std::size_t number) {
        for (;;) {
            std::size_t calls = 0;
            TracedRun run = faults->watch([&process, &calls, number](const SystemCall& call) {
                const bool isMeant = call.process == process && calls++ == number;
                return isMeant ? Answer{Answer::Kind::KillProcess} : Answer();
            });
            if (run.faults > 0 || number == 0) {
                EXPECT_GT(run.faults, 0U);
                return run;
            }
            number = std::min(number - 1, calls * (kPoints - 1) / kPoints);
        }
    }

    // All processes are killed at once, at each of its calls in turn.
    static void expectTheNextRunClearsAfter(const Part& part, FaultRun* faults) {
        const std::size_t length = lengthOf(part, faults);
        if (length == 0) {
            GTEST_SKIP() << "in namespaces no directory is made";
        }
        EXPECT_GT(length, 5U);
        std::size_t runsThatLeft = 0;
        for (std::size_t number = 1; number < length; number += part.step) {
            SCOPED_TRACE(number);
            bool isKilled = false;
            const auto numberOf = callsOf(part);
            const TracedRun run = faults->watch([&](const SystemCall& call) {
                isKilled = numberOf(call) == number || isKilled;
                return isKilled ? Answer{Answer::Kind::KillProcess} : Answer();
            });
            EXPECT_EQ(run.left, 0U);
            const Words left = faults->directoriesLeft();
            runsThatLeft += left.empty() ? 0 : 1;
            expectTheNextRunClears(left, faults);
        }
        // Not each of them, as other tests run the program meanwhile, which clears up as well.
        EXPECT_GT(runsThatLeft, 0U);
    }
};

TEST_P(KilledProcess, JudgeCostsItsPackage) {
    FaultRun faults(GetParam());
    ASSERT_EQ(faults.undisturbed().status, 0) << faults.undisturbed().errors;
    ASSERT_GT(faults.cast().callsOfJudge, 10 * kPoints);
    for (std::size_t i = 0; i < kPoints; ++i) {
        const std::size_t number = i * faults.cast().callsOfJudge / kPoints;
        SCOPED_TRACE(number);
        const TracedRun run = killedAt(&faults, faults.cast().judge, number);
        EXPECT_EQ(run.result.status, 3);
        EXPECT_EQ(run.left, 0U);
        EXPECT_EQ(faults.directoriesLeft(), std::vector<std::string>());
        const Json report = Json::parse(run.result.output, nullptr, false);
        ASSERT_TRUE(report.is_object()) << run.result.output << run.result.errors;
        EXPECT_EQ(report["packages"][0]["cause"], "the judge was ended by signal 9 (Killed)");
        EXPECT_EQ(report["packages"][0]["cause_code"], "crashed");
    }
}

// A judge that was started before needs it no longer.
TEST_P(KilledProcess, TemplateCostsItsPackageOrNothing) {
    FaultRun faults(GetParam());
    ASSERT_EQ(faults.undisturbed().status, 0) << faults.undisturbed().errors;
    ASSERT_GT(faults.cast().callsOfMaker, 10 * kPoints);
    Words left;
    for (std::size_t i = 0; i < kPoints; ++i) {
        const std::size_t number = i * faults.cast().callsOfMaker / kPoints;
        SCOPED_TRACE(number);
        const TracedRun run = killedAt(&faults, faults.cast().maker, number);
        EXPECT_EQ(run.left, 0U);
        append(faults.directoriesLeft(), &left);
        if (run.result.status == 0) {
            EXPECT_EQ(run.result.output, faults.undisturbed().output);
        } else {
            EXPECT_EQ(run.result.status, 3) << run.result.output;
            EXPECT_NE(run.result.errors, "");
        }
    }
    expectTheNextRunClears(left, &faults);
}

TEST_P(KilledProcess, RunThatBeginsAPackageLeavesNothingForGood) {
    FaultRun faults(GetParam());
    expectTheNextRunClearsAfter({faults.cast().maker, makesMarkedDirectory, SYS_recvmsg}, &faults);
}

// The mark, by which the next run knows them, goes last.
TEST_P(KilledProcess, RunThatRemovesDirectoriesLeavesNothingForGood) {
    FaultRun faults(GetParam());
    expectTheNextRunClearsAfter({"0", opensUnpacked, SYS_sendmsg}, &faults);
}

// Those of a program that was killed the template removes, in the same way.
TEST_P(KilledProcess, TemplateThatRemovesDirectoriesLeavesNothingForGood) {
    FaultRun faults(GetParam());
    const Cast& cast = faults.cast();
    expectTheNextRunClearsAfter(
        {cast.maker, opensUnpacked, SYS_exit_group, cast.judge, cast.callsOfJudge / 2, 4}, &faults);
}

// The template's first child, and the one in namespaces of its own which that starts.
TEST(KilledTrial, MeansThatThereAreNoNamespaces) {
    if (!canTrace()) {
        GTEST_SKIP() << "this machine does not let a test trace the program";
    }
    if (!isThere(requiredSandbox())) {
        GTEST_SKIP() << "this machine has no namespaces";
    }
    FaultRun faults(chosenSandbox());
    ASSERT_EQ(faults.undisturbed().status, 0) << faults.undisturbed().errors;
    for (const char* trial : {".1", ".1.1"}) {
        SCOPED_TRACE(trial);
        bool isKilled = false;
        const std::string process = faults.cast().maker + trial;
        const TracedRun run = faults.run([&](const SystemCall& call) {
            const bool isMeant = !isKilled && call.process == process;
            isKilled = isKilled || isMeant;
            return isMeant ? Answer{Answer::Kind::KillProcess} : Answer();
        });
        EXPECT_TRUE(isKilled);
        EXPECT_EQ(run.result.status, 0) << run.result.output << run.result.errors;
        EXPECT_NE(run.result.sandboxRemark, "");
        EXPECT_EQ(run.left, 0U);
        EXPECT_EQ(faults.directoriesLeft(), std::vector<std::string>());
    }
}

INSTANTIATE_TEST_SUITE_P(Sandbox, KilledProcess,
                         testing::Values(chosenSandbox(), landlockAlone(), noSandbox()),
                         [](const auto& sandbox) { return sandbox.param.name; });

}  // namespace
