// Copies packages.
#include "cli/judge/package_copy.h"

#include <fcntl.h>
#include <sys/sendfile.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <exception>
#include <string_view>

#include "cli/base/checksum.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kNotCopied = "cannot copy the package: ";

constexpr std::size_t kPieceSize = std::size_t{256} << 10;
// Of one call that copies inside the kernel.
constexpr std::size_t kSendSize = std::size_t{64} << 20;

std::string reason(int error) {
    return std::strerror(error);
}

// The number of bytes read, 0 at the end.
std::size_t readPiece(int descriptor, std::string* piece) {
    ssize_t size = -1;
    do {
        size = read(descriptor, piece->data(), piece->size());
    } while (size < 0 && errno == EINTR);
    if (size < 0) {
        throw NotJudged{{CauseCode::Unreadable, reason(errno)}};
    }
    return static_cast<std::size_t>(size);
}

void writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t size = write(descriptor, bytes.data(), bytes.size());
        if (size < 0 && errno != EINTR) {
            throw NotJudged{{CauseCode::Unreadable, kNotCopied + reason(errno)}};
        }
        bytes.remove_prefix(size < 0 ? 0 : static_cast<std::size_t>(size));
    }
}

// The kernel copies without a way through this process. Whatever keeps it from going on is left to
// reading and writing, which tell one from the other.
void copyBytes(int from, int to) {
    while (sendfile(to, from, nullptr, kSendSize) > 0) {
    }
    std::string piece(kPieceSize, '\0');
    while (const std::size_t size = readPiece(from, &piece)) {
        writeAll(to, std::string_view(piece).substr(0, size));
    }
}

std::string checksumOf(const Descriptor& file) {
    Checksum checksum;
    std::string piece(kPieceSize, '\0');
    while (const std::size_t size = readPiece(file.get(), &piece)) {
        checksum.add(std::string_view(piece).substr(0, size));
    }
    return checksum.finish();
}

}  // namespace

PackageCopy::PackageCopy(int package, const std::string& path, std::string* checksum)
    : copy_(open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0400)), checksum_(checksum) {
    if (!copy_.isOpen()) {
        throw NotJudged{{CauseCode::Unreadable, kNotCopied + reason(errno)}};
    }
    copyBytes(package, copy_.get());
    lseek(copy_.get(), 0, SEEK_SET);
    // Where no thread is to be had, finish() does the work.
    sum_ = std::async(std::launch::async | std::launch::deferred,
                      [this] { return checksumOf(copy_); });
}

PackageCopy::~PackageCopy() {
    try {
        finish();
    } catch (const std::exception&) {
        // There is another cause already.
    } catch (const NotJudged&) {
    }
}

void PackageCopy::finish() {
    if (sum_.valid()) {
        *checksum_ = sum_.get();
    }
}

}  // namespace pkgvet::cli
