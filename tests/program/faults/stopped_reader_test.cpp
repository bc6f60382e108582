// A reader of the report that stops reading, or goes away.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/stat.h>

#include <optional>

#include "pkgvet/base/descriptor.h"
#include "tests/support/package/accepted_package.h"
#include "tests/support/program/running_program.h"
#include "tests/support/program/sandboxes.h"

namespace {

class StoppedReader : public testing::TestWithParam<SandboxCase> {
protected:
    // The report is far longer than a pipe is wide.
    void SetUp() override {
        if (!isThere(GetParam())) {
            GTEST_SKIP() << "this machine has no such sandbox";
        }
        constexpr int kFiles = 3000;
        ASSERT_EQ(mkfifo(pipe_.c_str(), 0600), 0);
        reader_ = pkgvet::Descriptor(open(pipe_.c_str(), O_RDWR | O_CLOEXEC));
        CraftedPackage package = acceptedPackage();
        for (int i = 0; i < kFiles; ++i) {
            package.file(packedFile("/etc/" + std::to_string(i), ""));
        }
        std::vector<std::string> arguments = {"check", "--format", "json", "--rules",
                                              acceptingRules().write(directory_)};
        arguments.insert(arguments.end(), GetParam().options.begin(), GetParam().options.end());
        arguments.push_back(package.write(directory_));
        std::vector<std::string> environment = GetParam().environment;
        environment.insert(environment.end(), {"sh", "-c", "exec \"$@\" >'" + pipe_ + "'", "sh"});
        program_.emplace(arguments, environment);
        ASSERT_TRUE(waitUntil([this] { return isFull(); }));
    }

    bool isFull() const {
        struct pollfd pipe {
            reader_.get(), POLLOUT, 0
        };
        return poll(&pipe, 1, 0) == 0;
    }

    TemporaryDirectory directory_;
    const std::string pipe_ = directory_ / "pipe";
    pkgvet::Descriptor reader_;
    std::optional<RunningProgram> program_;
};

TEST_P(StoppedReader, KeepsNobodyFromEndingTheProgram) {
    program_->signal(SIGTERM);
    EXPECT_EQ(program_->wait().status, 128 + SIGTERM);
}

TEST_P(StoppedReader, ThatGoesAwayEndsIt) {
    reader_.reset();
    EXPECT_EQ(program_->wait().status, 128 + SIGPIPE);
}

INSTANTIATE_TEST_SUITE_P(Sandbox, StoppedReader,
                         testing::Values(chosenSandbox(), requiredSandbox(), landlockAlone(),
                                         noSandbox()),
                         [](const auto& sandbox) { return sandbox.param.name; });

}  // namespace
