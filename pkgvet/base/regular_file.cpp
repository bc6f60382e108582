// Reads what is a regular file, and nothing else.
#include "pkgvet/base/regular_file.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace pkgvet {

namespace {

constexpr const char* kReadMode = "rb";

// What path leads to may change between stat and open. Hence an open that does not wait for the
// other end of a fifo, and a second look, at what was opened.
constexpr int kOpenFlags = O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;

// A link of a package may lead to a file that the kernel generates, and one of these, in /proc,
// states the size of the whole address space. None of them takes up room.
bool isGeneratedByKernel(int descriptor, const struct stat& status) {
    struct statfs system {};
    return status.st_blocks == 0 && fstatfs(descriptor, &system) == 0 &&
           (system.f_type == PROC_SUPER_MAGIC || system.f_type == SYSFS_MAGIC);
}

}  // namespace

bool isRegularFile(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

bool mayNeverEnd(const char* path) {
    struct stat status {};
    return stat(path, &status) == 0 && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode);
}

std::optional<FileIdentity> identityOf(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0
               ? std::optional(FileIdentity{status.st_dev, status.st_ino})
               : std::nullopt;
}

OpenFile openRegularFile(const std::string& path) {
    return isRegularFile(path) ? openFileSeenRegular(path) : OpenFile();
}

OpenFile openFileSeenRegular(const std::string& path) {
    OpenFile file;
    Descriptor descriptor(open(path.c_str(), kOpenFlags));
    struct stat status {};
    if (!descriptor.isOpen() || fstat(descriptor.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return file;
    }
    file.size = isGeneratedByKernel(descriptor.get(), status)
                    ? 0
                    : static_cast<std::uint64_t>(status.st_size);
    file.identity = {status.st_dev, status.st_ino};
    file.descriptor = std::move(descriptor);
    return file;
}

std::optional<std::string> readRegularFile(const std::string& path, std::size_t maxBytes) {
    RegularFileReader file(path);
    if (!file.isOpen() || file.remaining() > maxBytes) {
        return std::nullopt;
    }
    std::string content(static_cast<std::size_t>(file.remaining()), '\0');
    if (!file.read(&content)) {
        return std::nullopt;
    }
    return content;
}

StreamHandle openRegularStream(const std::string& path) {
    OpenFile file = openRegularFile(path);
    if (!file.descriptor.isOpen()) {
        return nullptr;
    }
    StreamHandle stream(fdopen(file.descriptor.get(), kReadMode));
    if (stream) {
        file.descriptor.release();
    }
    return stream;
}

RegularFileReader::RegularFileReader(const std::string& path)
    : RegularFileReader(openRegularFile(path)) {}

RegularFileReader::RegularFileReader(OpenFile file)
    : descriptor_(std::move(file.descriptor)), remaining_(file.size) {}

bool RegularFileReader::read(std::string* content) {
    const auto wanted =
        static_cast<std::size_t>(std::min<std::uint64_t>(content->size(), remaining_));
    std::size_t filled = 0;
    ssize_t count = 1;
    while (filled < wanted && count != 0) {
        count = ::read(descriptor_.get(), content->data() + filled, wanted - filled);
        if (count < 0 && errno != EINTR) {
            break;
        }
        filled += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    content->resize(filled);
    remaining_ = filled == wanted ? remaining_ - filled : 0;
    return count >= 0;
}

}  // namespace pkgvet
