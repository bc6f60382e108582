#include <rpm/rpmfiles.h>
#include <rpm/rpmpgp.h>
#include <rpm/rpmtag.h>

#include "tests/support/base/joined_tables.h"
#include "tests/support/hostile/lies.h"
#include "tests/support/package/accepted_package.h"

namespace {

constexpr std::uint16_t kNull = 0x103;
constexpr std::uint16_t kMemory = 0x101;
const std::string kMore = kAcceptedData + "/more";

// Digests of the payload would bind the files as well.
void weaken(CraftedPackage* package, int algorithm) {
    package->digestAlgorithm(algorithm).remove(RPMTAG_PAYLOADDIGEST);
    package->remove(RPMTAG_PAYLOADDIGESTALT).remove(RPMTAG_PAYLOADDIGESTALGO);
}

const std::vector<Lie> kPresence = {
    {"a file is in the payload alone",
     [](CraftedPackage* package) { package->pack(packedFile("/etc/cron.d/evil", "evil\n")); },
     {"payload-file-extra"}},
    {"more files are in the payload alone than a report lists",
     [](CraftedPackage* package) {
         for (int i = 0; i < 101; ++i) {
             package->pack(packedFile("/etc/" + std::to_string(i), "evil\n"));
         }
     },
     {"integrity-findings-left-out", "payload-file-extra"}},
    {"a directory is in the payload alone",
     [](CraftedPackage* package) { package->pack(packedDirectory("/etc/cron.d")); },
     {"payload-file-extra"}},
    {"a file is in the header alone",
     [](CraftedPackage* package) { package->list(packedFile(kMore, "")); },
     {"payload-file-missing"}},
    {"a link is in the header alone",
     [](CraftedPackage* package) { package->list(packedLink(kMore, "/etc")); },
     {"payload-file-missing"}},
    {"a ghost is in the payload as well",
     [](CraftedPackage* package) {
         PackedFile ghost = packedFile(kMore, "evil\n");
         ghost.flags = RPMFILE_GHOST;
         package->list(ghost).pack(packedFile(kMore, "evil\n"));
     },
     {"payload-ghost"}},
};

const std::vector<Lie> kTypes = {
    {"a file of the payload is a link in the header",
     [](CraftedPackage* package) { package->list(packedLink(kAcceptedText, "/evil")); },
     {"payload-type-differs"},
     "120777 /usr/share/org.example.app/data -> /evil"},
    {"a link of the payload is a file in the header",
     [](CraftedPackage* package) { package->list(packedFile(kAcceptedLink, "data")); },
     {"payload-type-differs"},
     "100644 /usr/share/org.example.app/link 4"},
    {"a directory of the payload is a link in the header",
     [](CraftedPackage* package) { package->list(packedLink(kAcceptedQml, "/etc/cron.d")); },
     {"header-path-below-file", "payload-type-differs"}},
    {"a directory of the payload is a file in the header",
     [](CraftedPackage* package) { package->list(packedFile(kAcceptedQml, "")); },
     {"header-path-below-file", "payload-type-differs"}},
    {"a file of the payload is a directory in the header",
     [](CraftedPackage* package) {
         package->pack(packedFile(kMore, "")).list(packedDirectory(kMore));
     },
     {"payload-type-differs"},
     "040755 /usr/share/org.example.app/more"},
    {"a file of the payload is a device in the header",
     [](CraftedPackage* package) {
         package->pack(packedFile(kMore, ""));
         package->list({.path = kMore, .mode = 0020644, .device = kMemory});
     },
     {"header-special-file", "payload-type-differs"}},
    {"a file of the payload is a block device in the header",
     [](CraftedPackage* package) {
         package->pack(packedFile(kMore, ""));
         package->list({.path = kMore, .mode = 0060644, .device = kMemory});
     },
     {"header-special-file", "payload-type-differs"}},
    {"a file of the payload is a fifo in the header",
     [](CraftedPackage* package) {
         package->pack(packedFile(kMore, "")).list({.path = kMore, .mode = 0010644});
     },
     {"header-special-file", "payload-type-differs"}},
    {"a device is in header and payload",
     [](CraftedPackage* package) {
         package->file({.path = kMore, .mode = 0020644, .device = kNull});
     },
     {"header-special-file", "payload-special-file"},
     "020644 /usr/share/org.example.app/more"},
    {"a device of the payload is another one in the header",
     [](CraftedPackage* package) {
         package->pack({.path = kMore, .mode = 0020644, .device = kNull});
         package->list({.path = kMore, .mode = 0020644, .device = kMemory});
     },
     {"header-special-file", "payload-special-file"}},
};

const std::vector<Lie> kContent = {
    {"a mode of the payload has more rights than that of the header",
     [](CraftedPackage* package) { package->list(packedFile(kAcceptedText, "data\n", 0600)); },
     {"payload-mode-differs"},
     "100600 /usr/share/org.example.app/data 5"},
    {"a file is as long as the header says and has other content",
     [](CraftedPackage* package) { package->list(packedFile(kAcceptedText, "evil\n")); },
     {"payload-digest-differs"}},
    {"a file is longer than the header says",
     [](CraftedPackage* package) { package->list(packedFile(kAcceptedText, "da")); },
     {"payload-digest-differs", "payload-size-differs"}},
    {"a file is shorter than the header says",
     [](CraftedPackage* package) { package->list(packedFile(kAcceptedText, "data\ndata\n")); },
     {"payload-digest-differs", "payload-size-differs"}},
    {"a link leads elsewhere",
     [](CraftedPackage* package) { package->list(packedLink(kAcceptedLink, "/etc/passwd")); },
     {"payload-target-differs"}},
    {"a link leads elsewhere and is as long",
     [](CraftedPackage* package) { package->list(packedLink(kAcceptedLink, "/etc")); },
     {"payload-target-differs"},
     "120777 /usr/share/org.example.app/link -> /etc"},
    {"hard links are files of their own in the header",
     [](CraftedPackage* package) {
         package->pack({.path = kMore, .data = "more", .inode = 99});
         package->pack({.path = kMore + "2", .data = "more", .inode = 99});
         package->list(packedFile(kMore, "more")).list(packedFile(kMore + "2", "evil"));
     },
     {"payload-digest-differs", "payload-hard-links-differ"}},
};

const std::vector<Lie> kDigests = {
    {"there are no digests of files",
     [](CraftedPackage* package) { package->remove(RPMTAG_FILEDIGESTS); },
     {"file-digest-missing"}},
    {"a file has no digest",
     [](CraftedPackage* package) {
         package->set(RPMTAG_FILEDIGESTS, rpmTexts({"", "", "", "", "", ""}));
     },
     {"file-digest-missing"}},
    {"the digests of files are those of MD5",
     [](CraftedPackage* package) { weaken(package, PGPHASHALGO_MD5); },
     {"file-digests-weak"},
     "100644 /usr/share/org.example.app/data 5"},
    {"the digests of files are those of SHA-1",
     [](CraftedPackage* package) { weaken(package, PGPHASHALGO_SHA1); },
     {"file-digests-weak"},
     "100644 /usr/share/org.example.app/data 5"},
    {"the digests of files are of a kind that nobody knows",
     [](CraftedPackage* package) { package->set(RPMTAG_FILEDIGESTALGO, rpmInt32({99})); },
     {"payload-digest-differs"}},
    {"a digest has no meaning",
     [](CraftedPackage* package) {
         package->set(RPMTAG_FILEDIGESTS, rpmTexts({"x", "", "x", "x", "", "x"}));
     },
     {"payload-digest-differs"}},
};

const std::vector<Lie> kTexts = {
    {"a QML file goes on behind a NUL byte",
     [](CraftedPackage* package) {
         package->file(
             packedFile(kAcceptedPage, std::string("import QtQuick 2.6\n\0import Evil 1.0\n", 35)));
     },
     {"text-with-nul-byte"}},
    {"a QML file is a link to one that goes on behind a NUL byte",
     [](CraftedPackage* package) {
         const std::string text = std::string("import QtQuick 2.6\n\0import Evil 1.0\n", 35);
         package->file(packedFile(std::string(kAcceptedPage) + ".txt", text));
         package->file(packedLink(kAcceptedPage, "main.qml.txt"));
     },
     {"text-with-nul-byte"}},
    {"a desktop file goes on behind a NUL byte",
     [](CraftedPackage* package) {
         package->file(packedFile(kAcceptedDesktopFile,
                                  acceptedDesktopText() + std::string("\0Exec=evil\n", 11)));
     },
     {"text-with-nul-byte"}},
};

}  // namespace

std::vector<Lie> liesAboutFiles() {
    return joined<Lie>({kPresence, kTypes, kContent, kDigests, kTexts});
}
