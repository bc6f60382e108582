#include "tests/support/hostile/hostile_packages.h"

#include <rpm/rpmtag.h>

#include "tests/support/base/joined_tables.h"
#include "tests/support/package/accepted_package.h"

namespace {

const std::string kMore = kAcceptedData + "/more";

CpioEntry entryOf(const std::string& name, std::uint32_t mode, const std::string& data) {
    CpioEntry entry;
    entry.name = name;
    entry.mode = mode;
    entry.data = data;
    return entry;
}

CpioEntry fileEntry(const std::string& name) {
    return entryOf(name, 0100644, "evil\n");
}

void packEntries(CraftedPackage* package, const std::vector<CpioEntry>& entries) {
    std::string archive = package->entries();
    for (const CpioEntry& entry : entries) {
        archive += cpioEntry(entry);
    }
    package->archive(archive + cpioTrailer());
}

const std::vector<HostilePackage> kNames = {
    {"writes to an absolute name",
     [](CraftedPackage* package, const Target& target) {
         packEntries(package, {fileEntry("/tmp/" + target.token)});
     },
     Outcome::Rejected, "payload-name-absolute"},
    {"writes to an absolute name outside",
     [](CraftedPackage* package, const Target& target) {
         packEntries(package, {fileEntry(target.outside + "/" + target.token)});
     },
     Outcome::Rejected, "payload-name-absolute"},
    {"overwrites what is outside",
     [](CraftedPackage* package, const Target& target) {
         packEntries(package, {fileEntry(target.outside + "/canary")});
     },
     Outcome::Rejected, "payload-name-absolute"},
    {"leads up",
     [](CraftedPackage* package, const Target& target) {
         packEntries(package, {fileEntry("./../../../../tmp/" + target.token)});
     },
     Outcome::Rejected, "payload-name-leads-up"},
    {"leads up from a directory of its own",
     [](CraftedPackage* package, const Target& target) {
         packEntries(package, {fileEntry("./usr/../../../tmp/" + target.token)});
     },
     Outcome::Rejected, "payload-name-leads-up"},
    {"goes through a link",
     [](CraftedPackage* package, const Target& target) {
         packEntries(package, {entryOf("." + kMore, 0120777, target.outside),
                               fileEntry("." + kMore + "/" + target.token)});
     },
     Outcome::Rejected, "payload-unpacks-through-link"},
    {"goes through a link that leads up",
     [](CraftedPackage* package, const Target& target) {
         packEntries(package,
                     {entryOf("./up", 0120777, "../.."), fileEntry("./up/tmp/" + target.token)});
     },
     Outcome::Rejected, "payload-unpacks-through-link"},
    {"writes through a link that is a file of its own",
     [](CraftedPackage* package, const Target& target) {
         packEntries(package, {entryOf("." + kMore, 0120777, target.outside + "/canary"),
                               fileEntry("." + kMore)});
     },
     Outcome::Rejected, "payload-name-twice"},
    {"replaces a directory by a link",
     [](CraftedPackage* package, const Target& target) {
         packEntries(package, {entryOf("." + kMore, 0040755, ""),
                               entryOf("." + kMore, 0120777, target.outside),
                               fileEntry("." + kMore + "/" + target.token)});
     },
     Outcome::Rejected, "payload-name-twice"},
    {"replaces a directory that it never named",
     [](CraftedPackage* package, const Target& target) {
         packEntries(package, {fileEntry("./srv/a/b"), entryOf("./srv/a", 0120777, target.outside),
                               fileEntry("./srv/a/" + target.token)});
     },
     Outcome::Rejected, "payload-directory-replaced"},
    {"links hard to what a link leads to",
     [](CraftedPackage* package, const Target& target) {
         CpioEntry link = entryOf("." + kMore, 0120777, target.outside + "/canary");
         CpioEntry second = fileEntry("." + kMore + "2");
         link.inode = second.inode = 99;
         link.links = second.links = 2;
         packEntries(package, {link, second});
     },
     Outcome::Rejected, "payload-file-extra"},
    {"takes the root of the tree",
     [](CraftedPackage* package, const Target& target) {
         packEntries(package,
                     {entryOf(".", 0120777, target.outside), fileEntry("./" + target.token)});
     },
     Outcome::Rejected, "payload-root-directory"},
};

const std::vector<HostilePackage> kTypes = {
    {"has the memory of the machine as a device",
     [](CraftedPackage* package, const Target&) {
         package->file({.path = kMore, .mode = 0020666, .device = 0x101});
     },
     Outcome::Rejected, "payload-special-file"},
    {"has a disk as a device",
     [](CraftedPackage* package, const Target&) {
         package->file({.path = kMore, .mode = 0060666, .device = 0x800});
     },
     Outcome::Rejected, "payload-special-file"},
    {"has a fifo for a desktop file",
     [](CraftedPackage* package, const Target&) {
         package->file({.path = kAcceptedDesktopFile, .mode = 0010644});
     },
     Outcome::Rejected, "payload-special-file"},
    {"has a socket",
     [](CraftedPackage* package, const Target&) {
         package->file({.path = kMore, .mode = 0140644});
     },
     Outcome::Rejected, "payload-special-file"},
    {"has a link to endless zeros for a desktop file",
     [](CraftedPackage* package, const Target&) {
         package->file(packedLink(kAcceptedDesktopFile, "/dev/zero"));
     },
     Outcome::Rejected, "desktop-"},
    {"has a link to its reader's memory for a page",
     [](CraftedPackage* package, const Target&) {
         package->file(packedLink(kAcceptedPage, "/proc/self/mem"));
     },
     Outcome::NotStated},
    {"has a link to passwords for a page",
     [](CraftedPackage* package, const Target&) {
         package->file(packedLink(kAcceptedPage, "/etc/shadow"));
     },
     Outcome::NotStated},
    {"has a set-user-id program",
     [](CraftedPackage* package, const Target&) {
         package->file(packedFile(kMore, "#!/bin/sh\n", 06755));
     },
     Outcome::Rejected, "setuid-file"},
    {"has a sticky file",
     [](CraftedPackage* package, const Target&) { package->file(packedFile(kMore, "", 01644)); },
     Outcome::Rejected, "setuid-file"},
    // Only the superuser can unpack these two, as he is in most sandboxes.
    {"has a directory that nobody may enter",
     [](CraftedPackage* package, const Target&) {
         package->file(packedDirectory(kMore, 0)).file(packedFile(kMore + "/file", ""));
     },
     Outcome::NotStated},
    {"has a directory that nobody may list",
     [](CraftedPackage* package, const Target&) {
         package->file(packedDirectory(kMore, 0111)).file(packedFile(kMore + "/file", ""));
     },
     Outcome::NotStated},
};

const std::vector<HostilePackage> kOddNames = {
    {"has a name of a line feed and a command",
     [](CraftedPackage* package, const Target& target) {
         package->file(packedFile("/etc/a\nb; touch '/tmp/" + target.token + "'", ""));
     },
     Outcome::Rejected, "path-not-allowed"},
    {"has a name that a shell would run",
     [](CraftedPackage* package, const Target& target) {
         package->file(packedFile("/etc/$(cd ..;touch " + target.token + ")`id`\"'", ""));
     },
     Outcome::Rejected, "path-not-allowed"},
    {"has a name that a terminal would obey",
     [](CraftedPackage* package, const Target&) {
         package->file(packedFile("/etc/\x1b]0;evil\x07\x1b[2J\r\xc2\x9b", ""));
     },
     Outcome::Rejected, "path-not-allowed"},
    {"has a name that turns text round",
     [](CraftedPackage* package, const Target&) {
         package->file(packedFile("/etc/\xe2\x80\xae\xe2\x81\xa6gpj", ""));
     },
     Outcome::Rejected, "path-not-allowed"},
    {"has a name that is not UTF-8",
     [](CraftedPackage* package, const Target&) {
         package->file(packedFile("/etc/\xff\xfe\xc0\xaf", ""));
     },
     Outcome::Rejected, "path-not-allowed"},
    {"has a name that is longer than any file system takes",
     [](CraftedPackage* package, const Target&) {
         packEntries(package, {fileEntry("./" + std::string(4000, 'n'))});
     },
     Outcome::NotJudged, "did not unpack"},
    {"has a path of a thousand directories",
     [](CraftedPackage* package, const Target&) {
         std::string name = "/etc";
         for (int i = 0; i < 1000; ++i) {
             name += "/d";
         }
         package->file(packedFile(name, ""));
     },
     Outcome::Rejected, "path-not-allowed"},
    {"has a page that is a link to somebody else's",
     [](CraftedPackage* package, const Target& target) {
         package->file(packedLink(kAcceptedPage, target.outside + "/secret.qml"));
     },
     Outcome::NotStated},
};

void flipMiddle(std::string* payload) {
    (*payload)[payload->size() / 2] ^= 0x10;
}

void cutShort(std::string* payload) {
    payload->resize(payload->size() / 2);
}

void addBomb(CraftedPackage* package, const std::string& compressor, std::size_t size) {
    package->compressor(compressor);
    package->file(packedFile(kMore, std::string(size, '\0')));
}

template <std::size_t kSize>
void zeros(CraftedPackage* package, const Target&) {
    addBomb(package, "gzip", kSize);
}

const std::vector<HostilePackage> kStreams = {
    {"ends early", [](CraftedPackage* package, const Target&) { package->alterPayload(cutShort); },
     Outcome::NotJudged, "did not unpack"},
    {"has a wrong bit in gzip",
     [](CraftedPackage* package, const Target&) { package->alterPayload(flipMiddle); },
     Outcome::NotAccepted},
    {"has a wrong bit in xz",
     [](CraftedPackage* package, const Target&) {
         package->compressor("xz").alterPayload(flipMiddle);
     },
     Outcome::NotAccepted},
    {"has a wrong bit in zstd",
     [](CraftedPackage* package, const Target&) {
         package->compressor("zstd").alterPayload(flipMiddle);
     },
     Outcome::NotAccepted},
    {"has a wrong bit in bzip2",
     [](CraftedPackage* package, const Target&) {
         package->compressor("bzip2").alterPayload(flipMiddle);
     },
     Outcome::NotAccepted},
    {"has a wrong bit in lzma",
     [](CraftedPackage* package, const Target&) {
         package->compressor("lzma").alterPayload(flipMiddle);
     },
     Outcome::NotAccepted},
    {"has one stream behind another in gzip",
     [](CraftedPackage* package, const Target&) {
         package->alterPayload([](std::string* payload) { *payload += *payload; });
     },
     Outcome::Rejected, "payload-goes-on"},
    // librpm reads no further than the first stream, and so would an installation.
    {"has one stream behind another in xz",
     [](CraftedPackage* package, const Target&) {
         package->compressor("xz").alterPayload([](std::string* payload) { *payload += *payload; });
     },
     Outcome::Accepted},
    {"has one stream behind another in zstd",
     [](CraftedPackage* package, const Target&) {
         package->compressor("zstd").alterPayload(
             [](std::string* payload) { *payload += *payload; });
     },
     Outcome::Rejected, "payload-goes-on"},
    {"has one stream behind another in bzip2",
     [](CraftedPackage* package, const Target&) {
         package->compressor("bzip2").alterPayload(
             [](std::string* payload) { *payload += *payload; });
     },
     Outcome::Accepted},
    {"has one stream behind another in lzma",
     [](CraftedPackage* package, const Target&) {
         package->compressor("lzma").alterPayload(
             [](std::string* payload) { *payload += *payload; });
     },
     Outcome::Accepted},
    {"has a trailer in the middle",
     [](CraftedPackage* package, const Target& target) {
         package->archive(package->entries() + cpioTrailer() +
                          cpioEntry(fileEntry("./" + target.token)) + cpioTrailer());
     },
     Outcome::Rejected, "payload-goes-on"},
    {"has no payload",
     [](CraftedPackage* package, const Target&) {
         package->alterPayload([](std::string* payload) { payload->clear(); });
     },
     Outcome::NotJudged, "did not unpack"},
    {"is a bomb", zeros<std::size_t{100} << 20U>, Outcome::NotJudged, "--max-unpacked"},
    {"has more files than anybody needs",
     [](CraftedPackage* package, const Target&) {
         std::vector<CpioEntry> entries;
         for (int i = 0; i < 20'000; ++i) {
             entries.push_back(entryOf("./" + std::to_string(i), 0100644, ""));
         }
         packEntries(package, entries);
     },
     Outcome::NotJudged, "--max-files"},
    {"claims a file that it does not have",
     [](CraftedPackage* package, const Target&) {
         CpioEntry entry = fileEntry("." + kMore);
         entry.dataSize = 0x7fffffff;
         packEntries(package, {entry});
     },
     Outcome::NotJudged},
};

const std::vector<HostilePackage> kHeaders = {
    {"has a name that ends early",
     [](CraftedPackage* package, const Target&) {
         package->set(RPMTAG_NAME, rpmText(std::string("org.example.app\0evil", 20)));
     },
     Outcome::NotJudged},
    {"has a name that goes elsewhere",
     [](CraftedPackage* package, const Target& target) {
         package->set(RPMTAG_NAME, rpmText("../../../../tmp/" + target.token));
     },
     Outcome::Rejected, "name-not-reverse-domain"},
    {"has a name that a shell would run",
     [](CraftedPackage* package, const Target& target) {
         package->set(RPMTAG_NAME, rpmText("$(touch /tmp/" + target.token + ");\x1b[2J"));
     },
     Outcome::Rejected, "name-not-reverse-domain"},
    {"has a name of a megabyte",
     [](CraftedPackage* package, const Target&) {
         package->set(RPMTAG_NAME, rpmText(std::string(1U << 20U, 'n')));
     },
     Outcome::NotJudged, "File name too long"},
    {"has a million requirements",
     [](CraftedPackage* package, const Target&) {
         const std::vector<std::string> names(1'000'000, "r");
         package->set(RPMTAG_REQUIRENAME, rpmTexts(names));
         package->set(RPMTAG_REQUIREVERSION, rpmTexts(std::vector<std::string>(names.size())));
         package->set(RPMTAG_REQUIREFLAGS, rpmInt32(std::vector<std::uint32_t>(names.size())));
     },
     Outcome::Rejected, "999000 further findings like these are left out"},
    {"has a header of sixteen megabytes",
     [](CraftedPackage* package, const Target&) {
         package->set(RPMTAG_DESCRIPTION, rpmI18nText(std::string(16U << 20U, 'd')));
     },
     Outcome::Accepted},
};

}  // namespace

std::vector<HostilePackage> packagesThatReachOut() {
    return joined<HostilePackage>({kNames, kTypes, kOddNames});
}

std::vector<HostilePackage> packagesWithBadStreams() {
    return kStreams;
}

std::vector<HostilePackage> packagesWithBadHeaders() {
    return kHeaders;
}
