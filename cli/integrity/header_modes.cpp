// The rules on what the header makes of a file.
#include <sys/stat.h>

#include <string>

#include "cli/catalogue/integrity_messages.h"
#include "cli/integrity/header_rules.h"

namespace pkgvet::cli {

namespace {

constexpr mode_t kSpecialBits = S_ISUID | S_ISGID | S_ISVTX;

// What the library's rule on modes looks at: files, and only as the payload has them.
bool isSeenByTheLibrary(mode_t unpacked, mode_t bits) {
    return S_ISREG(unpacked) && (unpacked & bits) != 0;
}

}  // namespace

void checkKinds(const HeaderFiles& list, IntegrityFindings* findings) {
    for (const HeaderFile& file : list.files) {
        if (!S_ISREG(file.mode) && !S_ISDIR(file.mode) && !S_ISLNK(file.mode)) {
            findings->add(kSpecialFile, {file.path, kindOf(file.mode)});
        }
    }
}

void checkModes(const HeaderFiles& list, const std::vector<mode_t>& unpackedModes,
                IntegrityFindings* findings) {
    for (std::size_t i = 0; i < list.files.size(); ++i) {
        const HeaderFile& file = list.files[i];
        const mode_t unpacked = i < unpackedModes.size() ? unpackedModes[i] : 0;
        if (S_ISLNK(file.mode)) {
            continue;
        }
        if ((file.mode & kSpecialBits) != 0 && !isSeenByTheLibrary(unpacked, kSpecialBits)) {
            findings->add(kHeaderSpecialBit, {file.path, octal(file.mode)});
        }
        if ((file.mode & S_IWOTH) != 0 && (unpacked & S_IWOTH) == 0) {
            findings->add(kHeaderWritable, {file.path, octal(file.mode)});
        }
    }
}

void checkCapabilities(const PackageHeader& header, const HeaderFiles& list,
                       IntegrityFindings* findings) {
    const std::vector<std::string> capabilities = header.texts(RPMTAG_FILECAPS);
    for (std::size_t i = 0; i < capabilities.size(); ++i) {
        if (!capabilities[i].empty()) {
            findings->add(kCapabilities,
                          {i < list.files.size() ? list.files[i].path : "", capabilities[i]});
        }
    }
}

}  // namespace pkgvet::cli
