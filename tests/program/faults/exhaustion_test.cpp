// What the machine no longer gives: whatever stage the program has reached by then, a package is
// judged as ever or not at all.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/syscall.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <set>
#include <tuple>

#include "tests/support/program/fault_run.h"
#include "tests/support/program/running_program.h"

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kPoints = 10;
// A library that cannot do without ends the program.
constexpr int kAborted = 128 + SIGABRT;

// System calls that fail in the same way once something has run out.
struct Shortage {
    const char* name;
    std::set<std::uint64_t> calls;
    int error;
};

#if defined(SYS_open)
const std::set<std::uint64_t> kForks = {SYS_clone, SYS_clone3, SYS_fork, SYS_vfork};
const std::set<std::uint64_t> kDescriptors = {SYS_open, SYS_openat,     SYS_pipe,      SYS_pipe2,
                                              SYS_dup,  SYS_socketpair, SYS_signalfd4, SYS_fcntl};
const std::set<std::uint64_t> kDirectories = {SYS_mkdir, SYS_mkdirat};
#else
const std::set<std::uint64_t> kForks = {SYS_clone, SYS_clone3};
const std::set<std::uint64_t> kDescriptors = {SYS_openat,     SYS_pipe2,     SYS_dup,
                                              SYS_socketpair, SYS_signalfd4, SYS_fcntl};
const std::set<std::uint64_t> kDirectories = {SYS_mkdirat};
#endif

const Shortage kShortages[] = {
    {"Processes", kForks, EAGAIN},
    {"Disk", {SYS_write, SYS_writev, SYS_pwrite64, SYS_sendfile, SYS_mkdirat}, ENOSPC},
    {"Directories", kDirectories, EACCES},
    {"Reading", {SYS_read, SYS_pread64}, EIO},
#if !defined(__SANITIZE_ADDRESS__)
    // The sanitizers end a process that gets no memory with a status of their own, and without a
    // descriptor they take each object for a wrong one.
    {"Descriptors", kDescriptors, EMFILE},
    {"Memory", {SYS_mmap, SYS_brk, SYS_mremap}, ENOMEM},
#endif
};

void PrintTo(const Shortage& shortage, std::ostream* stream) {
    *stream << shortage.name;
}

// Pipes and sockets do not take room on a disk.
bool isOnDisk(const SystemCall& call) {
    const std::string link = "/proc/" + std::to_string(call.id) + "/fd/";
    std::error_code error;
    const auto target = fs::read_symlink(link + std::to_string(call.arguments[0]), error);
    return call.number == SYS_mkdirat || target.string().starts_with('/');
}

class Exhaustion : public testing::TestWithParam<std::tuple<Shortage, SandboxCase>> {
protected:
    void SetUp() override {
        if (!canTrace() || !isThere(std::get<1>(GetParam()))) {
            GTEST_SKIP() << "this machine does not let a test trace the program there";
        }
    }

    // Fails the meant system calls from the given one on. Those before the program has started its
    // first process are mostly the loader's.
    static SystemCallObserver failingFrom(std::size_t first, std::size_t* count) {
        return [first, count, hasStarted = false](const SystemCall& call) mutable {
            const Shortage& shortage = std::get<0>(GetParam());
            hasStarted = hasStarted || call.process != "0";
            const bool isMeant = hasStarted && shortage.calls.count(call.number) > 0 &&
                                 (shortage.error != ENOSPC || isOnDisk(call));
            *count += isMeant ? 1 : 0;
            return isMeant && *count > first ? Answer{Answer::Kind::Fail, shortage.error}
                                             : Answer();
        };
    }

    // How often a pipe is read depends on who is quicker: a run that was over before its point is
    // made again with an earlier one.
    static TracedRun failedFrom(FaultRun* faults, std::size_t first) {
        for (;;) {
            std::size_t count = 0;
            TracedRun run = faults->watch(failingFrom(first, &count));
            if (run.faults > 0 || first == 0) {
                EXPECT_GT(run.faults, 0U);
                return run;
            }
            first = std::min(first - 1, count * (kPoints - 1) / kPoints);
        }
    }

    static void expectNoOtherVerdict(const ProgramResult& result, const ProgramResult& expected) {
        const std::set<int> refusals = {2, 3, kAborted};
        if (result.status == 0) {
            EXPECT_EQ(result.output, expected.output);
            return;
        }
        EXPECT_TRUE(refusals.contains(result.status)) << result.status << result.errors;
        // What there is of a report must not say otherwise.
        EXPECT_EQ(result.output.find("\"passes\": true"), std::string::npos) << result.output;
    }
};

TEST_P(Exhaustion, PackageIsJudgedAsEverOrNotAtAll) {
    FaultRun faults(std::get<1>(GetParam()));
    std::size_t all = 0;
    faults.watch(failingFrom(~std::size_t{0}, &all));
    ASSERT_GT(all, 0U);
    std::vector<std::string> left;
    for (std::size_t i = 0; i < kPoints; ++i) {
        const std::size_t first = i * all / kPoints;
        SCOPED_TRACE(first);
        const TracedRun run = failedFrom(&faults, first);
        EXPECT_EQ(run.left, 0U);
        expectNoOtherVerdict(run.result, faults.undisturbed());
        const std::vector<std::string> still = faults.directoriesLeft();
        left.insert(left.end(), still.begin(), still.end());
    }
    // Without a descriptor nothing can be removed. The next run does it.
    EXPECT_TRUE(left.empty() || std::get<0>(GetParam()).error == EMFILE) << left.front();
    // Or one of another test, which holds them meanwhile, and may be killed itself.
    waitUntil([&] {
        faults.watch([](const SystemCall&) { return Answer(); });
        return stillThere(left).empty();
    });
    EXPECT_EQ(stillThere(left), std::vector<std::string>());
}

INSTANTIATE_TEST_SUITE_P(Each, Exhaustion,
                         testing::Combine(testing::ValuesIn(kShortages),
                                          testing::Values(chosenSandbox(), landlockAlone(),
                                                          noSandbox())),
                         [](const auto& row) {
                             return std::string(std::get<0>(row.param).name) + "_" +
                                    std::get<1>(row.param).name;
                         });

}  // namespace
