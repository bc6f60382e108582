// The signals that end a run early.
#pragma once

#include <signal.h>

#include "pkgvet/base/descriptor.h"

namespace pkgvet::cli {

// While it lives, SIGINT, SIGTERM, SIGHUP and SIGQUIT do not end the process but can be asked for,
// unless the process was started with them ignored. They are for the whole process, so there is one
// of these, in a process of one thread.
class SignalWatch {
public:
    SignalWatch();
    SignalWatch(const SignalWatch&) = delete;
    SignalWatch(SignalWatch&&) = delete;
    SignalWatch& operator=(const SignalWatch&) = delete;
    SignalWatch& operator=(SignalWatch&&) = delete;
    // Signals that came late count as answered.
    ~SignalWatch();

    // Readable when a signal has come.
    int descriptor() const { return descriptor_.get(); }
    // The first signal that has come since the last call, or 0.
    int take();

private:
    sigset_t former_{};
    Descriptor descriptor_;
};

// Ends the process by the signal, as if it had never been held up, so that whoever started it sees
// that and a shell leaves its loop. No core is dumped.
[[noreturn]] void endBySignal(int signal);

}  // namespace pkgvet::cli
