// RPM files, part by part.
#pragma once

#include <cstdint>
#include <string>

#include "tests/support/package/rpm_header.h"

struct RpmFile {
    std::string lead;
    RpmHeader signature;
    RpmHeader header;
    std::string payload;  // compressed, as it stands in the file

    std::string bytes() const;
};

// The first 96 bytes of a file. Of a source package, type is 1.
std::string rpmLead(const std::string& name, std::uint16_t type = 0);

// data as librpm compresses it: with gzip, xz, zstd, bzip2 or lzma, or not at all when compressor
// is empty. std::runtime_error when librpm cannot.
std::string compressed(const std::string& data, const std::string& compressor);

// Lower-case hexadecimal digits. algorithm is a number of OpenPGP such as PGPHASHALGO_SHA256.
std::string digestOf(int algorithm, const std::string& data);

// Puts digests of the payload, and of archive, which is the payload before its compression, into
// the header.
void bindPayload(RpmFile* file, const std::string& archive);
// Puts sizes and digests of header and payload into the header of the signatures.
void bindHeader(RpmFile* file, const std::string& archive);
