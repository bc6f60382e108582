// Checksums of files.
#pragma once

#include <string>

namespace pkgvet::cli {

// The SHA-256 of the content of the file at path, as 64 lower-case hexadecimal digits, read piece
// by piece. Empty when the file cannot be read; errno then says why.
std::string sha256Of(const std::string& path);

}  // namespace pkgvet::cli
