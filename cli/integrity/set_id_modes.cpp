// Looks through the modes of a header.
#include "cli/integrity/set_id_modes.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "cli/integrity/header_files.h"

namespace pkgvet::cli {

namespace {

constexpr std::uint64_t kSetIdBits = S_ISUID | S_ISGID;

}  // namespace

// Nearly no package has any, so that the paths are mostly not even put together.
SetIdModes readSetIdModes(const PackageHeader& header) {
    const std::vector<std::uint64_t> modes = header.numbers(RPMTAG_FILEMODES);
    const auto hasBit = [](std::uint64_t mode) { return (mode & kSetIdBits) != 0; };
    SetIdModes found;
    if (std::none_of(modes.begin(), modes.end(), hasBit)) {
        return found;
    }
    for (const HeaderFile& file : readFiles(header).files) {
        if (hasBit(file.mode)) {
            found.emplace(file.path, static_cast<unsigned>(file.mode & kSetIdBits));
        }
    }
    return found;
}

}  // namespace pkgvet::cli
