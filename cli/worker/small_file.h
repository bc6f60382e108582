// Files that a judge and what it starts hand to one another.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "pkgvet/base/descriptor.h"

namespace pkgvet::cli {

// Writes a file that is not there yet. Throws std::system_error.
void writeNewFile(const std::string& path, std::string_view bytes, mode_t mode);

// Up to size bytes of the file; empty when it is not there or not a regular file.
std::string beginningOf(const std::string& path, std::size_t size);
// The same of one that is open, whose position stays as it is.
std::string beginningOf(const Descriptor& file, std::size_t size);

}  // namespace pkgvet::cli
