// Reads files of the payload.
#include "cli/integrity/file_content.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string_view>

#include "cli/base/checksum.h"

namespace pkgvet::cli {

namespace {

// Small enough for the caches of a processor.
constexpr std::size_t kPieceSize = std::size_t{128} << 10;

// The number of bytes read, 0 at the end and -1 on failure.
ssize_t readPiece(const Descriptor& file, char* piece) {
    ssize_t size = -1;
    do {
        size = ::read(file.get(), piece, kPieceSize);
    } while (size < 0 && errno == EINTR);
    return size;
}

}  // namespace

ContentReader::ContentReader(int algorithm)
    : algorithm_(algorithm), piece_(std::make_unique_for_overwrite<char[]>(kPieceSize)) {}

FileContent ContentReader::read(const std::string& path) {
    const Descriptor file(
        open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!file.isOpen()) {
        FileContent content;
        content.error = errno;
        return content;
    }
    return *read(file, [](std::string_view) { return true; });
}

std::optional<FileContent> ContentReader::read(const Descriptor& file, const PieceUse& use) {
    FileContent content;
    Checksum checksum(algorithm_);
    // Less than a whole piece need not be the last: what is behind it may be what cannot be read.
    ssize_t size = 1;
    while (size > 0) {
        size = readPiece(file, piece_.get());
        const std::string_view bytes(piece_.get(), static_cast<std::size_t>(size < 0 ? 0 : size));
        checksum.add(bytes);
        content.holdsNul =
            content.holdsNul || std::memchr(bytes.data(), 0, bytes.size()) != nullptr;
        if (!use(bytes)) {
            return std::nullopt;
        }
    }
    content.error = size < 0 ? errno : 0;
    content.digest = checksum.finish();
    return content;
}

}  // namespace pkgvet::cli
