// Packages from strangers: each has an outcome, and nothing is left behind or written elsewhere.
#include "tests/support/hostile/hostile_packages.h"

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <optional>

#include "tests/support/base/extracted_trees.h"
#include "tests/support/package/accepted_package.h"
#include "tests/support/package/png_image.h"
#include "tests/support/program/judged_package.h"
#include "tests/support/program/program.h"
#include "tests/support/program/sandboxes.h"
#include "tests/support/program/watched_machine.h"

namespace {

namespace fs = std::filesystem;

using Words = std::vector<std::string>;

constexpr const char* kCanary = "sings\n";
// In kibibytes.
constexpr long kMostMemory = 1L << 20U;

class HostilePackages : public testing::TestWithParam<SandboxCase> {
protected:
    HostilePackages() {
        static int count = 0;
        target_.token = "evil-" + std::to_string(getpid()) + "-" + std::to_string(count++);
        target_.outside = outside_.path();
        outside_.write("canary", kCanary);
        outside_.write("secret.qml", "import Secret 1.0\n");
        // What the program leaves running becomes a child of this process.
        prctl(PR_SET_CHILD_SUBREAPER, 1);
    }

    // The trees of these packages hold it, unless they must not have a file of their own.
    std::string marker() const { return kAcceptedData + "/marker-" + target_.token; }

    Words words() const {
        Words words = {"check", "--max-unpacked", "80M", "--max-files", "10000", "--timeout",
                       "600",   "--memory",       "1G"};
        words.insert(words.end(), GetParam().options.begin(), GetParam().options.end());
        return words;
    }

    Words write(const std::vector<HostilePackage>& packages) const {
        Words paths;
        for (const HostilePackage& hostile : packages) {
            CraftedPackage package = package_;
            if (isMarked_) {
                package.file(packedFile(marker(), ""));
            }
            hostile.arm(&package, target_);
            paths.push_back(package.write(directory_));
        }
        return paths;
    }

    // The environment of the sandbox in a view of the machine, if it gives one.
    Words environment() const {
        Words words = machine_ ? machine_->words() : Words();
        words.insert(words.end(), GetParam().environment.begin(), GetParam().environment.end());
        return words;
    }

    void expectOutcomes(const std::vector<HostilePackage>& packages) {
        const Words paths = write(packages);
        const Words all = words();
        const auto judged =
            judgePackages(rules_, paths, {all.begin() + 1, all.end()}, environment());
        ASSERT_EQ(judged.size(), packages.size());
        for (std::size_t i = 0; i < packages.size(); ++i) {
            SCOPED_TRACE(packages[i].name);
            const std::string said = judged[i].cause + judged[i].messages;
            expectOutcome(packages[i].outcome, judged[i]);
            EXPECT_NE(said.find(packages[i].says), std::string::npos) << said.substr(0, 2000);
            // What the rules read outside they would quote.
            if (GetParam().shutsOff) {
                EXPECT_EQ(said.find("Secret"), std::string::npos);
            }
        }
    }

    static void expectOutcome(Outcome outcome, const JudgedPackage& judged) {
        if (outcome == Outcome::NotStated) {
            return;
        }
        EXPECT_EQ(judged.passes, outcome == Outcome::Accepted) << judged.messages;
        if (outcome == Outcome::Rejected || outcome == Outcome::NotJudged) {
            EXPECT_EQ(judged.cause.empty(), outcome == Outcome::Rejected) << judged.cause;
        }
    }

    void expectNothingLeft() const {
        EXPECT_EQ(readFile(target_.outside + "/canary"), kCanary);
        EXPECT_EQ(std::distance(fs::directory_iterator(target_.outside), {}), 2);
        for (const char* place : {"/tmp", "/", "/etc", "/usr/share"}) {
            for (const fs::directory_entry& entry : fs::directory_iterator(place)) {
                EXPECT_EQ(entry.path().string().find(target_.token), std::string::npos)
                    << entry.path();
            }
        }
        EXPECT_EQ(extractedTreesWith(marker()), Words());
        EXPECT_EQ(machine_ ? machine_->changes() : Words(), Words());
        EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
        EXPECT_EQ(errno, ECHILD);
    }

    // Neither the program nor anything that it started ever had more.
    static void expectLittleMemory() {
        struct rusage usage {};
        getrusage(RUSAGE_CHILDREN, &usage);
        EXPECT_LT(usage.ru_maxrss, kMostMemory);
    }

    void SetUp() override {
        if (!isThere(GetParam())) {
            GTEST_SKIP() << "this machine has no such sandbox";
        }
        if (WatchedMachine::isPossible()) {
            machine_.emplace();
        }
    }

    void judge(const std::vector<HostilePackage>& packages) {
        expectOutcomes(packages);
        expectNothingLeft();
        expectLittleMemory();
    }

    TemporaryDirectory directory_;
    TemporaryDirectory outside_;
    Target target_;
    RuleTree rules_ = acceptingRules();
    CraftedPackage package_ = acceptedPackage();
    bool isMarked_ = true;
    std::optional<WatchedMachine> machine_;
};

}  // namespace

TEST_P(HostilePackages, DoNotReachOut) {
    judge(packagesThatReachOut());
}

TEST_P(HostilePackages, DoNotUseTheMachineUp) {
    judge(packagesWithBadStreams());
}

TEST_P(HostilePackages, MayBeOfAnySize) {
    judge(packagesOfRealSizes());
}

// An icon is read only if the rules ask for one.
TEST_P(HostilePackages, MayGoToTheLimits) {
    rules_.iconSizes = {86};
    rules_.regular().requireIcons = true;
    package_.file(packedFile(kHostileIcon, pngImage(86, 86)));
    judge(packagesAtTheLimits());
}

TEST_P(HostilePackages, HoldNothingThatIsRun) {
    judge(packagesThatWantToBeRun());
}

// A file of holes takes up no room on disk, and would in memory.
TEST_P(HostilePackages, MayBeFilesOfHoles) {
    const std::string path = acceptedPackage().write(directory_);
    fs::resize_file(path, std::uintmax_t{100} << 30U);
    const Words all = words();
    const auto judged =
        judgePackages(acceptingRules(), {path}, {all.begin() + 1, all.end()}, environment());
    ASSERT_EQ(judged.size(), 1U);
    EXPECT_EQ(judged[0].cause, "the package itself is larger than --max-unpacked allows");
    expectNothingLeft();
    expectLittleMemory();
}

TEST_P(HostilePackages, AreFoundOutWhenTheyLie) {
    // What they say of each file is said of those of acceptedPackage() alone.
    isMarked_ = false;
    judge(packagesThatLie());
}

TEST_P(HostilePackages, DoNotLieInTheirHeader) {
    judge(packagesWithBadHeaders());
}

TEST_P(HostilePackages, AreSafeToPrint) {
    Words all = words();
    all.insert(all.end(), {"--rules", acceptingRules().write(directory_)});
    const Words paths = write(packagesThatReachOut());
    all.insert(all.end(), paths.begin(), paths.end());
    const ProgramResult result = runPkgvet(all, environment());
    EXPECT_EQ(result.status, 3) << result.errors;
    for (const char* forbidden : {"\x1b", "\r", "\x07", "\xc2\x9b", "\xe2\x80\xae", "\xff"}) {
        EXPECT_EQ((result.output + result.errors).find(forbidden), std::string::npos);
    }
    expectNothingLeft();
    expectLittleMemory();
}

INSTANTIATE_TEST_SUITE_P(Sandbox, HostilePackages,
                         testing::Values(requiredSandbox(), landlockAlone(), noSandbox()),
                         [](const auto& row) { return row.param.name; });
