// A machine that lacks what judging needs.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string_view>
#include <system_error>
#include <vector>

#include "tests/support/package/accepted_package.h"
#include "tests/support/program/fault_run.h"

namespace {

namespace fs = std::filesystem;

using Json = nlohmann::json;

bool executes(const SystemCall& call, std::string_view tool) {
    return call.number == SYS_execve && (call.text(0) == "/usr/bin/" + std::string(tool) ||
                                         call.text(0) == "/bin/" + std::string(tool));
}

bool executesGuard(const SystemCall& call) {
    return call.number == SYS_execve && call.text(0).ends_with("/cpio");
}

// What the program does in /tmp: of its own directories, and to the place as such.
bool isInTmp(const SystemCall& call) {
    for (std::size_t i = 0; i < 3; ++i) {
        const std::string path = call.text(i);
        if (path == "/tmp" || path.starts_with("/tmp/dir.") || path.starts_with("/tmp/pkgvet.") ||
            path.starts_with("/tmp/package.rpm") || path.starts_with("/tmp/guard")) {
            return true;
        }
    }
    return false;
}

bool makesDirectory(const SystemCall& call) {
#if defined(SYS_mkdir)
    return call.number == SYS_mkdir || call.number == SYS_mkdirat;
#else
    return call.number == SYS_mkdirat;
#endif
}

using Predicate = bool (*)(const SystemCall&);

// The process that becomes a tool is killed at one of its later system calls.
SystemCallObserver killing(Predicate becomes, std::size_t number) {
    return [becomes, number, process = std::string(),
            calls = std::size_t{0}](const SystemCall& call) mutable {
        if (becomes(call)) {
            process = call.process;
        }
        calls += call.process == process ? 1 : 0;
        return call.process == process && calls == number ? Answer{Answer::Kind::KillProcess}
                                                          : Answer();
    };
}

SystemCallObserver failing(Predicate isMeant, int error) {
    return [isMeant, error](const SystemCall& call) {
        return isMeant(call) ? Answer{Answer::Kind::Fail, error} : Answer();
    };
}

bool executesRpm2cpio(const SystemCall& call) {
    return executes(call, "rpm2cpio");
}

bool executesShell(const SystemCall& call) {
    return executes(call, "sh");
}

bool makesDirectoryInTmp(const SystemCall& call) {
    return makesDirectory(call) && isInTmp(call);
}

// By the rules, the program's own and the library's; the guard opens it to write.
bool readsPayload(const SystemCall& call) {
    const bool reads = call.number == SYS_openat2 ||
                       (call.number == SYS_openat && (call.arguments[2] & O_ACCMODE) == O_RDONLY);
    return reads && call.text(1).ends_with(kAcceptedText.substr(1));
}

// As on a disk that fails in the middle of a file.
bool readsOnInPayload(const SystemCall& call) {
    if (call.number != SYS_read) {
        return false;
    }
    const std::string process = "/proc/" + std::to_string(call.id);
    const std::string descriptor = std::to_string(call.arguments[0]);
    std::error_code error;
    const fs::path path = fs::read_symlink(process + "/fd/" + descriptor, error);
    std::ifstream stream(process + "/fdinfo/" + descriptor);
    std::string word;
    std::uint64_t position = 0;
    stream >> word >> position;
    return path.string().ends_with(kAcceptedText.substr(1)) && position > 0;
}

bool makesPayload(const SystemCall& call) {
    return call.number == SYS_openat && (call.arguments[2] & O_CREAT) != 0 &&
           call.text(1) == kAcceptedText.substr(kAcceptedText.rfind('/') + 1);
}

struct Case {
    const char* name;
    SystemCallObserver observer;
    const char* code;
};

// Observers remember what they saw, so that each run has its own.
std::vector<Case> cases() {
    return {
        {"rpm2cpio is missing", failing(executesRpm2cpio, ENOENT), "unpack-failed"},
        {"rpm2cpio may not be executed", failing(executesRpm2cpio, EACCES), "unpack-failed"},
        {"rpm2cpio is killed as it starts", killing(executesRpm2cpio, 20), "unpack-failed"},
        {"rpm2cpio is killed as it works", killing(executesRpm2cpio, 150), "unpack-failed"},
        {"the guard is missing", failing(executesGuard, ENOENT), "crashed"},
        {"the guard is killed as it starts", killing(executesGuard, 10), "crashed"},
        {"the guard is killed as it works", killing(executesGuard, 60), "unpack-failed"},
        {"a file of the payload cannot be made", failing(makesPayload, EDQUOT), "unpack-failed"},
        {"the shell is missing", failing(executesShell, ENOENT), "crashed"},
        {"a file of the payload cannot be read", failing(readsPayload, EMFILE), "rule-failed"},
        {"a file of the payload breaks off", failing(readsOnInPayload, EIO), "rule-failed"},
        {"/tmp is missing", failing(isInTmp, ENOENT), "crashed"},
        {"/tmp cannot be written to", failing(makesDirectoryInTmp, EROFS), "crashed"},
        {"/tmp is somebody else's", failing(makesDirectoryInTmp, EACCES), "crashed"},
    };
}

class MissingThing : public testing::TestWithParam<SandboxCase> {};

TEST_P(MissingThing, CostsThePackageAndLeavesNothing) {
    if (!canTrace() || !isThere(GetParam())) {
        GTEST_SKIP() << "this machine does not let a test trace the program there";
    }
    FaultRun faults(GetParam());
    for (const Case& test : cases()) {
        SCOPED_TRACE(test.name);
        const TracedRun run = faults.run(test.observer);
        EXPECT_EQ(run.result.status, 3);
        EXPECT_EQ(run.left, 0U);
        EXPECT_EQ(faults.directoriesLeft(), std::vector<std::string>());
        const Json report = Json::parse(run.result.output, nullptr, false);
        ASSERT_TRUE(report.is_object()) << run.result.output << run.result.errors;
        EXPECT_EQ(report["packages"][0]["cause_code"], test.code) << run.result.errors;
    }
}

INSTANTIATE_TEST_SUITE_P(Sandbox, MissingThing,
                         testing::Values(chosenSandbox(), landlockAlone(), noSandbox()),
                         [](const auto& sandbox) { return sandbox.param.name; });

}  // namespace
