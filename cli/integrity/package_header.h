// The header of a package as it stands in the file.
#pragma once

#include <rpm/header.h>
#include <rpm/rpmts.h>

#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "pkgvet/base/c_handle.h"

namespace pkgvet::cli {

struct HeaderTag {
    rpmTagVal number;
    rpmTagType type;  // as it stands in the header, which need not be that of the tag
};

// Reads single tags through librpm, which checks type, offset and count of each. Nothing that
// librpm derives from tags is used: what it makes of a header in which they disagree is what the
// rules on integrity are about. Never changes.
class PackageHeader {
public:
    // Reads the package at path. Digests and signatures are not verified.
    PackageHeader(const std::string& path, rpmts transactions);

    // Whether librpm takes the file for a package. Without it there are no tags.
    bool isRead() const { return header_ != nullptr; }

    bool has(rpmTagVal tag) const;
    // How many values the tag has; 0 when it is not there.
    std::size_t count(rpmTagVal tag) const;
    // The values of a tag; none when it is not there or of another type.
    std::vector<std::string> texts(rpmTagVal tag) const;
    std::vector<std::uint64_t> numbers(rpmTagVal tag) const;
    // The first value, empty when there is none.
    std::string text(rpmTagVal tag) const;
    // Every tag, in ascending order. What makes up the header itself is left out.
    std::vector<HeaderTag> tags() const;

private:
    using HeaderHandle = CHandle<std::remove_pointer_t<Header>, headerFree>;

    HeaderHandle header_;
};

}  // namespace pkgvet::cli
