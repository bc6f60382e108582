// Files of a package, as its header and its payload have them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/package/cpio_archive.h"
#include "tests/support/package/rpm_header.h"

struct PackedFile {
    std::string path;  // with its leading "/"
    std::uint16_t mode = 0100644;
    std::string data = {};
    std::string target = {};   // of a link
    std::uint32_t flags = 0;   // such as RPMFILE_CONFIG; a ghost is not in the payload
    std::uint16_t device = 0;  // major * 256 + minor, of a device node
    std::uint32_t inode = 0;   // the same for hard links to one file; 0 for one of its own
    std::string user = "root";
    std::string group = "root";
    std::string capabilities = {};  // such as "cap_net_raw=ep"
};

PackedFile packedFile(const std::string& path, const std::string& data, std::uint16_t mode = 0644);
PackedFile packedDirectory(const std::string& path, std::uint16_t mode = 0755);
PackedFile packedLink(const std::string& path, const std::string& target);

// As a header states it, of a file or the target of a link.
std::uint32_t sizeOf(const PackedFile& file);

// The entry that rpm writes for a file that has no hard links.
CpioEntry cpioEntryOf(const PackedFile& file);
// The archive of the files in their order, without its trailer. Of hard links the last one has the
// data.
std::string cpioEntriesOf(const std::vector<PackedFile>& files);

// Puts the tags that describe the files into header. They are expected in the order of their paths.
void describeFiles(const std::vector<PackedFile>& files, int digestAlgorithm, RpmHeader* header);
