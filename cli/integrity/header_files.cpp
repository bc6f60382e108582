// Puts the files of a header together.
#include "cli/integrity/header_files.h"

#include <rpm/rpmfiles.h>
#include <rpm/rpmpgp.h>
#include <sys/stat.h>

#include <algorithm>
#include <utility>

namespace pkgvet::cli {

namespace {

// What the digests of a header are that does not say.
constexpr int kFormerAlgorithm = PGPHASHALGO_MD5;

constexpr unsigned kInodeBits = 32;

// The value of a file, or what stands for none where the list is too short.
template <typename Values>
typename Values::value_type take(Values* values, std::size_t i) {
    return i < values->size() ? std::move((*values)[i]) : typename Values::value_type();
}

std::vector<std::string> pathsOf(const PackageHeader& header) {
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

std::vector<std::uint64_t> sizesOf(const PackageHeader& header) {
    return header.numbers(header.has(RPMTAG_LONGFILESIZES) ? RPMTAG_LONGFILESIZES
                                                           : RPMTAG_FILESIZES);
}

// Of the numbers that rpm knows hard links by.
std::vector<std::uint64_t> identitiesOf(const PackageHeader& header) {
    std::vector<std::uint64_t> identities = header.numbers(RPMTAG_FILEINODES);
    std::vector<std::uint64_t> devices = header.numbers(RPMTAG_FILEDEVICES);
    for (std::size_t i = 0; i < identities.size(); ++i) {
        identities[i] |= take(&devices, i) << kInodeBits;
    }
    return identities;
}

int algorithmOf(const PackageHeader& header) {
    const std::vector<std::uint64_t> algorithm = header.numbers(RPMTAG_FILEDIGESTALGO);
    return algorithm.empty() ? kFormerAlgorithm : static_cast<int>(algorithm.front());
}

}  // namespace

bool HeaderFile::isGhost() const {
    return (flags & RPMFILE_GHOST) != 0;
}

HeaderFiles readFiles(const PackageHeader& header) {
    HeaderFiles list;
    list.digestAlgorithm = algorithmOf(header);
    std::vector<std::uint64_t> modes = header.numbers(RPMTAG_FILEMODES);
    std::vector<std::uint64_t> sizes = sizesOf(header);
    std::vector<std::uint64_t> flags = header.numbers(RPMTAG_FILEFLAGS);
    std::vector<std::uint64_t> devices = header.numbers(RPMTAG_FILERDEVS);
    std::vector<std::uint64_t> identities = identitiesOf(header);
    std::vector<std::string> targets = header.texts(RPMTAG_FILELINKTOS);
    std::vector<std::string> digests = header.texts(RPMTAG_FILEDIGESTS);
    for (std::string& path : pathsOf(header)) {
        const std::size_t i = list.files.size();
        list.files.push_back({std::move(path), static_cast<mode_t>(take(&modes, i)),
                              take(&sizes, i), take(&flags, i), take(&devices, i),
                              take(&targets, i), take(&digests, i), take(&identities, i)});
    }
    return list;
}

std::string octal(mode_t mode) {
    std::string digits;
    for (const unsigned shift : {9U, 6U, 3U, 0U}) {
        digits += static_cast<char>('0' + (mode >> shift & 7U));
    }
    return digits;
}

const char* kindOf(mode_t mode) {
    switch (mode & S_IFMT) {
        case S_IFREG:
            return "a file";
        case S_IFDIR:
            return "a directory";
        case S_IFLNK:
            return "a link";
        case S_IFCHR:
            return "a character device";
        case S_IFBLK:
            return "a block device";
        case S_IFIFO:
            return "a fifo";
        case S_IFSOCK:
            return "a socket";
        default:
            return "nothing that rpm knows";
    }
}

}  // namespace pkgvet::cli
