// Leads standard error into memory.
#include "cli/quiet_descriptor.h"

#include <stdio.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace pkgvet::cli {

namespace {

// No cause is longer; what stands further ahead is not read.
constexpr off_t kTailSize = 4096;

}  // namespace

QuietDescriptor::QuietDescriptor()
    : former_(dup(STDERR_FILENO)), file_(memfd_create("standard error", MFD_CLOEXEC)) {
    if (former_ < 0 || file_ < 0 || dup2(file_, STDERR_FILENO) < 0) {
        const int cause = errno;
        close(former_);
        close(file_);
        throw std::system_error(cause, std::generic_category(), "cannot redirect standard error");
    }
}

QuietDescriptor::~QuietDescriptor() {
    fflush(stderr);
    dup2(former_, STDERR_FILENO);
    close(former_);
    close(file_);
}

std::string QuietDescriptor::lastLine() const {
    fflush(stderr);
    struct stat status {};
    fstat(file_, &status);
    const off_t begin = std::max<off_t>(0, status.st_size - kTailSize);
    std::string text(static_cast<std::size_t>(status.st_size - begin), '\0');
    const ssize_t size = pread(file_, text.data(), text.size(), begin);
    text.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
    while (text.ends_with('\n')) {
        text.pop_back();
    }
    return text.substr(text.rfind('\n') + 1);
}

}  // namespace pkgvet::cli
