// Writes a file beside its path and renames it into place.
#include "cli/base/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
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

// With O_EXCL an existing name is refused, also a link that somebody has put there to have another
// file overwritten.
void OutputFile::openBeside() {
    const std::string prefix =
        (std::filesystem::path(target_).parent_path() / kTemporaryPrefix).string() +
        std::to_string(getpid()) + "-";
    for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
        const std::string name = prefix + std::to_string(attempt);
        descriptor_ =
            Descriptor(open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kMode));
        if (descriptor_.isOpen()) {
            temporary_ = name;
            return;
        }
        if (errno != EEXIST) {
            return;
        }
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
