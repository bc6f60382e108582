// Judges one package for the process that asked for it.
#include "cli/worker/worker.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <exception>
#include <iostream>
#include <string_view>
#include <vector>

#include "cli/base/exit_status.h"
#include "cli/judge/judge.h"
#include "cli/judge/rpm_session.h"
#include "cli/worker/announced_mkdtemp.h"
#include "cli/worker/wire.h"
#include "pkgvet/rules/configuration.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kNotForUsers = "pkgvet: this command is for pkgvet itself\n";
constexpr const char* kUnusableRules = "the rule tree cannot be used: ";

// The tools that unpack are in the group of this process and have no other end.
void endGroup(int /*signal*/) {
    kill(0, SIGKILL);
}

// Nothing is to go on once nobody waits for the answer, however the other process ended. False when
// that is so already.
bool tieToParent() {
    struct sigaction action {};
    action.sa_handler = endGroup;
    sigaction(SIGTERM, &action, nullptr);
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    struct pollfd answer {
        kAnswerDescriptor, POLLOUT, 0
    };
    return poll(&answer, 1, 0) == 1 && (answer.revents & (POLLERR | POLLNVAL)) == 0;
}

// The tools must not hold the pipe open: its end tells of the end of this process.
bool keepAnswerToOneself() {
    return fcntl(kAnswerDescriptor, F_SETFD, FD_CLOEXEC) == 0;
}

void leaveNoCore() {
    const struct rlimit none { 0, 0 };
    setrlimit(RLIMIT_CORE, &none);
}

std::vector<Configuration> configurationsOf(const WorkerOptions& options) {
    std::vector<Configuration> configurations;
    for (const Profiles profile : options.profiles) {
        configurations.emplace_back(options.rules, profile);
        if (options.validation != ValidationMode::Auto) {
            configurations.back().setValidationEnabled(options.validation == ValidationMode::On);
        }
    }
    return configurations;
}

PackageReport reportOf(const WorkerOptions& options) {
    try {
        const std::vector<Configuration> configurations = configurationsOf(options);
        RpmSession rpm;
        return judge(options.package, configurations, &rpm);
    } catch (const std::exception& error) {
        PackageReport report;
        report.cause = std::string(kUnusableRules) + error.what();
        return report;
    }
}

bool send(std::string_view message) {
    while (!message.empty()) {
        const ssize_t size = write(kAnswerDescriptor, message.data(), message.size());
        if (size < 0 && errno != EINTR) {
            return false;
        }
        message.remove_prefix(size < 0 ? 0 : static_cast<std::size_t>(size));
    }
    return true;
}

}  // namespace

int work(const WorkerOptions& options) {
    if (!keepAnswerToOneself()) {
        std::cerr << kNotForUsers;
        return kUsageError;
    }
    if (!tieToParent()) {
        return kNotJudged;
    }
    leaveNoCore();
    announceDirectories(kAnswerDescriptor);
    return send(reportMessage(reportOf(options))) ? kAccepted : kNotJudged;
}

}  // namespace pkgvet::cli
