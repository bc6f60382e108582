// Packages whose names and files are as long, deep or large as their readers allow, and beyond.
#include "tests/support/elf/elf_image.h"
#include "tests/support/hostile/hostile_packages.h"
#include "tests/support/package/accepted_package.h"
#include "tests/support/package/png_image.h"

namespace {

constexpr std::size_t kLongestName = 4096;  // that the guard takes
constexpr std::size_t kDeepestJson = 20'000;
constexpr std::size_t kLargestXml = std::size_t{256} << 10U;
constexpr std::size_t kLargestDesktopFile = std::size_t{16} << 20U;
constexpr std::size_t kLongestQmlLine = std::size_t{16} << 20U;
// With the byte behind it, the largest block that libpng gets.
constexpr std::size_t kLargestPngText = (std::size_t{8} << 20U) - 1;
constexpr std::size_t kMostElfSymbols = std::size_t{16} << 20U;

void packNamed(CraftedPackage* package, const std::string& name) {
    package->archive(package->entries() + cpioEntry({.name = name, .data = "x"}) + cpioTrailer());
}

// A path of this length in directories that file systems take.
std::string longPath(std::size_t size) {
    std::string path = ".";
    while (path.size() + 201 < size) {
        path += "/" + std::string(200, 'd');
    }
    return path + "/" + std::string(size - path.size() - 1, 'f');
}

const std::string kJsonFile = "/etc/sealwatchd/config.d/" + kAcceptedName + ".json";
const std::string kXmlFile = kAcceptedData + "/managed-configuration/configuration.xml";
const std::string kElfFile = kAcceptedData + "/libx.so";

std::string deepJson(std::size_t depth) {
    return std::string(depth, '[') + std::string(depth, ']');
}

// Well-formed, with a remark that fills it up to size.
std::string xmlOf(std::size_t size) {
    const std::string begin = "<a><!--";
    const std::string end = "--></a>";
    return begin + std::string(size - begin.size() - end.size(), 'x') + end;
}

std::string desktopFileOf(std::size_t size) {
    const std::string text = acceptedDesktopText() + "#";
    return text + std::string(size - text.size(), 'x');
}

void packRemarkOf(std::size_t size, CraftedPackage* package) {
    const std::string begin = "// ";
    package->file(packedFile(
        kAcceptedPage, begin + std::string(size - begin.size(), 'x') + "\nimport QtQuick 2.6\n"));
}

void packIconWith(const std::string& chunk, CraftedPackage* package) {
    package->file(packedFile(
        kHostileIcon, pngSignature() + pngHeader(86, 86) + chunk + pngChunk("IDAT", "\x78\x9C")));
}

std::string textChunkOf(std::size_t size) {
    const std::string keyword("Title\0", 6);
    return pngChunk("tEXt", keyword + std::string(size - keyword.size(), 'x'));
}

// A library with a table that claims so many symbols, and lies behind the end of the file.
void packLibraryOf(std::size_t symbols, CraftedPackage* package) {
    const std::string image =
        elfImage("elf 64 little\nsection symtab offset=0x7fffffff entsize=24 size=" +
                 std::to_string(24 * symbols) + "\n");
    package->file(packedFile(kElfFile, image, 0755));
}

const std::vector<HostilePackage> kLimits = {
    {"has a name of 4,096 bytes",
     [](CraftedPackage* package, const Target&) {
         packNamed(package, "./" + std::string(kLongestName - 2, 'n'));
     },
     Outcome::NotJudged, "did not unpack"},
    {"has a path of 4,096 bytes",
     [](CraftedPackage* package, const Target&) { packNamed(package, longPath(kLongestName)); },
     Outcome::NotJudged, "did not unpack"},
    {"has a path of 4,095 bytes",
     [](CraftedPackage* package, const Target&) { packNamed(package, longPath(kLongestName - 1)); },
     Outcome::NotAccepted},
    {"has a path of 4,097 bytes",
     [](CraftedPackage* package, const Target&) { packNamed(package, longPath(kLongestName + 1)); },
     Outcome::Rejected, "payload-name-size"},
    {"has a desktop file at the limit",
     [](CraftedPackage* package, const Target&) {
         package->file(packedFile(kAcceptedDesktopFile, desktopFileOf(kLargestDesktopFile)));
     },
     Outcome::Accepted},
    {"has a desktop file beyond the limit",
     [](CraftedPackage* package, const Target&) {
         package->file(packedFile(kAcceptedDesktopFile, desktopFileOf(kLargestDesktopFile + 1)));
     },
     Outcome::Rejected, "desktop-"},
    {"has JSON at the limit",
     [](CraftedPackage* package, const Target&) {
         package->file(packedFile(kJsonFile, deepJson(kDeepestJson)));
     },
     Outcome::Accepted},
    {"has JSON beyond the limit",
     [](CraftedPackage* package, const Target&) {
         package->file(packedFile(kJsonFile, deepJson(kDeepestJson + 1)));
     },
     Outcome::Rejected, "sealwatchd"},
    {"has JSON far beyond the limit",
     [](CraftedPackage* package, const Target&) {
         package->file(packedFile(kJsonFile, deepJson(10'000'000)));
     },
     Outcome::Rejected, "sealwatchd"},
    {"has XML at the limit",
     [](CraftedPackage* package, const Target&) {
         package->file(packedFile(kXmlFile, xmlOf(kLargestXml)));
     },
     Outcome::Accepted},
    {"has XML beyond the limit",
     [](CraftedPackage* package, const Target&) {
         package->file(packedFile(kXmlFile, xmlOf(kLargestXml + 1)));
     },
     Outcome::Rejected, "managed-configuration-invalid"},
    {"has XML that stands for far more",
     [](CraftedPackage* package, const Target&) {
         std::string text = "<!DOCTYPE a [<!ENTITY e0 \"x\">";
         for (int i = 0; i < 30; ++i) {
             const std::string former = "&e" + std::to_string(i) + ";";
             text += "<!ENTITY e" + std::to_string(i + 1) + " \"" + former + former + "\">";
         }
         package->file(packedFile(kXmlFile, text + "]><a>&e30;</a>"));
     },
     Outcome::Rejected, "managed-configuration-invalid"},
    {"has an icon of enormous measures",
     [](CraftedPackage* package, const Target&) {
         package->file(packedFile(kHostileIcon, pngSignature() + pngHeader(1'000'000, 1'000'000) +
                                                    pngChunk("IDAT", "")));
     },
     Outcome::Rejected, "icon-"},
    {"has an icon whose text claims two gibibytes",
     [](CraftedPackage* package, const Target&) {
         package->file(packedFile(kHostileIcon, pngSignature() + pngHeader(86, 86) +
                                                    std::string("\x7f\xff\xff\xff") + "zTXtx"));
     },
     Outcome::Rejected, "icon-"},
    {"has an icon with a text that is nearly at the limit",
     [](CraftedPackage* package, const Target&) {
         packIconWith(textChunkOf(kLargestPngText - 1), package);
     },
     Outcome::Accepted},
    {"has an icon with a text at the limit",
     [](CraftedPackage* package, const Target&) {
         packIconWith(textChunkOf(kLargestPngText), package);
     },
     Outcome::Accepted},
    {"has an icon with a text beyond the limit",
     [](CraftedPackage* package, const Target&) {
         packIconWith(textChunkOf(kLargestPngText + 1), package);
     },
     Outcome::Rejected, "icon-"},
    {"has ELF tables that are longer than any file",
     [](CraftedPackage* package, const Target&) {
         package->file(packedFile(kElfFile,
                                  elfImage("elf 64 little\nsection symtab "
                                           "size=0x7fffffffffff entsize=24\n"),
                                  0755));
     },
     Outcome::NotAccepted},
    {"has a library with nearly as many symbols as are read",
     [](CraftedPackage* package, const Target&) { packLibraryOf(kMostElfSymbols - 1, package); },
     Outcome::Accepted},
    {"has a library with as many symbols as are read",
     [](CraftedPackage* package, const Target&) { packLibraryOf(kMostElfSymbols, package); },
     Outcome::Accepted},
    {"has a library with more symbols than are read",
     [](CraftedPackage* package, const Target&) { packLibraryOf(kMostElfSymbols + 1, package); },
     Outcome::Rejected, "executable-wrong-format"},
    {"has a line of QML that is nearly at the limit",
     [](CraftedPackage* package, const Target&) { packRemarkOf(kLongestQmlLine - 1, package); },
     Outcome::Accepted},
    {"has a line of QML at the limit",
     [](CraftedPackage* package, const Target&) { packRemarkOf(kLongestQmlLine, package); },
     Outcome::Accepted},
    {"has a line of QML beyond the limit",
     [](CraftedPackage* package, const Target&) { packRemarkOf(kLongestQmlLine + 1, package); },
     Outcome::NotJudged, "a rule failed"},
    {"has a line of QML of a megabyte",
     [](CraftedPackage* package, const Target&) {
         package->file(
             packedFile(kAcceptedPage, "import \"/" + std::string(1'000'000, 'x') + "\"\n"));
     },
     Outcome::Rejected, "qml-import-not-allowed"},
};

}  // namespace

std::vector<HostilePackage> packagesAtTheLimits() {
    return kLimits;
}
