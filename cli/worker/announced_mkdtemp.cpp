// Makes temporary directories, and says so beforehand.
#include "cli/worker/announced_mkdtemp.h"

#include <stdlib.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <string>
#include <string_view>

#include "cli/worker/wire.h"
#include "pkgvet/export.h"

namespace {

constexpr std::string_view kPlaceholder = "XXXXXX";
constexpr std::string_view kAlphabet =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
constexpr int kAttempts = 100;

// The descriptor, -1 for none. It belongs to the process as mkdtemp does, which has no other way to
// learn of it.
int announcements = -1;

bool fillIn(char* placeholder) {
    std::array<unsigned char, kPlaceholder.size()> random{};
    if (getrandom(random.data(), random.size(), 0) != static_cast<ssize_t>(random.size())) {
        return false;
    }
    for (const unsigned char byte : random) {
        *placeholder++ = kAlphabet[byte % kAlphabet.size()];
    }
    return true;
}

bool exists(const char* path) {
    struct stat status {};
    return lstat(path, &status) == 0;
}

bool announce(const char* directory) {
    if (announcements < 0) {
        return true;
    }
    // Short enough for a pipe to take it whole or not at all.
    const std::string message = pkgvet::cli::directoryMessage(directory);
    return write(announcements, message.data(), message.size()) ==
           static_cast<ssize_t>(message.size());
}

}  // namespace

// As the C library's, of which this takes the place.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
extern "C" PKGVET_EXPORT char* mkdtemp(char* path) noexcept {
    const std::size_t size = strlen(path);
    if (!std::string_view(path, size).ends_with(kPlaceholder)) {
        errno = EINVAL;
        return nullptr;
    }
    for (int i = 0; i < kAttempts; ++i) {
        if (!fillIn(path + size - kPlaceholder.size())) {
            return nullptr;
        }
        if (exists(path)) {
            // Somebody else's: to announce it would have it removed.
            continue;
        }
        if (!announce(path)) {
            return nullptr;
        }
        if (mkdir(path, S_IRWXU) == 0) {
            return path;
        }
        if (errno != EEXIST) {
            return nullptr;
        }
    }
    return nullptr;
}

namespace pkgvet::cli {

void announceDirectories(int descriptor) {
    announcements = descriptor;
}

}  // namespace pkgvet::cli
