// Reading files of a package, of which any may be something else than a file.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace pkgvet {

// Whether path, on disk, leads to a regular file, links followed. Nothing is opened for the
// answer: opening a fifo may block for ever and opening a device may set it going. True for the
// files that the kernel makes up as well, of which some block a reader; readRegularFile does not.
bool isRegularFile(const std::string& path);

// The whole content of the regular file that path leads to. Nothing when there is no such file,
// when it cannot be read or when it holds more than maxBytes. No more is read than the size that
// the file states, so a file that the kernel makes up, whose stated size is 0, reads as empty.
std::optional<std::string> readRegularFile(const std::string& path, std::size_t maxBytes);

}  // namespace pkgvet
