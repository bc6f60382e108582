// Reads ranges of a regular file.
#include "pkgvet/base/file_ranges.h"

#include <unistd.h>

#include <cerrno>

namespace pkgvet {

std::optional<std::string> FileRanges::read(std::uint64_t offset, std::uint64_t size) const {
    if (!isOpen() || !holds(offset, size)) {
        return std::nullopt;
    }
    std::string bytes(size, '\0');
    // A signal may interrupt a read or cut it short.
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t count = pread(descriptor(), bytes.data() + done, bytes.size() - done,
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
