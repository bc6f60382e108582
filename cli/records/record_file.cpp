// Opens reports and reads them.
#include "cli/records/record_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "cli/base/fault.h"
#include "cli/base/spool.h"

namespace pkgvet::cli {

namespace {

constexpr std::size_t kBufferSize = std::size_t{1} << 16U;

Descriptor openFile(const std::string& path) {
    return Descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
}

}  // namespace

// What comes through a pipe can be read once, so that it is kept on disk.
RecordFile::RecordFile(std::string path) : path_(std::move(path)), file_(openFile(path_)) {
    struct stat status {};
    if (!file_.isOpen() || fstat(file_.get(), &status) != 0) {
        fail(std::strerror(errno));
    }
    device_ = status.st_dev;
    inode_ = status.st_ino;
    if (S_ISREG(status.st_mode)) {
        return;
    }
    Spool spool;
    std::vector<char> buffer(kBufferSize);
    while (const std::size_t size = read(&buffer)) {
        spool.write({buffer.data(), size});
    }
    file_ = spool.takeFile();
    isSpooled_ = true;
}

std::size_t RecordFile::read(std::vector<char>* buffer) {
    while (file_.isOpen()) {
        const ssize_t size = ::read(file_.get(), buffer->data(), buffer->size());
        if (size > 0) {
            return static_cast<std::size_t>(size);
        }
        if (size == 0) {
            break;
        }
        if (errno != EINTR) {
            fail(std::strerror(errno));
        }
    }
    if (!isSpooled_) {
        file_.reset();
    }
    return 0;
}

std::string RecordFile::textAt(std::uint64_t offset, std::size_t size) const {
    const Descriptor again = file_.isOpen() ? Descriptor() : openAgain();
    const int file = file_.isOpen() ? file_.get() : again.get();
    std::string text(size, '\0');
    std::size_t done = 0;
    while (done < size) {
        const ssize_t more =
            pread(file, text.data() + done, size - done, static_cast<off_t>(offset + done));
        if (more < 0 && errno == EINTR) {
            continue;
        }
        if (more <= 0) {
            fail(more < 0 ? std::strerror(errno) : "has become shorter meanwhile");
        }
        done += static_cast<std::size_t>(more);
    }
    return text;
}

// Places in one file mean nothing in another.
Descriptor RecordFile::openAgain() const {
    Descriptor file = openFile(path_);
    struct stat status {};
    if (!file.isOpen() || fstat(file.get(), &status) != 0) {
        fail(std::strerror(errno));
    }
    if (status.st_dev != device_ || status.st_ino != inode_) {
        fail("has been replaced meanwhile");
    }
    return file;
}

void RecordFile::fail(const char* cause) const {
    throw std::runtime_error(describe({path_, std::string(), cause}));
}

}  // namespace pkgvet::cli
