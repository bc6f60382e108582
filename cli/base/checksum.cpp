// Computes checksums.
#include "cli/base/checksum.h"

#include <fcntl.h>
#include <glib.h>
#include <unistd.h>

#include <array>
#include <memory>

#include "pkgvet/base/descriptor.h"

namespace pkgvet::cli {

namespace {

constexpr std::size_t kPieceSize = 65536;

}  // namespace

std::string sha256Of(const std::string& path) {
    const std::unique_ptr<GChecksum, decltype(&g_checksum_free)> checksum(
        g_checksum_new(G_CHECKSUM_SHA256), &g_checksum_free);
    // Without O_NONBLOCK a pipe would keep this waiting for a writer.
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file.isOpen()) {
        return std::string();
    }
    std::array<unsigned char, kPieceSize> piece{};
    ssize_t size = 0;
    while ((size = read(file.get(), piece.data(), piece.size())) > 0) {
        g_checksum_update(checksum.get(), piece.data(), size);
    }
    if (size < 0) {
        return std::string();
    }
    return g_checksum_get_string(checksum.get());
}

}  // namespace pkgvet::cli
