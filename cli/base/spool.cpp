// Keeps text in a file without a name.
#include "cli/base/spool.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace pkgvet::cli {

namespace {

// The first of them lies on disk on most machines, the second one often in memory.
constexpr std::array<const char*, 2> kDirectories = {"/var/tmp", "/tmp"};
// Most runs have no more to keep, and touch no disk for it.
constexpr std::size_t kMostInMemory = std::size_t{4} << 20U;
constexpr std::size_t kPieceSize = std::size_t{1} << 16U;

[[noreturn]] void fail() {
    throw std::runtime_error(std::string("cannot keep a report on disk: ") + std::strerror(errno));
}

Descriptor openFile() {
    for (const char* directory : kDirectories) {
        Descriptor file(
            open(directory, O_RDWR | O_TMPFILE | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
        if (file.isOpen()) {
            return file;
        }
    }
    return Descriptor(memfd_create("pkgvet", MFD_CLOEXEC));
}

}  // namespace

void Spool::write(std::string_view text) {
    size_ += text.size();
    if (!file_.isOpen() && text_.size() + text.size() <= kMostInMemory) {
        text_ += text;
        return;
    }
    moveToFile();
    append(text);
}

void Spool::moveToFile() {
    if (file_.isOpen()) {
        return;
    }
    file_ = openFile();
    if (!file_.isOpen()) {
        fail();
    }
    append(text_);
    text_ = std::string();
}

void Spool::append(std::string_view text) {
    while (!text.empty()) {
        const ssize_t size = ::write(file_.get(), text.data(), text.size());
        if (size < 0 && errno != EINTR) {
            fail();
        }
        text.remove_prefix(size < 0 ? 0 : static_cast<std::size_t>(size));
    }
}

void Spool::read(const std::function<void(std::string_view piece)>& receive) const {
    if (!file_.isOpen()) {
        receive(text_);
        return;
    }
    std::vector<char> piece(kPieceSize);
    off_t offset = 0;
    while (true) {
        const ssize_t size = pread(file_.get(), piece.data(), piece.size(), offset);
        if (size < 0 && errno != EINTR) {
            fail();
        }
        if (size == 0) {
            return;
        }
        if (size > 0) {
            receive({piece.data(), static_cast<std::size_t>(size)});
            offset += size;
        }
    }
}

std::string Spool::part(std::uint64_t offset, std::size_t size) const {
    if (!file_.isOpen()) {
        return text_.substr(offset, size);
    }
    std::string part(size, '\0');
    std::size_t done = 0;
    while (done < size) {
        const ssize_t more =
            pread(file_.get(), part.data() + done, size - done, static_cast<off_t>(offset + done));
        errno = more == 0 ? EIO : errno;
        if (more == 0 || (more < 0 && errno != EINTR)) {
            fail();
        }
        done += more < 0 ? 0 : static_cast<std::size_t>(more);
    }
    return part;
}

Descriptor Spool::takeFile() {
    moveToFile();
    if (lseek(file_.get(), 0, SEEK_SET) != 0) {
        fail();
    }
    return std::move(file_);
}

}  // namespace pkgvet::cli
