#include "tests/support/package/packed_file.h"

#include <rpm/rpmfiles.h>
#include <rpm/rpmpgp.h>
#include <rpm/rpmtag.h>
#include <sys/stat.h>

#include <algorithm>

#include "tests/support/package/rpm_file.h"

namespace {

constexpr std::uint32_t kTime = 1'700'000'000;
constexpr std::uint32_t kVerifyAll = 0xffffffff;

template <typename Value>
std::vector<Value> each(const std::vector<PackedFile>& files, Value (*of)(const PackedFile&)) {
    std::vector<Value> values;
    std::transform(files.begin(), files.end(), std::back_inserter(values), of);
    return values;
}

std::size_t lengthOfDirectory(const PackedFile& file) {
    return file.path.rfind('/') + 1;
}

void describeNames(const std::vector<PackedFile>& files, RpmHeader* header) {
    std::vector<std::string> names;
    std::vector<std::string> directories;
    std::vector<std::uint32_t> indexes;
    for (const PackedFile& file : files) {
        const std::string directory = file.path.substr(0, lengthOfDirectory(file));
        const auto known = std::find(directories.begin(), directories.end(), directory);
        indexes.push_back(static_cast<std::uint32_t>(known - directories.begin()));
        if (known == directories.end()) {
            directories.push_back(directory);
        }
        names.push_back(file.path.substr(lengthOfDirectory(file)));
    }
    header->set(RPMTAG_BASENAMES, rpmTexts(names));
    header->set(RPMTAG_DIRNAMES, rpmTexts(directories));
    header->set(RPMTAG_DIRINDEXES, rpmInt32(indexes));
}

void describeContent(const std::vector<PackedFile>& files, int algorithm, RpmHeader* header) {
    std::vector<std::string> digests;
    for (const PackedFile& file : files) {
        const bool hasDigest = S_ISREG(file.mode) && (file.flags & RPMFILE_GHOST) == 0;
        digests.push_back(hasDigest ? digestOf(algorithm, file.data) : std::string());
    }
    header->set(RPMTAG_FILEDIGESTS, rpmTexts(digests));
    // Where it is missing, the digests are those of MD5.
    if (algorithm != PGPHASHALGO_MD5) {
        header->set(RPMTAG_FILEDIGESTALGO, rpmInt32({static_cast<std::uint32_t>(algorithm)}));
    }
    header->set(RPMTAG_FILESIZES, rpmInt32(each(files, sizeOf)));
    header->set(RPMTAG_FILELINKTOS,
                rpmTexts(each<std::string>(files, [](const PackedFile& f) { return f.target; })));
}

void describeInodes(const std::vector<PackedFile>& files, RpmHeader* header) {
    std::vector<std::uint32_t> inodes;
    for (const PackedFile& file : files) {
        inodes.push_back(file.inode != 0 ? file.inode
                                         : static_cast<std::uint32_t>(inodes.size() + 1));
    }
    header->set(RPMTAG_FILEINODES, rpmInt32(inodes));
    header->set(RPMTAG_FILEDEVICES, rpmInt32(std::vector<std::uint32_t>(files.size(), 1)));
    header->set(RPMTAG_FILERDEVS,
                rpmInt16(each<std::uint16_t>(files, [](const PackedFile& f) { return f.device; })));
}

void describeRights(const std::vector<PackedFile>& files, RpmHeader* header) {
    header->set(RPMTAG_FILEMODES,
                rpmInt16(each<std::uint16_t>(files, [](const PackedFile& f) { return f.mode; })));
    header->set(RPMTAG_FILEUSERNAME,
                rpmTexts(each<std::string>(files, [](const PackedFile& f) { return f.user; })));
    header->set(RPMTAG_FILEGROUPNAME,
                rpmTexts(each<std::string>(files, [](const PackedFile& f) { return f.group; })));
    const auto capabilities =
        each<std::string>(files, [](const PackedFile& f) { return f.capabilities; });
    if (std::any_of(capabilities.begin(), capabilities.end(),
                    [](const std::string& text) { return !text.empty(); })) {
        header->set(RPMTAG_FILECAPS, rpmTexts(capabilities));
    }
}

}  // namespace

PackedFile packedFile(const std::string& path, const std::string& data, std::uint16_t mode) {
    return {.path = path, .mode = static_cast<std::uint16_t>(S_IFREG | mode), .data = data};
}

PackedFile packedDirectory(const std::string& path, std::uint16_t mode) {
    return {.path = path, .mode = static_cast<std::uint16_t>(S_IFDIR | mode)};
}

PackedFile packedLink(const std::string& path, const std::string& target) {
    return {.path = path, .mode = S_IFLNK | 0777, .target = target};
}

std::uint32_t sizeOf(const PackedFile& file) {
    return static_cast<std::uint32_t>(S_ISLNK(file.mode) ? file.target.size() : file.data.size());
}

CpioEntry cpioEntryOf(const PackedFile& file) {
    CpioEntry entry;
    entry.name = "." + file.path;
    entry.data = S_ISLNK(file.mode) ? file.target : file.data;
    entry.mode = file.mode;
    entry.links = S_ISDIR(file.mode) ? 2 : 1;
    entry.time = kTime;
    entry.specialMajor = file.device >> 8;
    entry.specialMinor = file.device & 0xffU;
    return entry;
}

std::string cpioEntriesOf(const std::vector<PackedFile>& files) {
    std::string bytes;
    for (std::size_t i = 0; i < files.size(); ++i) {
        const PackedFile& file = files[i];
        CpioEntry entry = cpioEntryOf(file);
        entry.inode = static_cast<std::uint32_t>(i + 1);
        if (file.inode != 0) {
            const auto isSameFile = [&file](const PackedFile& f) { return f.inode == file.inode; };
            entry.inode = file.inode;
            entry.links =
                static_cast<std::uint32_t>(std::count_if(files.begin(), files.end(), isSameFile));
            if (std::any_of(files.begin() + static_cast<std::ptrdiff_t>(i) + 1, files.end(),
                            isSameFile)) {
                entry.data.clear();
            }
        }
        bytes += cpioEntry(entry);
    }
    return bytes;
}

void describeFiles(const std::vector<PackedFile>& files, int digestAlgorithm, RpmHeader* header) {
    if (files.empty()) {
        return;
    }
    describeNames(files, header);
    describeContent(files, digestAlgorithm, header);
    describeInodes(files, header);
    describeRights(files, header);
    header->set(RPMTAG_FILEMTIMES, rpmInt32(std::vector<std::uint32_t>(files.size(), kTime)));
    header->set(RPMTAG_FILEVERIFYFLAGS,
                rpmInt32(std::vector<std::uint32_t>(files.size(), kVerifyAll)));
    header->set(RPMTAG_FILEFLAGS,
                rpmInt32(each<std::uint32_t>(files, [](const PackedFile& f) { return f.flags; })));
    header->set(RPMTAG_FILELANGS, rpmTexts(std::vector<std::string>(files.size())));
}
