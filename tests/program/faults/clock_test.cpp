// A clock that is set while packages are judged.
#include <gtest/gtest.h>

#include "tests/support/elf/compiled_elf.h"
#include "tests/support/package/accepted_package.h"
#include "tests/support/program/program.h"
#include "tests/support/program/sandboxes.h"

namespace {

// The time of day goes a year ahead and then two back each time somebody asks.
constexpr const char* kJumpingClock = R"(
#include <sys/syscall.h>
#include <sys/time.h>
#include <time.h>
#include <unistd.h>

namespace {

constexpr long kYear = 365L * 24 * 3600;

long shift() {
    static int count = 0;
    return ++count % 2 == 0 ? -2 * kYear : kYear;
}

}  // namespace

extern "C" int clock_gettime(clockid_t clock, struct timespec* time) noexcept {
    const long result = syscall(SYS_clock_gettime, clock, time);
    if (result == 0 && clock == CLOCK_REALTIME) {
        time->tv_sec += shift();
    }
    return static_cast<int>(result);
}

extern "C" int gettimeofday(struct timeval* time, void*) noexcept {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    *time = {now.tv_sec, now.tv_nsec / 1000};
    return 0;
}

extern "C" time_t time(time_t* result) noexcept {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    if (result != nullptr) {
        *result = now.tv_sec;
    }
    return now.tv_sec;
}
)";

class Clock : public testing::TestWithParam<SandboxCase> {};

TEST_P(Clock, ThatJumpsChangesNothing) {
    if (!isThere(GetParam())) {
        GTEST_SKIP() << "this machine has no such sandbox";
    }
    const TemporaryDirectory directory;
    const std::string clock =
        compileElf(directory, "clock.so", kJumpingClock, {"-shared", "-fPIC", "-O1"});
    const std::string rules = acceptingRules().write(directory);
    std::vector<std::string> arguments = {"check", "--format", "json", "--rules", rules};
    arguments.insert(arguments.end(), GetParam().options.begin(), GetParam().options.end());
    for (int i = 0; i < 4; ++i) {
        arguments.push_back(acceptedPackage().write(directory));
    }
    std::vector<std::string> environment = GetParam().environment;
    const ProgramResult expected = runPkgvet(arguments, environment);
    environment.insert(environment.end(), {"env", sanitizerOptions("verify_asan_link_order=0"),
                                           "LD_PRELOAD=" + clock});
    const ProgramResult result = runPkgvet(arguments, environment);
    EXPECT_EQ(expected.status, 0) << expected.errors;
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.output, expected.output);
    EXPECT_EQ(result.errors, expected.errors);
    EXPECT_EQ(result.sandboxRemark, expected.sandboxRemark);
}

INSTANTIATE_TEST_SUITE_P(Sandbox, Clock,
                         testing::Values(chosenSandbox(), requiredSandbox(), landlockAlone(),
                                         noSandbox()),
                         [](const auto& sandbox) { return sandbox.param.name; });

}  // namespace
