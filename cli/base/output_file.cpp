// Writes a file beside its path and renames it into place.
#include "cli/base/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "cli/base/escape.h"

namespace pkgvet::cli {

namespace {

// Beside the target, since a file can be renamed within one file system only.
constexpr const char* kTemporaryPrefix = ".pkgvet-";
constexpr int kMostAttempts = 1000;
constexpr mode_t kMode = 0666;  // less the umask

[[noreturn]] void fail(const std::string& path, int error) {
    throw std::runtime_error("cannot write " + printable(path) + ": " + std::strerror(error));
}

// path with the links of its last part followed, whether or not there is such a file yet.
std::string behindLinks(const std::string& path) {
    std::error_code error;
    const std::filesystem::path target = std::filesystem::weakly_canonical(path, error);
    return error ? path : target.string();
}

// A pipe, a terminal or a device, which a rename would replace.
bool isSpecial(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

std::string directoryOf(const std::string& path) {
    const std::filesystem::path directory = std::filesystem::path(path).parent_path();
    return directory.empty() ? "." : directory.string();
}

// The first name in directory that make() can make a file of; empty when it cannot, with the cause
// in errno. An existing name must be refused, also a link that somebody has put there to have
// another file overwritten.
std::string firstFreeName(const std::string& directory,
                          const std::function<bool(const std::string& name)>& make) {
    const std::string prefix = directory + "/" + kTemporaryPrefix + std::to_string(getpid()) + "-";
    for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
        std::string name = prefix + std::to_string(attempt);
        if (make(name)) {
            return name;
        }
        if (errno != EEXIST) {
            break;
        }
    }
    return std::string();
}

}  // namespace

OutputFile::OutputFile(const std::string& path) : path_(path), target_(path) {
    if (isSpecial(path)) {
        descriptor_ = Descriptor(open(path.c_str(), O_WRONLY | O_CLOEXEC));
    } else {
        target_ = behindLinks(path);
        openBeside();
        keepMode();
    }
    if (!descriptor_.isOpen()) {
        fail(path_, errno);
    }
}

// Of the two objects only this one still removes or renames the temporary file.
OutputFile::OutputFile(OutputFile&& other) noexcept
    : path_(std::move(other.path_)),
      target_(std::move(other.target_)),
      temporary_(std::exchange(other.temporary_, {})),
      isNameless_(std::exchange(other.isNameless_, false)),
      descriptor_(std::move(other.descriptor_)) {}

OutputFile::~OutputFile() {
    discard();
}

void OutputFile::write(std::string_view content) {
    // A write to a pipe may take a part only, and a signal may interrupt it.
    while (!content.empty()) {
        const ssize_t size = ::write(descriptor_.get(), content.data(), content.size());
        if (size < 0 && errno == EINTR) {
            continue;
        }
        if (size < 0) {
            fail(path_, errno);
        }
        content.remove_prefix(static_cast<std::size_t>(size));
    }
}

void OutputFile::commit() {
    nameFile();
    // Some file systems tell only now that there was no room.
    if (close(descriptor_.release()) != 0) {
        fail(path_, errno);
    }
    if (temporary_.empty()) {
        return;
    }
    if (rename(temporary_.c_str(), target_.c_str()) != 0) {
        fail(path_, errno);
    }
    temporary_.clear();
}

// A file without a name is gone with the process, even if that is killed. Some file systems have no
// such files.
void OutputFile::openBeside() {
    const std::string directory = directoryOf(target_);
    descriptor_ = Descriptor(open(directory.c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC, kMode));
    if (descriptor_.isOpen()) {
        isNameless_ = true;
        return;
    }
    temporary_ = firstFreeName(directory, [this](const std::string& name) {
        descriptor_ =
            Descriptor(open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kMode));
        return descriptor_.isOpen();
    });
}

// It has to have one before it can take the place of the former file.
void OutputFile::nameFile() {
    if (!isNameless_) {
        return;
    }
    const std::string file = "/proc/self/fd/" + std::to_string(descriptor_.get());
    temporary_ = firstFreeName(directoryOf(target_), [&file](const std::string& name) {
        return linkat(AT_FDCWD, file.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0;
    });
    if (temporary_.empty()) {
        fail(path_, errno);
    }
}

// A report that others may not read, or that they may write to, stays so.
void OutputFile::keepMode() {
    constexpr mode_t kPermissions = S_IRWXU | S_IRWXG | S_IRWXO;
    struct stat former {};
    if (descriptor_.isOpen() && stat(target_.c_str(), &former) == 0 && S_ISREG(former.st_mode) &&
        fchmod(descriptor_.get(), former.st_mode & kPermissions) != 0) {
        const int error = errno;
        discard();
        fail(path_, error);
    }
}

void OutputFile::discard() {
    descriptor_.reset();
    if (!temporary_.empty()) {
        unlink(temporary_.c_str());
    }
}

}  // namespace pkgvet::cli
