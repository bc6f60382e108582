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

// Null, with EINVAL, for a path that does not end with one.
char* placeholderIn(char* path) {
    const std::size_t size = strlen(path);
    if (!std::string_view(path, size).ends_with(kPlaceholder)) {
        errno = EINVAL;
        return nullptr;
    }
    return path + size - kPlaceholder.size();
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

bool makeNew(char* path, mode_t mode) {
    char* const placeholder = placeholderIn(path);
    for (int i = 0; placeholder != nullptr && i < kAttempts && fillIn(placeholder); ++i) {
        if (mkdir(path, mode) == 0) {
            return true;
        }
        if (errno != EEXIST) {
            return false;
        }
    }
    return false;
}

}  // namespace

// As the C library's, of which this takes the place.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
extern "C" PKGVET_EXPORT char* mkdtemp(char* path) noexcept {
    const std::size_t size = strlen(path);
    if (size > 0 && prepared().size() == size) {
        return static_cast<char*>(memcpy(path, prepared().data(), size));
    }
    return makeNew(path, S_IRWXU) ? path : nullptr;
}

namespace pkgvet::cli {

void prepareDirectory(const std::string& directory) {
    prepared() = directory;
}

std::string makeDirectory(const std::string& pathTemplate, mode_t mode) {
    std::string path = pathTemplate;
    return makeNew(path.data(), mode) ? path : std::string();
}

std::string chooseName(const std::string& pathTemplate) {
    std::string path = pathTemplate;
    char* const placeholder = placeholderIn(path.data());
    return placeholder != nullptr && fillIn(placeholder) ? path : std::string();
}

}  // namespace pkgvet::cli
