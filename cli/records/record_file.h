// A file of records, of which there may be more than a process may have open.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "pkgvet/base/descriptor.h"

namespace pkgvet::cli {

// Reads a file once from its beginning to its end, and parts of it any number of times. It is open
// until its end is reached. From then on it is opened anew for each part, so that thousands of such
// objects can live beside one another; only what came through a pipe is kept open, as there is no
// other way to it. Throws std::runtime_error with a line that names the file.
class RecordFile {
public:
    explicit RecordFile(std::string path);

    // Fills the beginning of buffer with what comes next and returns its size, 0 at the end.
    std::size_t read(std::vector<char>* buffer);
    // Bytes of the file, wherever reading is.
    std::string textAt(std::uint64_t offset, std::size_t size) const;

private:
    Descriptor openAgain() const;
    [[noreturn]] void fail(const char* cause) const;

    std::string path_;
    Descriptor file_;
    bool isSpooled_ = false;
    dev_t device_ = 0;
    ino_t inode_ = 0;
};

}  // namespace pkgvet::cli
