// Writes and reads small files.
#include "cli/worker/small_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace pkgvet::cli {

void writeNewFile(const std::string& path, std::string_view bytes, mode_t mode) {
    const Descriptor file(
        open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, mode));
    while (file.isOpen() && !bytes.empty()) {
        const ssize_t size = write(file.get(), bytes.data(), bytes.size());
        if (size < 0 && errno != EINTR) {
            break;
        }
        bytes.remove_prefix(size < 0 ? 0 : static_cast<std::size_t>(size));
    }
    if (!file.isOpen() || !bytes.empty()) {
        throw std::system_error(errno, std::generic_category(), "cannot write " + path);
    }
}

std::string beginningOf(const std::string& path, std::size_t size) {
    return beginningOf(
        Descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK)), size);
}

std::string beginningOf(const Descriptor& file, std::size_t size) {
    struct stat status {};
    std::string bytes;
    if (!file.isOpen() || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return bytes;
    }
    size = std::min(size, static_cast<std::size_t>(status.st_size));
    bytes.resize(size);
    std::size_t end = 0;
    for (ssize_t count = 1; count > 0 && end < size; end += static_cast<std::size_t>(count)) {
        count = std::max<ssize_t>(
            pread(file.get(), bytes.data() + end, size - end, static_cast<off_t>(end)), 0);
    }
    bytes.resize(end);
    return bytes;
}

}  // namespace pkgvet::cli
