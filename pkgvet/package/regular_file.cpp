// Reads what is a regular file, and nothing else.
#include "pkgvet/package/regular_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace pkgvet {

namespace {

// What path leads to may change between the look at it and the open, hence the second look and an
// open that waits for nobody.
constexpr int kOpenFlags = O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;

class OpenFile {
public:
    explicit OpenFile(const std::string& path) : descriptor_(open(path.c_str(), kOpenFlags)) {}
    OpenFile(const OpenFile&) = delete;
    OpenFile(OpenFile&&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    OpenFile& operator=(OpenFile&&) = delete;
    ~OpenFile() {
        if (descriptor_ >= 0) {
            close(descriptor_);
        }
    }

    // The size that a regular file states; nothing for whatever is not one.
    std::optional<std::size_t> statedSize() const {
        struct stat status {};
        if (descriptor_ < 0 || fstat(descriptor_, &status) != 0 || !S_ISREG(status.st_mode)) {
            return std::nullopt;
        }
        return static_cast<std::size_t>(status.st_size);
    }

    // Fills content as far as the file goes; false when it cannot be read.
    bool read(std::string* content) const {
        std::size_t filled = 0;
        while (filled < content->size()) {
            const ssize_t count =
                ::read(descriptor_, content->data() + filled, content->size() - filled);
            if (count < 0 && errno != EINTR) {
                return false;
            }
            if (count == 0) {
                break;
            }
            filled += count > 0 ? static_cast<std::size_t>(count) : 0;
        }
        content->resize(filled);
        return true;
    }

private:
    int descriptor_;
};

}  // namespace

bool isRegularFile(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

std::optional<std::string> readRegularFile(const std::string& path, std::size_t maxBytes) {
    if (!isRegularFile(path)) {
        return std::nullopt;
    }
    const OpenFile file(path);
    const std::optional<std::size_t> size = file.statedSize();
    if (!size || *size > maxBytes) {
        return std::nullopt;
    }
    std::string content(*size, '\0');
    if (!file.read(&content)) {
        return std::nullopt;
    }
    return content;
}

}  // namespace pkgvet
