#include "tests/support/base/joined_tables.h"
#include "tests/support/hostile/lies.h"
#include "tests/support/package/accepted_package.h"

namespace {

const std::string kMore = kAcceptedData + "/more";

CpioEntry named(const std::string& name) {
    CpioEntry entry;
    entry.name = name;
    entry.data = "evil\n";
    return entry;
}

// An entry behind those of the honest files.
void packEntry(CraftedPackage* package, const CpioEntry& entry) {
    package->archive(package->entries() + cpioEntry(entry) + cpioTrailer());
}

// The header has evil files. The payload has them in rpm's own format, and the honest archive
// inside the data of one of them, where cpio finds it.
void hideArchive(CraftedPackage* package) {
    const std::string honest = package->entries() + cpioTrailer();
    package->list(packedFile(kAcceptedText, honest));
    package->list(packedFile(kAcceptedPage, "import Evil 1.0\n"));
    package->archive(package->largeFileEntries() + cpioTrailer());
}

const std::vector<Lie> kFormats = {
    {"the archive that cpio finds is in the data of a file",
     hideArchive,
     {"payload-foreign-format"},
     "100644 /usr/share/org.example.app/qml/main.qml 16"},
    {"the archive is of rpm's own format",
     [](CraftedPackage* package) { package->archive(package->largeFileEntries() + cpioTrailer()); },
     {"payload-foreign-format"},
     "100644 /usr/share/org.example.app/data 5"},
    {"the archive has checksums",
     [](CraftedPackage* package) {
         CpioEntry entry = cpioEntryOf(packedFile(kMore, "evil\n"));
         entry.magic = "070702";
         packEntry(package, entry);
     },
     {"payload-foreign-format"}},
    {"there are bytes ahead of the archive",
     [](CraftedPackage* package) { package->archive("evil" + package->entries() + cpioTrailer()); },
     {"payload-foreign-bytes"}},
    {"there are bytes between entries",
     [](CraftedPackage* package) {
         package->archive(package->entries() + "evil" +
                          cpioEntry(cpioEntryOf(packedFile(kMore, "evil\n"))) + cpioTrailer());
     },
     {"payload-foreign-bytes"}},
    {"there is a second archive behind the first",
     [](CraftedPackage* package) {
         const std::string first = package->entries() + cpioTrailer();
         package->archive(first + first);
     },
     {"payload-goes-on"},
     "100644 /usr/share/org.example.app/data 5"},
    {"there are bytes behind the archive",
     [](CraftedPackage* package) { package->archive(package->entries() + cpioTrailer() + "evil"); },
     {"payload-goes-on"},
     "100644 /usr/share/org.example.app/data 5"},
    {"the archive has no trailer",
     [](CraftedPackage* package) { package->archive(package->entries()); },
     {}},
    {"a name holds a NUL byte",
     [](CraftedPackage* package) {
         packEntry(package, named("." + kMore + std::string("\0evil", 5)));
     },
     {"payload-name-holds-nul"}},
    {"padding is not of NUL bytes",
     [](CraftedPackage* package) {
         PackedFile file = packedFile(kMore, "more\n");
         CpioEntry entry = cpioEntryOf(file);
         entry.padding = 'x';
         package->list(file);
         packEntry(package, entry);
     },
     {"payload-padding-not-empty"},
     "100644 /usr/share/org.example.app/more 5"},
};

const std::vector<Lie> kNames = {
    {"a name is absolute",
     [](CraftedPackage* package) { packEntry(package, named("/etc/cron.d/evil")); },
     {"payload-name-absolute"}},
    {"a name leads up and out",
     [](CraftedPackage* package) { packEntry(package, named("./../../evil")); },
     {"payload-name-leads-up"}},
    {"a name leads up and stays inside",
     [](CraftedPackage* package) { packEntry(package, named("./usr/../evil")); },
     {"payload-name-leads-up"}},
    {"a name has an empty component",
     [](CraftedPackage* package) { packEntry(package, named("./usr//evil")); },
     {"payload-name-not-normal"}},
    {"a name has a component that means its own directory",
     [](CraftedPackage* package) { packEntry(package, named("./usr/./evil")); },
     {"payload-name-not-normal"}},
    {"a name is empty",
     [](CraftedPackage* package) { packEntry(package, named("")); },
     {"payload-name-size"}},
    {"a name is too long",
     [](CraftedPackage* package) { packEntry(package, named("./" + std::string(4096, 'x'))); },
     {"payload-name-size"}},
    {"a name is there twice",
     [](CraftedPackage* package) {
         packEntry(package, cpioEntryOf(packedFile(kAcceptedText, "evil\n")));
     },
     {"payload-name-twice"}},
    {"a name is there twice in two forms",
     [](CraftedPackage* package) { packEntry(package, named(kAcceptedText.substr(1))); },
     {"payload-name-twice"}},
    {"a file lies below a link",
     [](CraftedPackage* package) {
         packEntry(package, cpioEntryOf(packedFile(kAcceptedLink + "/evil", "evil\n")));
     },
     {"payload-unpacks-through-link"}},
    {"a file lies below a file",
     [](CraftedPackage* package) {
         packEntry(package, cpioEntryOf(packedFile(kAcceptedText + "/evil", "evil\n")));
     },
     {"payload-unpacks-through-link"}},
    {"a link leads out and a file goes through it",
     [](CraftedPackage* package) {
         package->pack(packedLink(kMore, "/tmp"));
         packEntry(package, cpioEntryOf(packedFile(kMore + "/evil", "evil\n")));
     },
     {"payload-unpacks-through-link"}},
};

const std::vector<Lie> kKinds = {
    {"a device is in the payload alone",
     [](CraftedPackage* package) {
         package->pack({.path = kMore, .mode = 0020666, .device = 0x101});
     },
     {"payload-special-file"}},
    {"a fifo is in the payload alone",
     [](CraftedPackage* package) { package->pack({.path = kMore, .mode = 0010666}); },
     {"payload-special-file"}},
    {"a socket is in the payload alone",
     [](CraftedPackage* package) { package->pack({.path = kMore, .mode = 0140666}); },
     {"payload-special-file"}},
    {"an entry is of no type",
     [](CraftedPackage* package) { package->pack({.path = kMore, .mode = 0644}); },
     {"payload-unknown-type"}},
    {"a file is set-user-id in the payload alone",
     [](CraftedPackage* package) { package->pack(packedFile(kAcceptedText, "data\n", 04755)); },
     {"payload-set-id-bit"},
     "100644 /usr/share/org.example.app/data 5"},
    {"an entry is longer than the payload",
     [](CraftedPackage* package) {
         CpioEntry entry = named("." + kMore);
         entry.dataSize = 1U << 30U;
         packEntry(package, entry);
     },
     {}},
    {"a name is longer than the payload",
     [](CraftedPackage* package) {
         CpioEntry entry = named("." + kMore);
         entry.nameSize = 0xffffffff;
         packEntry(package, entry);
     },
     {"payload-name-size"}},
    {"a link leads nowhere at all",
     [](CraftedPackage* package) { package->pack(packedLink(kMore, "")); },
     {"payload-link-target"}},
    {"the target of a link goes on behind a NUL byte",
     [](CraftedPackage* package) {
         package->pack(packedLink(kMore, std::string("data\0evil", 9)));
     },
     {"payload-link-target"}},
    {"a field is not a number",
     [](CraftedPackage* package) {
         std::string entry = cpioEntry(named("." + kMore));
         entry[6] = 'x';
         package->archive(package->entries() + entry + cpioTrailer());
     },
     {"payload-fields-invalid"}},
    {"the trailer has data",
     [](CraftedPackage* package) {
         CpioEntry trailer = named("TRAILER!!!");
         package->archive(package->entries() + cpioEntry(trailer) + cpioTrailer());
     },
     {"payload-trailer-has-data"}},
    {"a directory has data",
     [](CraftedPackage* package) {
         PackedFile directory = packedDirectory(kMore);
         directory.data = "evil";
         package->pack(directory);
     },
     {"payload-directory-has-data"}},
    {"a link takes the place of a directory",
     [](CraftedPackage* package) {
         package->unpack(kAcceptedQml).pack(packedLink(kAcceptedQml, "/etc"));
     },
     {"payload-directory-replaced"}},
    {"the root of the archive is a file",
     [](CraftedPackage* package) { packEntry(package, named(".")); },
     {"payload-root-directory"}},
    {"everybody may write to the root of the archive",
     [](CraftedPackage* package) {
         CpioEntry entry = named(".");
         entry.data.clear();
         entry.mode = 0040777;
         packEntry(package, entry);
     },
     {"payload-root-directory"}},
    {"one more file has the number of hard links",
     [](CraftedPackage* package) {
         const PackedFile file = {.path = kMore, .data = "more", .inode = 99};
         package->file(file).file({.path = kMore + "2", .data = "more", .inode = 99});
         CpioEntry entry = cpioEntryOf(packedFile(kMore + "3", "evil"));
         entry.inode = 99;
         entry.links = 2;
         packEntry(package, entry);
     },
     {"payload-hard-links-contradict"}},
};

}  // namespace

std::vector<Lie> liesOfTheArchive() {
    return joined<Lie>({kFormats, kNames, kKinds});
}
