// Reads files of the payload.
#include "cli/integrity/file_content.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <string_view>

#include "cli/base/checksum.h"
#include "pkgvet/base/descriptor.h"

namespace pkgvet::cli {

namespace {

// Small enough for the caches of a processor.
constexpr std::size_t kPieceSize = std::size_t{128} << 10;

// The number of bytes read, 0 at the end and -1 on failure.
ssize_t readPiece(const Descriptor& file, char* piece) {
    ssize_t size = -1;
    do {
        size = read(file.get(), piece, kPieceSize);
    } while (size < 0 && errno == EINTR);
    return size;
}

}  // namespace

FileContent readContent(const std::string& path, int algorithm) {
    FileContent content;
    const Descriptor file(
        open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!file.isOpen()) {
        content.error = errno;
        return content;
    }
    Checksum checksum(algorithm);
    const auto piece = std::make_unique<char[]>(kPieceSize);
    ssize_t size = 0;
    while ((size = readPiece(file, piece.get())) > 0) {
        const std::string_view bytes(piece.get(), static_cast<std::size_t>(size));
        checksum.add(bytes);
        content.holdsNul =
            content.holdsNul || std::memchr(bytes.data(), 0, bytes.size()) != nullptr;
    }
    content.error = size < 0 ? errno : 0;
    content.digest = checksum.finish();
    return content;
}

}  // namespace pkgvet::cli
