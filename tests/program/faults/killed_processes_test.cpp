// Processes of the program that something kills, wherever they have got to.
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "tests/support/program/fault_run.h"

namespace {

using Json = nlohmann::json;

constexpr std::size_t kPoints = 10;

class KilledProcess : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        if (!canTrace()) {
            GTEST_SKIP() << "this machine does not let a test trace the program";
        }
    }

    // The run in which process is killed as it is about to make its call of this number.
    static TracedRun killedAt(FaultRun* faults, const std::string& process, std::size_t number) {
        std::size_t calls = 0;
        return faults->run([&process, &calls, number](const SystemCall& call) {
            const bool isMeant = call.process == process && calls++ == number;
            return isMeant ? Answer{Answer::Kind::KillProcess} : Answer();
        });
    }
};

TEST_P(KilledProcess, JudgeCostsItsPackage) {
    FaultRun faults({"--sandbox", GetParam()});
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
    FaultRun faults({"--sandbox", GetParam()});
    ASSERT_EQ(faults.undisturbed().status, 0) << faults.undisturbed().errors;
    ASSERT_GT(faults.cast().callsOfMaker, 10 * kPoints);
    for (std::size_t i = 0; i < kPoints; ++i) {
        const std::size_t number = i * faults.cast().callsOfMaker / kPoints;
        SCOPED_TRACE(number);
        const TracedRun run = killedAt(&faults, faults.cast().maker, number);
        EXPECT_EQ(run.left, 0U);
        // Between making a directory and marking it nobody knows whose it is.
        for (const std::string& directory : faults.directoriesLeft()) {
            EXPECT_STREQ(GetParam(), "off") << directory;
            EXPECT_TRUE(std::filesystem::remove(directory)) << directory << " is not empty";
        }
        if (run.result.status == 0) {
            EXPECT_EQ(run.result.output, faults.undisturbed().output);
        } else {
            EXPECT_EQ(run.result.status, 3) << run.result.output;
            EXPECT_NE(run.result.errors, "");
        }
    }
}

// The template's first child, and the one in namespaces of its own which that starts.
TEST(KilledTrial, MeansThatThereAreNoNamespaces) {
    if (!canTrace()) {
        GTEST_SKIP() << "this machine does not let a test trace the program";
    }
    FaultRun faults({"--sandbox", "auto"});
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
        EXPECT_NE(run.result.errors, "") << "that there are no namespaces is said";
        EXPECT_EQ(run.left, 0U);
        EXPECT_EQ(faults.directoriesLeft(), std::vector<std::string>());
    }
}

INSTANTIATE_TEST_SUITE_P(Sandbox, KilledProcess, testing::Values("auto", "off"),
                         [](const auto& mode) { return std::string(mode.param); });

}  // namespace
