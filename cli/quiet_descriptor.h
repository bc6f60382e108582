// Keeps what tools and C libraries say on standard error from the user.
#pragma once

#include <string>

namespace pkgvet::cli {

// While it lives, file descriptor 2 leads into a file of its own, for this process and the ones it
// starts. Throws std::system_error when that cannot be had.
class QuietDescriptor {
public:
    QuietDescriptor();
    QuietDescriptor(const QuietDescriptor&) = delete;
    QuietDescriptor(QuietDescriptor&&) = delete;
    QuietDescriptor& operator=(const QuietDescriptor&) = delete;
    QuietDescriptor& operator=(QuietDescriptor&&) = delete;
    ~QuietDescriptor();

    // The last line that was said, without its line feed; empty when nothing was.
    std::string lastLine() const;

private:
    int former_;
    int file_;
};

}  // namespace pkgvet::cli
