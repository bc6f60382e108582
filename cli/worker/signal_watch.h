// The signals that end a run early.
#pragma once

#include <signal.h>

#include "pkgvet/base/descriptor.h"

namespace pkgvet::cli {

// While it lives, SIGINT, SIGTERM and SIGHUP do not end the process but can be asked for, unless
// the process was started with them ignored. They are for the whole process, so there is one of
// these, in a process of one thread.
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
    // Whether a signal has come since the last call.
    bool take();

private:
    sigset_t former_{};
    Descriptor descriptor_;
};

}  // namespace pkgvet::cli
