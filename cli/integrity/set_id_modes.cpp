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
    const HeaderFiles files = readFiles(header);
    for (std::size_t i = 0; i < std::min(files.size(), modes.size()); ++i) {
        if (hasBit(modes[i])) {
            found.emplace(files[i].path, static_cast<unsigned>(modes[i] & kSetIdBits));
        }
    }
    return found;
}

}  // namespace pkgvet::cli
