// Watches for signals.
#include "cli/worker/signal_watch.h"

#include <sys/signalfd.h>

#include <cerrno>
#include <system_error>

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
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
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

bool SignalWatch::take() {
    bool taken = false;
    struct signalfd_siginfo info {};
    while (read(descriptor_.get(), &info, sizeof info) == sizeof info) {
        taken = true;
    }
    return taken;
}

}  // namespace pkgvet::cli
