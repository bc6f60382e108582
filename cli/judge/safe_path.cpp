// Gives packages safe names.
#include "cli/judge/safe_path.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "pkgvet/base/descriptor.h"

namespace fs = std::filesystem;

namespace pkgvet::cli {

namespace {

constexpr std::string_view kSafePunctuation = "/._+-~%=@,:";
constexpr const char* kTemplate = "/tmp/pkgvet.XXXXXX";
constexpr const char* kName = "/package.rpm";

bool isSafe(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           kSafePunctuation.find(c) != std::string_view::npos;
}

bool clone(const std::string& from, const std::string& to) {
    const Descriptor source(open(from.c_str(), O_RDONLY | O_CLOEXEC));
    const Descriptor target(
        open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    const bool cloned =
        source.isOpen() && target.isOpen() && ioctl(target.get(), FICLONE, source.get()) == 0;
    if (!cloned) {
        unlink(to.c_str());
    }
    return cloned;
}

void copy(const std::string& from, const std::string& to) {
    std::error_code error;
    if (clone(from, to)) {
        return;
    }
    fs::create_hard_link(from, to, error);
    if (error) {
        fs::copy_file(from, to);
    }
}

}  // namespace

bool isShellSafe(const std::string& path) {
    return std::all_of(path.begin(), path.end(), isSafe);
}

SafePath::SafePath(const std::string& resolved) : path_(resolved) {
    if (isShellSafe(resolved)) {
        return;
    }
    std::string directory = kTemplate;
    if (mkdtemp(directory.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), "cannot make " + directory);
    }
    path_ = directory + kName;
    try {
        copy(resolved, path_);
    } catch (...) {
        rmdir(directory.c_str());
        throw;
    }
    directory_ = directory;
}

SafePath::~SafePath() {
    if (!directory_.empty()) {
        std::error_code error;
        fs::remove_all(directory_, error);
    }
}

}  // namespace pkgvet::cli
