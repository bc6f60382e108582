// Watches for signals.
#include "cli/worker/signal_watch.h"

#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "cli/base/ending_signals.h"

namespace pkgvet::cli {

namespace {

bool isIgnored(int signal) {
    struct sigaction action {};
    return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace

SignalWatch::SignalWatch() {
    sigset_t signals{};
    sigemptyset(&signals);
    for (const int signal : kEndingSignals) {
        if (!isIgnored(signal)) {
            sigaddset(&signals, signal);
        }
    }
    descriptor_ = Descriptor(signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
    if (!descriptor_.isOpen()) {
        throw std::system_error(errno, std::generic_category(), "cannot watch for signals");
    }
    sigprocmask(SIG_BLOCK, &signals, &former_);
}

SignalWatch::~SignalWatch() {
    take();
    sigprocmask(SIG_SETMASK, &former_, nullptr);
}

int SignalWatch::take() {
    int first = 0;
    struct signalfd_siginfo info {};
    while (read(descriptor_.get(), &info, sizeof info) == sizeof info) {
        first = first == 0 ? static_cast<int>(info.ssi_signo) : first;
    }
    return first;
}

void endBySignal(int signal) {
    constexpr int kShellOffset = 128;
    // A run is to leave nothing behind, and SIGQUIT would leave a core.
    prctl(PR_SET_DUMPABLE, 0);
    ::signal(signal, SIG_DFL);
    sigset_t signals{};
    sigemptyset(&signals);
    sigaddset(&signals, signal);
    sigprocmask(SIG_UNBLOCK, &signals, nullptr);
    raise(signal);
    _exit(kShellOffset + signal);
}

}  // namespace pkgvet::cli
