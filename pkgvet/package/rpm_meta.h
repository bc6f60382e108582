// What the rules know of a package's header.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "pkgvet/export.h"

using rpmts = struct rpmts_s*;
struct RpmMetaPrivate;

// The header of one RPM file as a plain record, read whole by the constructor. Nothing of the
// payload is read. A package that cannot be read leaves every field empty, and says so in no other
// way; the rules report what is missing.
//
// The record never changes. Copies are independent of each other.
//
// There is no move constructor, which would leave an object without its record: rvalues are copied.
// NOLINTNEXTLINE(cppcoreguidelines-special-member-functions)
class PKGVET_EXPORT RpmMeta {
public:
    // Reads the package at path, a path on disk, through the caller's transaction set, which is not
    // kept and leaves with the verification flags that it came with. Digests and signatures of the
    // header are not verified; a package that librpm answers with anything but plain success, such
    // as an unknown key, counts as unreadable. Throws std::logic_error for a header in which a text
    // has another type, and std::length_error for one whose paths take more than 256 MiB.
    RpmMeta(const char* path, rpmts ts);
    // The same with no transaction set, which cannot carry the flags above.
    explicit RpmMeta(const char* path);
    RpmMeta(const RpmMeta& other);
    RpmMeta& operator=(const RpmMeta&) = delete;
    // Exchanges the two records: other holds this one's former record afterwards.
    RpmMeta& operator=(RpmMeta&& other) noexcept;
    ~RpmMeta();

    const std::string& name() const;
    const std::string& version() const;
    const std::string& release() const;
    const std::string& vendor() const;
    const std::string& arch() const;

    // Whether there is a script, or only an interpreter for one, to run at installation, removal or
    // around the transaction. Trigger and verify scripts do not count.
    bool scriptsFlag() const;

    // Bare names of capabilities, with neither version nor operator, in the header's order and with
    // its duplicates. Requirements that hold "rpmlib", "/" or "rtld" anywhere are left out.
    const std::vector<std::string>& requireNames() const;
    const std::vector<std::string>& provides() const;
    const std::vector<std::string>& obsoletes() const;
    const std::vector<std::string>& conflicts() const;

    // Three parallel lists, an element each for every file: its path in the package, with the
    // leading "/", and the names of its owner and group.
    const std::vector<std::string>& paths() const;
    const std::vector<std::string>& users() const;
    const std::vector<std::string>& groups() const;

private:
    std::unique_ptr<RpmMetaPrivate> d_ptr;
};
