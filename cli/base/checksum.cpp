// Sums up bytes.
#include "cli/base/checksum.h"

#include <fcntl.h>
#include <rpm/rpmcrypto.h>
#include <rpm/rpmpgp.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <utility>
#include <vector>

#include "pkgvet/base/descriptor.h"

namespace pkgvet::cli {

namespace {

constexpr int kAsText = 1;
constexpr std::size_t kPieceSize = std::size_t{1} << 20U;

}  // namespace

Checksum::Checksum() : Checksum(RPM_HASH_SHA256) {}

Checksum::Checksum(int algorithm) : context_(rpmDigestInit(algorithm, RPMDIGEST_NONE)) {}

Checksum::~Checksum() {
    if (context_ != nullptr) {
        rpmDigestFinal(context_, nullptr, nullptr, kAsText);
    }
}

void Checksum::add(std::string_view bytes) {
    rpmDigestUpdate(context_, bytes.data(), bytes.size());
}

std::string Checksum::finish() {
    void* text = nullptr;
    std::size_t size = 0;
    if (rpmDigestFinal(std::exchange(context_, nullptr), &text, &size, kAsText) != 0) {
        return std::string();
    }
    const std::unique_ptr<void, decltype(&free)> owner(text, &free);
    return static_cast<const char*>(text);
}

std::string checksumOfFile(const std::string& path) {
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    struct stat status {};
    if (!file.isOpen() || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::string();
    }
    Checksum sum;
    std::vector<char> piece(kPieceSize);
    while (true) {
        const ssize_t size = read(file.get(), piece.data(), piece.size());
        if (size == 0) {
            return sum.finish();
        }
        if (size < 0 && errno != EINTR) {
            return std::string();
        }
        sum.add({piece.data(), size < 0 ? 0 : static_cast<std::size_t>(size)});
    }
}

}  // namespace pkgvet::cli
