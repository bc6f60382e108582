// Reads tags through librpm.
#include "cli/integrity/package_header.h"

#include <rpm/rpmio.h>
#include <rpm/rpmlib.h>
#include <rpm/rpmtd.h>

#include <algorithm>

namespace pkgvet::cli {

namespace {

// rpmtdFree frees the container, but not the data in it.
void releaseTagData(rpmtd container) {
    rpmtdFreeData(container);
    rpmtdFree(container);
}

using RpmFileHandle = CHandle<std::remove_pointer_t<FD_t>, Fclose>;
using TagDataHandle = CHandle<std::remove_pointer_t<rpmtd>, releaseTagData>;
using IteratorHandle = CHandle<std::remove_pointer_t<HeaderIterator>, headerFreeIterator>;

constexpr const char* kOpenMode = "r.ufdio";

// Texts stay where they are in the header, instead of being copied.
constexpr headerGetFlags kGetFlags = HEADERGET_MINMEM;

TagDataHandle fetchTag(Header header, rpmTagVal tag) {
    TagDataHandle data(rpmtdNew());
    if (header != nullptr) {
        headerGet(header, tag, data.get(), kGetFlags);
    }
    return data;
}

Header readHeader(const std::string& path, rpmts transactions) {
    RpmFileHandle file(Fopen(path.c_str(), kOpenMode));
    const rpmVSFlags former = rpmtsSetVSFlags(
        transactions, RPMVSF_MASK_NODIGESTS | RPMVSF_MASK_NOSIGNATURES | RPMVSF_NOHDRCHK);
    Header header = nullptr;
    const rpmRC result = rpmReadPackageFile(transactions, file.get(), path.c_str(), &header);
    rpmtsSetVSFlags(transactions, former);
    if (result != RPMRC_OK) {
        header = headerFree(header);
    }
    return header;
}

}  // namespace

PackageHeader::PackageHeader(const std::string& path, rpmts transactions)
    : header_(readHeader(path, transactions)) {}

bool PackageHeader::has(rpmTagVal tag) const {
    return header_ != nullptr && headerIsEntry(header_.get(), tag) != 0;
}

std::size_t PackageHeader::count(rpmTagVal tag) const {
    return rpmtdCount(fetchTag(header_.get(), tag).get());
}

std::vector<std::string> PackageHeader::texts(rpmTagVal tag) const {
    const TagDataHandle data = fetchTag(header_.get(), tag);
    std::vector<std::string> values;
    values.reserve(rpmtdCount(data.get()));
    while (rpmtdNext(data.get()) >= 0) {
        const char* const value = rpmtdGetString(data.get());
        if (value == nullptr) {
            return {};
        }
        values.emplace_back(value);
    }
    return values;
}

std::vector<std::uint64_t> PackageHeader::numbers(rpmTagVal tag) const {
    const TagDataHandle data = fetchTag(header_.get(), tag);
    if (rpmtdClass(data.get()) != RPM_NUMERIC_CLASS) {
        return {};
    }
    std::vector<std::uint64_t> values;
    values.reserve(rpmtdCount(data.get()));
    while (rpmtdNext(data.get()) >= 0) {
        values.push_back(rpmtdGetNumber(data.get()));
    }
    return values;
}

std::string PackageHeader::text(rpmTagVal tag) const {
    const char* const value = rpmtdGetString(fetchTag(header_.get(), tag).get());
    return value == nullptr ? std::string() : std::string(value);
}

std::vector<HeaderTag> PackageHeader::tags() const {
    std::vector<HeaderTag> tags;
    if (header_ != nullptr) {
        const IteratorHandle iterator(headerInitIterator(header_.get()));
        const TagDataHandle data(rpmtdNew());
        while (headerNext(iterator.get(), data.get()) != 0) {
            tags.push_back({rpmtdTag(data.get()), rpmtdType(data.get())});
            rpmtdFreeData(data.get());
        }
    }
    std::sort(tags.begin(), tags.end(),
              [](const HeaderTag& a, const HeaderTag& b) { return a.number < b.number; });
    return tags;
}

}  // namespace pkgvet::cli
