// Packages made by hand: honest ones, and such as say one thing and do another.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/base/temporary_directory.h"
#include "tests/support/package/packed_file.h"
#include "tests/support/package/rpm_file.h"

// A noarch package 1.0-1. Header and payload follow from its files; digests and sizes are right
// for whatever the package holds in the end, unless a test asks for wrong ones.
class CraftedPackage {
public:
    explicit CraftedPackage(const std::string& name);

    // A file in header and payload alike, the honest way. A ghost is in the header alone.
    CraftedPackage& file(const PackedFile& file);
    // The file in the header alone or in the payload alone, in place of the one with its path if
    // there is one. The payload keeps the order of these calls; the header is sorted by path.
    CraftedPackage& list(const PackedFile& file);
    CraftedPackage& pack(const PackedFile& file);
    CraftedPackage& unlist(const std::string& path);
    CraftedPackage& unpack(const std::string& path);

    // What the package requires beside the features of rpm.
    CraftedPackage& requirement(const std::string& name);
    // A tag of the main header, in place of what would follow from the files.
    CraftedPackage& set(std::uint32_t tag, const RpmValue& value);
    // A value beside those that the tag has.
    CraftedPackage& add(std::uint32_t tag, const RpmValue& value);
    CraftedPackage& remove(std::uint32_t tag);
    // The same for the header of the signatures, with its own numbers such as RPMSIGTAG_SHA256.
    CraftedPackage& setSignature(std::uint32_t tag, const RpmValue& value);
    CraftedPackage& removeSignature(std::uint32_t tag);

    // Of the digests of files, PGPHASHALGO_SHA256 unless set.
    CraftedPackage& digestAlgorithm(int algorithm);
    // As in compressed(), "gzip" unless set.
    CraftedPackage& compressor(const std::string& name);
    // Bytes in place of the archive of the packed files.
    CraftedPackage& archive(const std::string& bytes);
    // Changes the compressed payload, before the digests are made or behind their back.
    CraftedPackage& alterPayload(const std::function<void(std::string*)>& change);
    CraftedPackage& alterPayloadLate(const std::function<void(std::string*)>& change);
    CraftedPackage& lead(const std::string& bytes);

    // The entries of the packed files, without the trailer.
    std::string entries() const;
    // The entries of the listed files as rpm writes them for packages with large files.
    std::string largeFileEntries() const;
    std::string bytes() const;
    // Writes the package to a file of its own in directory and returns its path.
    std::string write(const TemporaryDirectory& directory) const;

private:
    struct Change {
        std::uint32_t tag;
        std::optional<RpmValue> value;  // none to remove the tag
        bool beside = false;            // those that the tag has
    };
    using Alteration = std::function<void(std::string*)>;

    std::vector<PackedFile> sortedFiles() const;
    RpmHeader header() const;
    void requireFeatures(RpmHeader* header) const;
    static void apply(const std::vector<Change>& changes, RpmHeader* header);

    std::string name_;
    std::string lead_;
    std::vector<PackedFile> listed_;
    std::vector<PackedFile> packed_;
    std::vector<std::string> requirements_;
    std::vector<Change> changes_;
    std::vector<Change> signatureChanges_;
    int digestAlgorithm_;
    std::string compressor_ = "gzip";
    std::optional<std::string> archive_;
    Alteration alteration_;
    Alteration lateAlteration_;
};
