#include "tests/support/package/rpm_file.h"

#include <rpm/rpmcrypto.h>
#include <rpm/rpmio.h>
#include <rpm/rpmpgp.h>
#include <rpm/rpmtag.h>

#include <cstdlib>
#include <stdexcept>

#include "tests/support/base/temporary_directory.h"

namespace {

constexpr std::size_t kLeadSize = 96;
constexpr std::size_t kLeadNameSize = 66;
constexpr std::size_t kSignatureAlignment = 8;

struct Compressor {
    const char* name;
    const char* mode;  // of librpm's Fopen
};

constexpr Compressor kCompressors[] = {
    {"", "w.ufdio"},       {"gzip", "w9.gzdio"},  {"xz", "w6.xzdio"},
    {"zstd", "w3.zstdio"}, {"bzip2", "w9.bzdio"}, {"lzma", "w6.lzdio"},
};

const char* modeOf(const std::string& compressor) {
    for (const Compressor& known : kCompressors) {
        if (compressor == known.name) {
            return known.mode;
        }
    }
    throw std::runtime_error("no compressor " + compressor);
}

std::string digest(int algorithm, const std::string& data, bool hexadecimal) {
    DIGEST_CTX context = rpmDigestInit(algorithm, RPMDIGEST_NONE);
    rpmDigestUpdate(context, data.data(), data.size());
    void* result = nullptr;
    std::size_t size = 0;
    if (rpmDigestFinal(context, &result, &size, hexadecimal ? 1 : 0) != 0) {
        throw std::runtime_error("no digest " + std::to_string(algorithm));
    }
    // The size of the digits counts the NUL byte that ends them.
    const std::string text(static_cast<const char*>(result), hexadecimal ? size - 1 : size);
    std::free(result);
    return text;
}

std::uint32_t sizeOf(const std::string& bytes) {
    return static_cast<std::uint32_t>(bytes.size());
}

}  // namespace

std::string RpmFile::bytes() const {
    std::string signatures = signature.bytes(RPMTAG_HEADERSIGNATURES);
    while (signatures.size() % kSignatureAlignment != 0) {
        signatures.push_back('\0');
    }
    return lead + signatures + header.bytes(RPMTAG_HEADERIMMUTABLE) + payload;
}

std::string rpmLead(const std::string& name, std::uint16_t type) {
    std::string lead("\xed\xab\xee\xdb\x03\0\0\0\0\1", 10);
    lead[7] = static_cast<char>(type);
    std::string field = name.substr(0, kLeadNameSize - 1);
    field.resize(kLeadNameSize, '\0');
    lead += field + std::string("\0\1\0\5", 4);
    lead.resize(kLeadSize, '\0');
    return lead;
}

std::string compressed(const std::string& data, const std::string& compressor) {
    const TemporaryDirectory directory;
    const std::string path = directory / "payload";
    FD_t file = Fopen(path.c_str(), modeOf(compressor));
    if (file == nullptr) {
        throw std::runtime_error("cannot write with " + compressor);
    }
    const bool written =
        Fwrite(data.data(), 1, data.size(), file) == static_cast<ssize_t>(data.size());
    if (Fclose(file) != 0 || !written) {
        throw std::runtime_error("cannot compress with " + compressor);
    }
    return readFile(path);
}

std::string digestOf(int algorithm, const std::string& data) {
    return digest(algorithm, data, true);
}

void bindPayload(RpmFile* file, const std::string& archive) {
    file->header.set(RPMTAG_PAYLOADDIGEST, rpmTexts({digestOf(PGPHASHALGO_SHA256, file->payload)}));
    file->header.set(RPMTAG_PAYLOADDIGESTALT, rpmTexts({digestOf(PGPHASHALGO_SHA256, archive)}));
    file->header.set(RPMTAG_PAYLOADDIGESTALGO, rpmInt32({PGPHASHALGO_SHA256}));
}

void bindHeader(RpmFile* file, const std::string& archive) {
    const std::string header = file->header.bytes(RPMTAG_HEADERIMMUTABLE);
    const std::string both = header + file->payload;
    file->signature.set(RPMSIGTAG_SHA1, rpmText(digestOf(PGPHASHALGO_SHA1, header)));
    file->signature.set(RPMSIGTAG_SHA256, rpmText(digestOf(PGPHASHALGO_SHA256, header)));
    file->signature.set(RPMSIGTAG_SIZE, rpmInt32({sizeOf(both)}));
    file->signature.set(RPMSIGTAG_MD5, rpmBinary(digest(PGPHASHALGO_MD5, both, false)));
    file->signature.set(RPMSIGTAG_PAYLOADSIZE, rpmInt32({sizeOf(archive)}));
}
