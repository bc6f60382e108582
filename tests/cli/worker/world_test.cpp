// What a judge can reach, and what it cannot. Each test asks a judge that looks around in its
// world.
#include "cli/worker/world.h"

#include <arpa/inet.h>
#include <dirent.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>

#include "cli/guard/guard_note.h"
#include "cli/worker/guard_program.h"
#include "cli/worker/judge_user.h"
#include "tests/support/base/child_process.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/program/judge_run.h"

extern char** environ;

namespace {

using namespace pkgvet::cli;
using testing::HasSubstr;
using testing::Not;

namespace fs = std::filesystem;

// What opening a file for writing comes to.
std::string writing(const std::string& path) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    if (file < 0) {
        return std::strerror(errno);
    }
    close(file);
    unlink(path.c_str());
    return "written";
}

std::string reading(const std::string& path) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return std::strerror(errno);
    }
    close(file);
    return "read";
}

std::string statusLine(const std::string& key) {
    std::ifstream stream("/proc/self/status");
    for (std::string line; std::getline(stream, line);) {
        if (line.rfind(key + ":", 0) == 0) {
            return line.substr(key.size() + 2);
        }
    }
    return std::string();
}

// Whether judges do not see the guard where it lies, or may not get there.
bool isGuardCopied() {
    return holdsInChild([] {
        GuardProgram guard = findGuard();
        becomeJudgeUser(true);
        readNeededImage(&guard, availableSandbox().namespaces);
        return guard.isCopied();
    });
}

class World : public testing::Test {
protected:
    void SetUp() override {
        if (!availableSandbox().isWhole()) {
            GTEST_SKIP() << "this machine has no whole sandbox: " << availableSandbox().missing;
        }
    }
};

TEST_F(World, NothingOutsideCanBeWritten) {
    const TemporaryDirectory outside;
    fs::permissions(outside.path(), fs::perms::all);
    const std::string current = fs::current_path();
    for (const std::string& directory : std::vector<std::string>{
             "/", "/etc", "/usr", "/var/tmp", "/dev", "/dev/shm", "/root", "/home", current}) {
        const std::string path = directory + "/pkgvet-world-test";
        EXPECT_NE(observed([&path] { return writing(path); }), "written") << path;
        std::error_code error;
        EXPECT_FALSE(fs::exists(path, error));
    }
    // What lies in /tmp is not even there.
    EXPECT_EQ(observed([&outside] { return writing(outside / "file"); }),
              "No such file or directory");
}

// It holds nothing but the directory that is to be unpacked in, and perhaps a copy of the guard.
TEST_F(World, TemporaryDirectoryIsPrivate) {
    const std::string seen = observed([] {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator("/tmp")) {
            names.insert(entry.path().filename().string());
        }
        std::string text;
        for (const std::string& name : names) {
            text += name + " ";
        }
        return text + writing("/tmp/file");
    });
    EXPECT_EQ(seen, isGuardCopied() ? "dir.XXXXXX guard written" : "dir.XXXXXX written");
}

TEST_F(World, FilesOfUsersCannotBeRead) {
    const char* const home = std::getenv("HOME");
    const TemporaryDirectory directory;
    const std::string secret = directory.write("secret", "x");
    for (const std::string& path : {secret, std::string(home == nullptr ? "/root" : home),
                                    std::string("/etc/passwd"), std::string("/var")}) {
        EXPECT_NE(observed([&path] { return reading(path); }), "read") << path;
    }
}

TEST_F(World, ThereIsNoNetwork) {
    EXPECT_EQ(observed([] {
                  const int endpoint = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
                  sockaddr_in address{};
                  address.sin_family = AF_INET;
                  address.sin_port = htons(9);
                  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
                  const int answer =
                      connect(endpoint, reinterpret_cast<sockaddr*>(&address), sizeof address);
                  return std::string(answer == 0 ? "connected" : std::strerror(errno));
              }),
              "Operation not permitted");
}

TEST_F(World, OtherProcessesAreOutOfReach) {
    EXPECT_EQ(observed([] { return std::to_string(getpid()); }), "1");
    const pid_t self = getpid();
    EXPECT_EQ(observed([self] {
                  return std::string(kill(self, 0) == 0 ? "reached" : std::strerror(errno));
              }),
              "No such process");
}

TEST_F(World, IdIsOrdinaryAndPowersAreFew) {
    EXPECT_EQ(observed([] { return std::to_string(getuid()); }), "1000");
    // CAP_DAC_OVERRIDE and CAP_FOWNER, and for the change of root CAP_SYS_CHROOT.
    EXPECT_EQ(observed([] { return statusLine("CapEff"); }), "000000000004000a");
    EXPECT_EQ(observed([] { return statusLine("CapAmb"); }), "000000000000000a");
    EXPECT_EQ(observed([] { return statusLine("NoNewPrivs") + statusLine("Seccomp"); }), "12");
}

TEST_F(World, CloseAroundLeavesNoMoreThanReading) {
    const PackageReport report = runJudge([](const Surroundings& surroundings) {
        surroundings.closeAround();
        // Without /proc the capabilities are asked of the kernel by doing.
        return acceptedReport(chroot("/tmp") == 0 ? "changed" : std::strerror(errno));
    });
    EXPECT_EQ(report.name, "Operation not permitted");
}

TEST_F(World, SystemCallsThatReachDeepAreRefused) {
    EXPECT_EQ(observed([] {
                  return std::string(mount("none", "/tmp", "tmpfs", 0, nullptr) == 0
                                         ? "mounted"
                                         : std::strerror(errno));
              }),
              "Operation not permitted");
    EXPECT_EQ(
        observed([] {
            return std::string(unshare(CLONE_NEWUSER) == 0 ? "unshared" : std::strerror(errno));
        }),
        "Operation not permitted");
}

TEST_F(World, RootBecomesWhatWasUnpacked) {
    const PackageReport report = runJudge([](const Surroundings& surroundings) {
        std::ofstream("/tmp/dir.XXXXXX/file") << "content";
        std::ofstream(surroundings.copyPath) << "package";
        surroundings.closeAround();
        std::set<std::string> seen;
        for (const auto& entry : fs::recursive_directory_iterator("/tmp/dir.XXXXXX")) {
            seen.insert(entry.path().string());
        }
        std::string text;
        for (const std::string& path : seen) {
            text += path + " ";
        }
        struct stat status {};
        text += stat(surroundings.copyPath.c_str(), &status) == 0 ? "there " : "gone ";
        text += stat("/etc/passwd", &status) == 0 ? "there" : std::strerror(errno);
        text += " " + reading("/tmp/dir.XXXXXX/file") + " " + writing("/tmp/dir.XXXXXX/other");
        return acceptedReport(text);
    });
    EXPECT_EQ(report.name,
              "/tmp/dir.XXXXXX/file gone No such file or directory read "
              "Permission denied");
}

TEST_F(World, PermissionsOfThePackageHideNothing) {
    EXPECT_EQ(observed([] {
                  mkdir("/tmp/locked", 0700);
                  std::ofstream("/tmp/locked/file") << "content";
                  chmod("/tmp/locked/file", 0);
                  chmod("/tmp/locked", 0);
                  return reading("/tmp/locked/file");
              }),
              "read");
    EXPECT_EQ(observed([] {
                  std::ofstream("/tmp/program") << "content";
                  chmod("/tmp/program", 06755);
                  struct stat status {};
                  stat("/tmp/program", &status);
                  return std::to_string(status.st_mode & 07777U);
              }),
              std::to_string(06755));
}

TEST_F(World, RoomIsWhatTheLimitsSay) {
    Limits limits;
    limits.unpackedBytes = 1 << 20;
    limits.files = 10;
    const auto filled = [](const Surroundings& surroundings) {
        std::ofstream("/tmp/large") << std::string(3 << 20, 'x') << std::flush;
        PackageReport report;
        report.setCause(surroundings.limitMet());
        return report;
    };
    const PackageReport full = runJudge(filled, SandboxMode::Auto, limits);
    EXPECT_EQ(causeCodeName(full.causeCode), "too-large") << full.cause;
    const auto crowded = [](const Surroundings& surroundings) {
        for (int i = 0; i < 100; ++i) {
            std::ofstream("/tmp/file" + std::to_string(i)) << std::flush;
        }
        PackageReport report;
        report.setCause(surroundings.limitMet());
        return report;
    };
    EXPECT_EQ(causeCodeName(runJudge(crowded, SandboxMode::Auto, limits).causeCode),
              "too-many-files");
}

// Where the guard lies in the world of a judge.
testing::Matcher<std::string> isGuardDirectory(SandboxMode mode) {
    if (mode == SandboxMode::Off || !isGuardCopied()) {
        return testing::Eq(findGuard().directory);
    }
    return testing::MatchesRegex(availableSandbox().namespaces ? "/tmp/guard"
                                                               : "/tmp/pkgvet\\.[^/]+/guard");
}

// What follows holds for every sandbox.
class EveryWorld : public testing::TestWithParam<SandboxMode> {};

TEST_P(EveryWorld, EnvironmentHoldsNothingOfTheUsers) {
    setenv("RPM_TEST", "x", 1);
    const auto environment = [] {
        std::string text;
        // Where the files of the tools are differs from world to world.
        unsetenv("PATH");
        unsetenv(kGuardOrdersVariable);
        unsetenv(kGuardNoteVariable);
        unsetenv(kConfigurationVariable);
        for (char** variable = environ; *variable != nullptr; ++variable) {
            text += *variable + std::string("\n");
        }
        return text;
    };
    EXPECT_EQ(observed(environment, GetParam()), "LC_ALL=C.UTF-8\n");
    unsetenv("RPM_TEST");
}

TEST_P(EveryWorld, WordCpioLeadsToTheGuardAlone) {
    const auto status = [] { return std::to_string(system("command -v cpio && ! command -v ls")); };
    EXPECT_EQ(observed(status, GetParam()), "0");
    const auto path = [] { return std::string(std::getenv("PATH")); };
    EXPECT_THAT(observed(path, GetParam()), isGuardDirectory(GetParam()));
}

TEST_P(EveryWorld, GuardNotesWhatBecameOfAnArchive) {
    const PackageReport report = runJudge(
        [](const Surroundings& surroundings) {
            const Cause cause = surroundings.placeGuard({});
            static_cast<void>(chdir("/tmp/dir.XXXXXX"));
            const int status = system("printf 070701 | cpio -idm --quiet");
            const std::optional<GuardNote> note = surroundings.guardNote();
            return acceptedReport(cause.text + std::to_string(status) +
                                  (note && note->end == GuardEnd::CutShort ? " cut short" : "?"));
        },
        GetParam());
    EXPECT_EQ(report.name, "256 cut short");
}

TEST_P(EveryWorld, GuardThatDidNotRunHasNotedNothing) {
    const PackageReport report = runJudge(
        [](const Surroundings& surroundings) {
            surroundings.placeGuard({});
            return acceptedReport(surroundings.guardNote() ? "noted" : "nothing");
        },
        GetParam());
    EXPECT_EQ(report.name, "nothing");
}

TEST_P(EveryWorld, NoDescriptorIsOpenButThoseOfAJudge) {
    EXPECT_EQ(observed(
                  [] {
                      std::string text;
                      for (int i = 0; i < 1024; ++i) {
                          text += fcntl(i, F_GETFD) >= 0 ? std::to_string(i) + " " : "";
                      }
                      return text;
                  },
                  GetParam())
                  .substr(0, 10),
              "0 1 2 3 4 ");
}

TEST_P(EveryWorld, LimitsAreTheKernels) {
    Limits limits;
    limits.processorSeconds = 7;
    limits.unpackedBytes = 1 << 20;
    const PackageReport report = runJudge(
        [](const Surroundings&) {
            struct rlimit time {};
            struct rlimit file {};
            struct rlimit core {};
            getrlimit(RLIMIT_CPU, &time);
            getrlimit(RLIMIT_FSIZE, &file);
            getrlimit(RLIMIT_CORE, &core);
            return acceptedReport(std::to_string(time.rlim_cur) + " " +
                                  std::to_string(file.rlim_cur) + " " +
                                  std::to_string(core.rlim_cur));
        },
        GetParam(), limits);
    EXPECT_EQ(report.name, "7 " + std::to_string(2 << 20) + " 0");
}

TEST_P(EveryWorld, StricterLimitsOfTheCallerHold) {
    TemplateOptions options;
    options.sandbox = GetParam();
    options.limits.processorSeconds = 7;
    options.prepare = [] {
        const struct rlimit strict { 3, 3 };
        setrlimit(RLIMIT_CPU, &strict);
        const struct rlimit files { 64, 64 };
        setrlimit(RLIMIT_NOFILE, &files);
        return [](const Surroundings&) {
            struct rlimit time {};
            struct rlimit descriptors {};
            getrlimit(RLIMIT_CPU, &time);
            getrlimit(RLIMIT_NOFILE, &descriptors);
            return acceptedReport(std::to_string(time.rlim_cur) + " " +
                                  std::to_string(descriptors.rlim_cur));
        };
    };
    EXPECT_EQ(runJudge(options).name, "3 64");
}

INSTANTIATE_TEST_SUITE_P(Each, EveryWorld, testing::Values(SandboxMode::Auto, SandboxMode::Off),
                         [](const auto& mode) {
                             return mode.param == SandboxMode::Auto ? "Auto" : "Off";
                         });

}  // namespace
