// The files of a package as its header lists them.
#pragma once

#include <string>
#include <vector>

#include "cli/integrity/package_header.h"

namespace pkgvet::cli {

struct HeaderFile {
    std::string path;  // directory and name one after the other, as rpm joins them
};

using HeaderFiles = std::vector<HeaderFile>;

// The files of the header, in its order.
HeaderFiles readFiles(const PackageHeader& header);

}  // namespace pkgvet::cli
