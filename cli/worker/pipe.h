// The two ends of a pipe.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

#include "pkgvet/base/descriptor.h"

namespace pkgvet::cli {

struct Pipe {
    Descriptor reading;
    Descriptor writing;
};

// Closed in every program that is executed. Throws std::system_error.
inline Pipe makePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), "cannot make a pipe");
    }
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

}  // namespace pkgvet::cli
