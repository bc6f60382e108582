// Checksums of what passes by.
#pragma once

#include <string>
#include <string_view>

struct DIGEST_CTX_s;

namespace pkgvet::cli {

// The digest of bytes that come piece by piece: SHA-256, or that of librpm's number. librpm does
// the work, with the instructions that the processor has for it.
class Checksum {
public:
    Checksum();
    explicit Checksum(int algorithm);
    Checksum(const Checksum&) = delete;
    Checksum(Checksum&&) = delete;
    Checksum& operator=(const Checksum&) = delete;
    Checksum& operator=(Checksum&&) = delete;
    ~Checksum();

    void add(std::string_view bytes);
    // In hexadecimal; empty for an algorithm that librpm does not have. Called once, and nothing
    // can be added after it.
    std::string finish();

private:
    DIGEST_CTX_s* context_;
};

// SHA-256 of the file at path in hexadecimal; empty for what is not a regular file, such as a pipe,
// or cannot be read.
std::string checksumOfFile(const std::string& path);

}  // namespace pkgvet::cli
