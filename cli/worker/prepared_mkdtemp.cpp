// The program's own mkdtemp.
#include "cli/worker/prepared_mkdtemp.h"

#include <stdlib.h>
#include <sys/random.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>

#include "pkgvet/export.h"

namespace {

constexpr std::string_view kPlaceholder = "XXXXXX";
// Without "s" and "o", so that no name makes ".so", which would make a shared object of every
// executable below it.
constexpr std::string_view kAlphabet = "abcdefghijklmnpqrtuvwxyzABCDEFGHIJKLMNPQRTUVWXYZ0123456789";
constexpr int kAttempts = 100;

// It belongs to the process as mkdtemp does, which has no other way to learn of it.
std::string& prepared() {
    static std::string directory;
    return directory;
}

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

}  // namespace

// As the C library's, of which this takes the place.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
extern "C" PKGVET_EXPORT char* mkdtemp(char* path) noexcept {
    const std::size_t size = strlen(path);
    if (size > 0 && prepared().size() == size) {
        return static_cast<char*>(memcpy(path, prepared().data(), size));
    }
    if (!std::string_view(path, size).ends_with(kPlaceholder)) {
        errno = EINVAL;
        return nullptr;
    }
    for (int i = 0; i < kAttempts; ++i) {
        if (!fillIn(path + size - kPlaceholder.size())) {
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

void prepareDirectory(const std::string& directory) {
    prepared() = directory;
}

std::string makeDirectory(const std::string& pathTemplate) {
    std::string path = pathTemplate;
    return mkdtemp(path.data()) == nullptr ? std::string() : path;
}

}  // namespace pkgvet::cli
