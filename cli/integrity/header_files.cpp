// Puts the files of a header together.
#include "cli/integrity/header_files.h"

#include <algorithm>

namespace pkgvet::cli {

namespace {

// Packages of very old versions of rpm list whole paths.
std::vector<std::string> pathsOf(const PackageHeader& header) {
    if (!header.has(RPMTAG_BASENAMES)) {
        return header.texts(RPMTAG_OLDFILENAMES);
    }
    const std::vector<std::string> directories = header.texts(RPMTAG_DIRNAMES);
    const std::vector<std::uint64_t> indexes = header.numbers(RPMTAG_DIRINDEXES);
    std::vector<std::string> paths = header.texts(RPMTAG_BASENAMES);
    for (std::size_t i = 0; i < std::min(paths.size(), indexes.size()); ++i) {
        if (indexes[i] < directories.size()) {
            paths[i].insert(0, directories[indexes[i]]);
        }
    }
    return paths;
}

}  // namespace

HeaderFiles readFiles(const PackageHeader& header) {
    HeaderFiles files;
    for (std::string& path : pathsOf(header)) {
        files.push_back({std::move(path)});
    }
    return files;
}

}  // namespace pkgvet::cli
