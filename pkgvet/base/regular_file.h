// Reading files of a package, of which any may be something other than a file.
#pragma once

#include <sys/types.h>

#include <compare>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>

#include "pkgvet/base/c_handle.h"
#include "pkgvet/base/descriptor.h"

namespace pkgvet {

using StreamHandle = CHandle<std::FILE, std::fclose>;

// Whether path, on disk, leads to a regular file, links followed. Nothing is opened for the
// answer: opening a fifo may block for ever and opening a device may set it going. True for the
// files that the kernel generates as well, of which some block a reader; the functions that follow
// never read those.
bool isRegularFile(const std::string& path);

// Whether path, on disk, leads to a fifo, a socket or a device, which may block a reader or never
// end. False for directories and for what is missing: those who read it say what is wrong with it.
bool mayNeverEnd(const char* path);

// What tells one file from another, whatever the paths that lead to it. A package may list one file
// a thousand times, under names of its own or through links, and what it holds is read once.
struct FileIdentity {
    dev_t device = 0;
    ino_t inode = 0;

    auto operator<=>(const FileIdentity&) const = default;
};

// The identity of what path, on disk, leads to; nothing where it leads nowhere.
std::optional<FileIdentity> identityOf(const std::string& path);

// A file that is open for reading, and what it stated when it was opened.
struct OpenFile {
    Descriptor descriptor;  // not open when there is no such file or it cannot be read
    std::uint64_t size = 0;
    FileIdentity identity = {};
};

// Opens the regular file that path leads to, and nothing else, and never waits. All reading of
// files of a package begins here. A file that the kernel generates has size 0, whatever size it
// states.
OpenFile openRegularFile(const std::string& path);

// The same for a path that was found to lead to a regular file a moment ago, and is not looked at
// once more before it is opened.
OpenFile openFileSeenRegular(const std::string& path);

// The whole content of the regular file that path leads to. Nothing when there is no such file,
// when it cannot be read or when it holds more than maxBytes. No more is read than the size that
// the file states.
std::optional<std::string> readRegularFile(const std::string& path, std::size_t maxBytes);

// A stream on the regular file that path leads to, for libraries that want one; null when there is
// none or it cannot be opened. Such a stream has no bound but the end of the file.
StreamHandle openRegularStream(const std::string& path);

// The regular file that path leads to, read in pieces and closed with the object. It reads as far
// as the size that it stated when it was opened.
class RegularFileReader {
public:
    // A file that cannot be opened has nothing to read.
    explicit RegularFileReader(const std::string& path);
    explicit RegularFileReader(OpenFile file);

    bool isOpen() const { return descriptor_.isOpen(); }
    // What is still to be read, if the file holds what it states.
    std::uint64_t remaining() const { return remaining_; }

    // Fills the whole of content, or as far as the file goes, and cuts it to what was read. False,
    // with nothing remaining, when the file cannot be read on.
    bool read(std::string* content);

private:
    Descriptor descriptor_;
    std::uint64_t remaining_;
};

}  // namespace pkgvet
