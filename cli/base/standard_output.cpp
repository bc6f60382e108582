// Writes to standard output in pieces that never wait unseen.
#include "cli/base/standard_output.h"

#include <limits.h>
#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <iostream>
#include <string_view>

#include "cli/base/ending_signals.h"

namespace pkgvet::cli {

namespace {

// After which somebody who wants the program to end notices that it does not.
constexpr int kMilliseconds = 100;

// What a pipe takes at once when there is room in it.
constexpr std::size_t kPieceSize = PIPE_BUF;

bool isToldToEnd() {
    sigset_t pending{};
    sigpending(&pending);
    return std::any_of(kEndingSignals.begin(), kEndingSignals.end(),
                       [&pending](int signal) { return sigismember(&pending, signal) == 1; });
}

bool waitForRoom() {
    struct pollfd output {
        STDOUT_FILENO, POLLOUT, 0
    };
    while (poll(&output, 1, kMilliseconds) <= 0) {
        if (isToldToEnd()) {
            return false;
        }
    }
    return true;
}

bool writeAll(std::string_view bytes) {
    while (!bytes.empty()) {
        if (!waitForRoom()) {
            return false;
        }
        const ssize_t size = write(STDOUT_FILENO, bytes.data(), std::min(bytes.size(), kPieceSize));
        if (size < 0 && errno != EINTR && errno != EAGAIN) {
            return false;
        }
        bytes.remove_prefix(size < 0 ? 0 : static_cast<std::size_t>(size));
    }
    return true;
}

}  // namespace

StandardOutput::StandardOutput() {
    if (isatty(STDOUT_FILENO) == 0) {
        setp(buffer_.data(), buffer_.data() + buffer_.size());
        std::cout.flush();
        former_ = std::cout.rdbuf(this);
    }
}

StandardOutput::~StandardOutput() {
    if (former_ != nullptr) {
        std::cout.flush();
        std::cout.rdbuf(former_);
    }
}

StandardOutput::int_type StandardOutput::overflow(int_type c) {
    if (sync() != 0) {
        return traits_type::eof();
    }
    if (!traits_type::eq_int_type(c, traits_type::eof())) {
        *pptr() = traits_type::to_char_type(c);
        pbump(1);
    }
    return traits_type::not_eof(c);
}

// What cannot be written is lost, so that nothing waits for it once more.
int StandardOutput::sync() {
    const bool isWritten = writeAll({pbase(), static_cast<std::size_t>(pptr() - pbase())});
    setp(buffer_.data(), buffer_.data() + buffer_.size());
    return isWritten ? 0 : -1;
}

}  // namespace pkgvet::cli
