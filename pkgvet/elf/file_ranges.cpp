// Opens a regular file, and no other, and reads ranges of it.
#include "pkgvet/elf/file_ranges.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "pkgvet/base/regular_file.h"

namespace pkgvet {

namespace {

// What the path leads to may change after the look at it, so the open waits for nobody and takes no
// terminal.
constexpr int kOpenFlags = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

}  // namespace

// To open a device may set it going, hence the look before. The size is that of what was opened.
FileRanges::FileRanges(const std::string& path) {
    if (!isRegularFile(path)) {
        return;
    }
    descriptor_ = open(path.c_str(), kOpenFlags);
    if (!isOpen()) {
        return;
    }
    struct stat status {};
    if (fstat(descriptor_, &status) != 0 || !S_ISREG(status.st_mode)) {
        close();
        return;
    }
    size_ = static_cast<std::uint64_t>(status.st_size);
}

FileRanges::~FileRanges() {
    if (isOpen()) {
        close();
    }
}

void FileRanges::close() {
    ::close(descriptor_);
    descriptor_ = -1;
}

std::optional<std::string> FileRanges::read(std::uint64_t offset, std::uint64_t size) const {
    if (!isOpen() || !holds(offset, size)) {
        return std::nullopt;
    }
    std::string bytes(size, '\0');
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t count = pread(descriptor_, bytes.data() + done, bytes.size() - done,
                                    static_cast<off_t>(offset + done));
        if (count > 0) {
            done += static_cast<std::size_t>(count);
        } else if (count == 0 || errno != EINTR) {
            return std::nullopt;
        }
    }
    return bytes;
}

}  // namespace pkgvet
