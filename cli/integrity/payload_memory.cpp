// Reads a payload to see what keeps it from being read.
#include "cli/integrity/payload_memory.h"

#include <rpm/header.h>
#include <rpm/rpmio.h>
#include <rpm/rpmlib.h>
#include <rpm/rpmts.h>

#include <array>
#include <cerrno>
#include <type_traits>

#include "pkgvet/base/c_handle.h"

namespace pkgvet::cli {

namespace {

using RpmFileHandle = CHandle<std::remove_pointer_t<FD_t>, Fclose>;
using HeaderHandle = CHandle<std::remove_pointer_t<Header>, headerFree>;

constexpr const char* kOpenMode = "r.ufdio";
constexpr const char* kReadMode = "r.";
// Of a package that does not say how it is compressed.
constexpr const char* kFormerCompressor = "gzip";

constexpr rpmVSFlags kUnverified =
    RPMVSF_MASK_NODIGESTS | RPMVSF_MASK_NOSIGNATURES | RPMVSF_NOHDRCHK;

// Leaves the file where the payload begins.
HeaderHandle readHeader(FD_t file, const std::string& path, rpmts transactions) {
    const rpmVSFlags former = rpmtsSetVSFlags(transactions, kUnverified);
    Header header = nullptr;
    rpmReadPackageFile(transactions, file, path.c_str(), &header);
    rpmtsSetVSFlags(transactions, former);
    return HeaderHandle(header);
}

}  // namespace

// Each library that decompresses has its own word for it, but all of them had it from malloc().
bool isShortOfMemory(const std::string& path, RpmSession* rpm) {
    const RpmFileHandle file(Fopen(path.c_str(), kOpenMode));
    const HeaderHandle header = readHeader(file.get(), path, rpm->transactions());
    if (!header) {
        return false;
    }
    const char* const compressor = headerGetString(header.get(), RPMTAG_PAYLOADCOMPRESSOR);
    const std::string mode =
        std::string(kReadMode) + (compressor == nullptr ? kFormerCompressor : compressor);
    if (Fdopen(file.get(), mode.c_str()) == nullptr) {
        return false;
    }
    std::array<char, 65536> piece{};
    errno = 0;
    ssize_t size = 1;
    while (size > 0) {
        size = Fread(piece.data(), 1, piece.size(), file.get());
    }
    return errno == ENOMEM;
}

}  // namespace pkgvet::cli
