// What a header may make of a file.
#include <gmock/gmock.h>
#include <rpm/rpmtag.h>
#include <sys/stat.h>

#include "cli/integrity/header_rules.h"
#include "tests/support/program/integrity_run.h"

namespace {

using namespace pkgvet::cli;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> linesOfMode(mode_t mode, const std::vector<mode_t>& unpacked) {
    HeaderFiles list;
    list.files = {headerFile("/usr/x", mode)};
    IntegrityFindings findings;
    checkModes(list, unpacked, &findings);
    return linesOf(findings.take());
}

TEST(HeaderModes, FilesDirectoriesAndLinksAreAllThereMayBe) {
    HeaderFiles list;
    list.files = {headerFile("/a"), headerFile("/b", S_IFDIR | 0755),
                  headerFile("/c", S_IFLNK | 0777)};
    EXPECT_THAT(linesOf(list, checkKinds), IsEmpty());
    list.files = {headerFile("/a", S_IFCHR), headerFile("/b", S_IFBLK), headerFile("/c", S_IFIFO),
                  headerFile("/d", S_IFSOCK), headerFile("/e", 0170000)};
    EXPECT_THAT(linesOf(list, checkKinds),
                ElementsAre("header-special-file: [/a] Header makes it a character device",
                            "header-special-file: [/b] Header makes it a block device",
                            "header-special-file: [/c] Header makes it a fifo",
                            "header-special-file: [/d] Header makes it a socket",
                            "header-special-file: [/e] Header makes it nothing that rpm knows"));
}

TEST(HeaderModes, OrdinaryOnesAreNoFindings) {
    for (const mode_t mode : {mode_t{0644}, mode_t{0755}, mode_t{0664}, mode_t{0},
                              mode_t{S_IFDIR | 0775}, mode_t{S_IFLNK | 07777}}) {
        EXPECT_THAT(linesOfMode(mode, {}), IsEmpty()) << mode;
    }
}

TEST(HeaderModes, SpecialBitsAreFindingsWhereTheLibraryDoesNotSeeThem) {
    for (const char* octalMode : {"4755", "2755", "1755", "6711"}) {
        const auto mode = static_cast<mode_t>(std::stoi(octalMode, nullptr, 8));
        const std::string line = std::string("header-special-bit: [/usr/x] Header sets special ") +
                                 "mode bits: " + octalMode;
        EXPECT_THAT(linesOfMode(mode, {}), ElementsAre(line));
        EXPECT_THAT(linesOfMode(mode, {S_IFREG | 0755}), ElementsAre(line));
        EXPECT_THAT(linesOfMode(mode | S_IFDIR, {mode | S_IFDIR}), ElementsAre(line));
        EXPECT_THAT(linesOfMode(mode, {S_IFREG | mode}), IsEmpty());
    }
}

TEST(HeaderModes, SoAreFilesThatAnybodyMayWriteTo) {
    const char* const line =
        "header-writable-by-others: [/usr/x] Header lets anybody write to it: "
        "0666";
    EXPECT_THAT(linesOfMode(0666, {}), ElementsAre(line));
    EXPECT_THAT(linesOfMode(0666, {S_IFREG | 0664}), ElementsAre(line));
    EXPECT_THAT(linesOfMode(0666, {S_IFREG | 0666}), IsEmpty());
}

TEST(HeaderModes, CapabilitiesAreFindings) {
    PackedFile program = packedFile("/usr/bin/org.example.app", "program", 0755);
    program.capabilities = "cap_net_raw=ep";
    const CraftedPackage package = honestPackage().file(program);
    EXPECT_THAT(linesOf(package,
                        [](const PackageHeader& header, IntegrityFindings* findings) {
                            checkCapabilities(header, readFiles(header), findings);
                        }),
                ElementsAre("file-capabilities: [/usr/bin/org.example.app] Header gives it "
                            "capabilities: cap_net_raw=ep"));
}

}  // namespace
