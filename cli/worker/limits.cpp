// Has the kernel keep limits.
#include "cli/worker/limits.h"

#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace pkgvet::cli {

namespace {

// A judge, the shell, the two tools and their helpers.
constexpr rlim_t kProcesses = 64;
constexpr rlim_t kDescriptors = 256;

// The sanitizers lay claim to far more addresses than they use.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kHasAddressLimit = false;
#else
constexpr bool kHasAddressLimit = true;
#endif

void limit(int resource, rlim_t soft, rlim_t hard) {
    const auto kind = static_cast<__rlimit_resource>(resource);
    struct rlimit limits {};
    getrlimit(kind, &limits);
    // A caller who allows less means it.
    limits = {std::min(soft, limits.rlim_max), std::min(hard, limits.rlim_max)};
    if (setrlimit(kind, &limits) != 0) {
        throw std::system_error(errno, std::generic_category(), "cannot limit resources");
    }
}

void endOutOfTime(int /*signal*/) {
    _exit(kOutOfTimeStatus);
}

void endBySignal(int signal) {
    _exit(kSignalStatus + signal);
}

void handle(int signal, void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    sigaction(signal, &action, nullptr);
}

}  // namespace

// The first process of its namespaces ignores what it has no handler for, so that the soft limit on
// processor time and a call of abort() would pass it by.
void applyLimits(const Limits& limits, std::uint64_t fileSize, bool hasOwnIds) {
    handle(SIGXCPU, endOutOfTime);
    handle(SIGABRT, endBySignal);
    limit(RLIMIT_CPU, limits.processorSeconds, limits.processorSeconds + 1);
    // Writing on is then an error like any other.
    handle(SIGXFSZ, SIG_IGN);
    limit(RLIMIT_FSIZE, fileSize, fileSize);
    limit(RLIMIT_CORE, 0, 0);
    limit(RLIMIT_NOFILE, kDescriptors, kDescriptors);
    if (kHasAddressLimit) {
        limit(RLIMIT_AS, limits.memory, limits.memory);
    }
    if (hasOwnIds) {
        limit(RLIMIT_NPROC, kProcesses, kProcesses);
    }
}

}  // namespace pkgvet::cli
