// The files of a package as its header lists them.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

#include "cli/integrity/package_header.h"

namespace pkgvet::cli {

// A file as rpm would install it.
struct HeaderFile {
    std::string path;  // directory and name one after the other, as rpm joins them
    mode_t mode = 0;
    std::uint64_t size = 0;
    std::uint64_t flags = 0;
    std::uint64_t device = 0;  // of a device node
    std::string target;        // of a link
    std::string digest;        // in hexadecimal
    // The same for hard links to one file, and 0 for what has no such number.
    std::uint64_t identity = 0;

    bool isGhost() const;
};

struct HeaderFiles {
    std::vector<HeaderFile> files;  // in the order of the header
    int digestAlgorithm = 0;        // librpm's number
};

// Where a list is shorter than that of the names, the files at its end have nothing in it.
HeaderFiles readFiles(const PackageHeader& header);

// The bits of a mode that chmod sets, such as "0644".
std::string octal(mode_t mode);

// "a directory", "a file" and so on, of what a mode says.
const char* kindOf(mode_t mode);

}  // namespace pkgvet::cli
