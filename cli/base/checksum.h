// Checksums of what passes by.
#pragma once

#include <string>
#include <string_view>

struct DIGEST_CTX_s;

namespace pkgvet::cli {

// SHA-256 of bytes that come piece by piece. librpm does the work, with the instructions that the
// processor has for it.
class Sha256 {
public:
    Sha256();
    Sha256(const Sha256&) = delete;
    Sha256(Sha256&&) = delete;
    Sha256& operator=(const Sha256&) = delete;
    Sha256& operator=(Sha256&&) = delete;
    ~Sha256();

    void add(std::string_view bytes);
    // In hexadecimal. Called once, and nothing can be added after it.
    std::string finish();

private:
    DIGEST_CTX_s* context_;
};

}  // namespace pkgvet::cli
