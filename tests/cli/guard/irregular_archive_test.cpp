// Archives of which nothing is given from the first irregular entry on, whatever the pieces in
// which they come.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "cli/guard/archive_guard.h"
#include "tests/support/package/guarded_archive.h"

namespace pkgvet::cli {

namespace {

struct IrregularCase {
    const char* name;
    std::string before;  // regular entries
    std::string entry;   // the irregular one, and what follows
    Irregularity irregularity;
    std::string entryName;
    std::size_t offset = 0;  // of what is irregular, from the beginning of the entry
};

std::vector<IrregularCase> formatCases() {
    const std::string good = file("./a");
    return {
        {"text", "", "not an archive", Irregularity::ForeignBytes, ""},
        {"NUL bytes ahead of the first entry", "", std::string(4, '\0') + good,
         Irregularity::ForeignBytes, ""},
        {"bytes between entries", good, "xxxx" + good, Irregularity::ForeignBytes, ""},
        {"more padding than needed", good, std::string(4, '\0') + good, Irregularity::ForeignBytes,
         ""},
        {"the binary format", "", "\xc7\x71" + std::string(100, 'x'), Irregularity::ForeignBytes,
         ""},
        {"rpm's format for large files", "", cpioLargeFileEntry(0, good),
         Irregularity::ForeignFormat, ""},
        {"the same behind an entry", good, cpioLargeFileEntry(0, "x"), Irregularity::ForeignFormat,
         ""},
        {"the format with checksums", good, cpioEntry({.name = "b", .magic = "070702"}),
         Irregularity::ForeignFormat, ""},
        {"the old format", good, cpioEntry({.name = "b", .magic = "070707"}),
         Irregularity::ForeignFormat, ""},
        {"a field that begins with a blank", good, replaced(file("b"), 6, " 0000001"),
         Irregularity::Header, ""},
        {"a field that begins with a sign", good, replaced(file("b"), 6, "+0000001"),
         Irregularity::Header, ""},
        {"a field that ends early", good,
         replaced(file("b"), 6,
                  std::string("1\0"
                              "000000",
                              8)),
         Irregularity::Header, ""},
        {"a digit that is none, in a field that does not matter", good,
         replaced(file("b"), 109, "g"), Irregularity::Header, ""},
        {"something between name and data", good,
         cpioEntry({.name = "bb", .data = "1234", .padding = 'x'}), Irregularity::Padding, "bb"},
        {"something between target and the next entry", good,
         cpioEntry({.name = "b", .data = "/", .mode = kLink}).substr(0, 113) + "xyz",
         Irregularity::Padding, "b"},
        {"a trailer with data", good, cpioEntry({.name = "TRAILER!!!", .data = "x", .mode = 0}),
         Irregularity::Trailer, "TRAILER!!!"},
    };
}

std::vector<IrregularCase> nameCases() {
    const std::string good = file("./a");
    return {
        {"no name", good, cpioEntry({.name = "", .nameSize = 0}), Irregularity::NameSize, ""},
        {"an empty name", good, file(""), Irregularity::NameSize, ""},
        {"a name that is too long", good, file(longName(4097)), Irregularity::NameSize, ""},
        {"a name as long as can be said", good, cpioEntry({.name = "b", .nameSize = 0xffffffff}),
         Irregularity::NameSize, ""},
        {"a NUL byte in a name", good, file(std::string("b\0c", 3)), Irregularity::NameEnd,
         std::string("b\0c", 3)},
        {"a trailer with more behind it", good, file(std::string("TRAILER!!!\0x", 12)),
         Irregularity::NameEnd, std::string("TRAILER!!!\0x", 12)},
        {"a name without its end", good, cpioEntry({.name = "bc", .nameSize = 2}),
         Irregularity::NameEnd, "b"},
        {"an absolute name", good, file("/etc/x"), Irregularity::NameAbsolute, "/etc/x"},
        {"the root of the machine", good, directory("/"), Irregularity::NameAbsolute, "/"},
        {"a way up", good, file("../x"), Irregularity::NameParent, "../x"},
        {"a way up behind the prefix", good, file("./../x"), Irregularity::NameParent, "./../x"},
        {"a way up and down again", good, file("./b/../c"), Irregularity::NameParent, "./b/../c"},
        {"a way up at the end", good, directory("./b/.."), Irregularity::NameParent, "./b/.."},
        {"the parent", good, directory(".."), Irregularity::NameParent, ".."},
        {"two slashes", good, file("./b//c"), Irregularity::NameNotNormal, "./b//c"},
        {"two slashes behind the prefix", good, file(".//c"), Irregularity::NameNotNormal, ".//c"},
        {"a slash at the end", good, directory("./b/"), Irregularity::NameNotNormal, "./b/"},
        {"a dot inside", good, file("./b/./c"), Irregularity::NameNotNormal, "./b/./c"},
        {"a dot at the end", good, directory("./b/."), Irregularity::NameNotNormal, "./b/."},
        {"the prefix twice", good, file("././c"), Irregularity::NameNotNormal, "././c"},
        {"the root in too many words", good, directory("./."), Irregularity::NameNotNormal, "./."},
        {"a file again", good, file("./a"), Irregularity::NameTwice, "./a"},
        {"a file again without the prefix", good, file("a"), Irregularity::NameTwice, "a"},
        {"a directory again", directory("./b"), directory("./b"), Irregularity::NameTwice, "./b"},
        {"the root again", directory("./"), directory("."), Irregularity::NameTwice, "."},
        {"a hard link again", hardLink("./b", "", 3), hardLink("./b", "x", 3),
         Irregularity::NameTwice, "./b"},
        {"a directory in place of a file", good, directory("./a"), Irregularity::NameTwice, "./a"},
        {"a link in place of a directory", directory("./b"), symbolicLink("./b", "/etc"),
         Irregularity::NameTwice, "./b"},
        {"a link in place of a parent", file("./b/c"), symbolicLink("./b", "/etc"),
         Irregularity::NameIsDirectory, "./b"},
        {"a file in place of a parent's parent", file("./b/c/d"), file("./b"),
         Irregularity::NameIsDirectory, "./b"},
        {"below a link", symbolicLink("./b", "/etc"), file("./b/c"),
         Irregularity::BelowNonDirectory, "./b/c"},
        {"far below a link", symbolicLink("./b", "/etc"), directory("./b/c/d"),
         Irregularity::BelowNonDirectory, "./b/c/d"},
        {"below a link under another spelling", symbolicLink("b", "."), file("./b/c"),
         Irregularity::BelowNonDirectory, "./b/c"},
        {"below a file", good, file("./a/b"), Irregularity::BelowNonDirectory, "./a/b"},
        {"below a hard link", hardLink("./b", ""), file("./b/c"), Irregularity::BelowNonDirectory,
         "./b/c"},
    };
}

std::vector<IrregularCase> typeCases() {
    const std::string good = file("./a");
    const Irregularity isSpecial = Irregularity::SpecialFile;
    const Irregularity isUnknown = Irregularity::UnknownType;
    return {
        {"a character device", good, special("./b", 020666), isSpecial, "./b"},
        {"a block device", good, special("./b", 060666), isSpecial, "./b"},
        {"a fifo", good, special("./b", 010644), isSpecial, "./b"},
        {"a socket", good, special("./b", 0140644), isSpecial, "./b"},
        {"no type", good, special("./b", 0644), isUnknown, "./b"},
        {"a type that there is none of", good, special("./b", 0150644), isUnknown, "./b"},
        {"bits beyond the type", good, special("./b", 0200000 | kFile), isUnknown, "./b"},
        {"a directory with data", good,
         cpioEntry({.name = "./b", .data = file("c"), .mode = kDirectory}),
         Irregularity::DirectoryData, "./b"},
        {"the root as a file", good, file("."), Irregularity::RootDirectory, "."},
        {"the root as a link", good, symbolicLink("./", "/etc"), Irregularity::RootDirectory, "./"},
        {"a root that everybody can write to", good, special(".", 040757),
         Irregularity::RootDirectory, "."},
        {"a root that a group can write to", good, special(".", 040775),
         Irregularity::RootDirectory, "."},
        {"a link without a target", good, symbolicLink("./b", ""), Irregularity::LinkTarget, "./b"},
        {"a target that is too long", good, symbolicLink("./b", std::string(4097, 'x')),
         Irregularity::LinkTarget, "./b"},
        {"a target with a NUL byte", good, symbolicLink("./b", std::string("x\0y", 3)),
         Irregularity::LinkTarget, "./b"},
        {"data of one file twice", hardLink("./b", "x"), hardLink("./c", "y"),
         Irregularity::HardLink, "./c"},
        {"a hard link behind the data", hardLink("./b", "x"), hardLink("./c", ""),
         Irregularity::HardLink, "./c"},
        {"more hard links than said", hardLink("./b", "") + hardLink("./c", ""),
         hardLink("./d", "x"), Irregularity::HardLink, "./d"},
        {"hard links that say different numbers", hardLink("./b", "", 2), hardLink("./c", "x", 3),
         Irregularity::HardLink, "./c"},
        {"a setuid bit", good, special("./b", 0104755), Irregularity::SetId, "./b"},
        {"a setgid bit", good, special("./b", 0102755), Irregularity::SetId, "./b"},
        {"a setgid directory", good, special("./b", 042755), Irregularity::SetId, "./b"},
        {"a set-id bit on one of many names", good,
         cpioEntry({.name = "./b", .mode = 0104755, .links = 2}), Irregularity::SetId, "./b"},
        {"another set-id bit than the header has", good, special("./permitted", 0102755),
         Irregularity::SetId, "./permitted"},
        {"more set-id bits than the header has", good, special("./permitted", 0106755),
         Irregularity::SetId, "./permitted"},
    };
}

// What stands at other places than the beginning of an entry.
std::vector<IrregularCase> placeCases() {
    const std::string padded = file("./b", "12345");
    const std::string trailer = cpioTrailer();
    return {
        {"something behind the data", "", padded.substr(0, padded.size() - 1) + "x",
         Irregularity::Padding, "./b", padded.size() - 1},
        {"a second archive", "", trailer + file("x") + trailer, Irregularity::BehindTrailer, "",
         trailer.size()},
        {"a byte behind the padding at the end", file("./a"),
         trailer + std::string(700, '\0') + "x", Irregularity::BehindTrailer, "",
         trailer.size() + 700},
    };
}

std::vector<IrregularCase> irregularCases() {
    std::vector<IrregularCase> all = formatCases();
    for (const auto& cases : {nameCases(), typeCases(), placeCases()}) {
        all.insert(all.end(), cases.begin(), cases.end());
    }
    return all;
}

// Whether the same entries come first, of which the last may lack data.
bool isBeginning(const GivenEntries& cut, const GivenEntries& whole) {
    if (cut.empty() || cut.size() > whole.size()) {
        return cut.empty();
    }
    GivenEntry last = whole[cut.size() - 1];
    last.data.resize(std::min(last.data.size(), cut.back().data.size()));
    return cut.back() == last && std::equal(cut.begin(), cut.end() - 1, whole.begin());
}

}  // namespace

TEST(IrregularArchive, NothingIsGivenFromTheFirstIrregularEntryOn) {
    for (const IrregularCase& row : irregularCases()) {
        SCOPED_TRACE(row.name);
        const std::string archive = row.before + row.entry + file("./z") + cpioTrailer();
        const std::size_t offset = row.before.size() + row.offset;
        const GuardNote note{GuardEnd::Irregular, row.irregularity, offset, row.entryName};
        EXPECT_EQ(guarded(archive), (Outcome{note, entriesOf(archive.substr(0, offset))}));
    }
}

TEST(IrregularArchive, EachIrregularityIsMet) {
    for (unsigned i = 0; i <= static_cast<unsigned>(Irregularity::Last); ++i) {
        const std::vector<IrregularCase> cases = irregularCases();
        EXPECT_TRUE(std::any_of(cases.begin(), cases.end(), [i](const IrregularCase& row) {
            return row.irregularity == static_cast<Irregularity>(i);
        })) << i;
    }
}

// Cut before the irregular entry is known to be one, nothing of it is given either.
TEST(IrregularArchive, WhatIsCutShortIsSaidToBe) {
    for (const IrregularCase& row : irregularCases()) {
        SCOPED_TRACE(row.name);
        const std::string archive = row.before + row.entry + cpioTrailer();
        const Outcome whole = guarded(archive);
        for (std::size_t size = 0; size < std::min<std::size_t>(archive.size(), 600); ++size) {
            const Outcome cut = guarded(archive.substr(0, size));
            EXPECT_TRUE(isBeginning(cut.given, whole.given));
            if (cut.note.end == GuardEnd::Irregular) {
                EXPECT_EQ(cut.note, whole.note);
            } else if (cut.note.end != GuardEnd::Whole) {
                EXPECT_EQ(cut.note, GuardNote{.end = GuardEnd::CutShort});
            }
        }
    }
}

TEST(IrregularArchive, PiecesMakeNoDifference) {
    for (const IrregularCase& row : irregularCases()) {
        SCOPED_TRACE(row.name);
        expectPiecesMakeNoDifference(row.before + row.entry + cpioTrailer());
    }
}

}  // namespace pkgvet::cli
