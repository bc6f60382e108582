// Archives that pass, and archives of which nothing passes from the first irregular entry on,
// whatever the pieces in which they come.
#include "cli/guard/archive_guard.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "tests/support/package/cpio_archive.h"

namespace pkgvet::cli {

namespace {

constexpr std::uint32_t kDirectory = 040755;
constexpr std::uint32_t kFile = 0100644;
constexpr std::uint32_t kLink = 0120777;
constexpr std::uint64_t kNoCeiling = std::numeric_limits<std::uint64_t>::max();

const GuardOrders kOrders{kNoCeiling, kNoCeiling, {{"/permitted", 04000}}};

struct Outcome {
    GuardNote note;
    std::string passed;

    bool operator==(const Outcome&) const = default;
};

void PrintTo(const Outcome& outcome, std::ostream* stream) {
    *stream << "end " << static_cast<unsigned>(outcome.note.end) << ", irregularity "
            << static_cast<unsigned>(outcome.note.irregularity) << ", offset "
            << outcome.note.offset << ", name " << outcome.note.name << ", passed "
            << outcome.passed.size();
}

Outcome guarded(std::string_view archive, std::size_t pieceSize,
                const GuardOrders& orders = kOrders) {
    ArchiveGuard guard(orders);
    Outcome outcome;
    while (!archive.empty()) {
        guard.take(archive.substr(0, pieceSize), &outcome.passed);
        archive.remove_prefix(std::min(pieceSize, archive.size()));
    }
    outcome.note = guard.finish();
    return outcome;
}

Outcome guarded(const std::string& archive) {
    return guarded(archive, archive.size() + 1);
}

std::string file(const std::string& name, const std::string& data = "content") {
    return cpioEntry({.name = name, .data = data});
}

std::string directory(const std::string& name) {
    return cpioEntry({.name = name, .mode = kDirectory});
}

std::string symbolicLink(const std::string& name, const std::string& target) {
    return cpioEntry({.name = name, .data = target, .mode = kLink});
}

std::string special(const std::string& name, std::uint32_t mode) {
    return cpioEntry({.name = name, .mode = mode});
}

// One of links names of the file with the inode.
std::string hardLink(const std::string& name, const std::string& data, std::uint32_t links = 2,
                     std::uint32_t inode = 7) {
    return cpioEntry({.name = name, .data = data, .inode = inode, .links = links});
}

// Many components, so that the whole path is as long as asked for.
std::string longName(std::size_t size) {
    std::string name;
    while (name.size() + 101 < size) {
        name += std::string(100, 'x') + '/';
    }
    return name + std::string(size - name.size(), 'y');
}

std::string replaced(std::string bytes, std::size_t position, const std::string& by) {
    return bytes.replace(position, by.size(), by);
}

struct RegularCase {
    const char* name;
    std::string archive;  // without its trailer
};

std::vector<RegularCase> regularCases() {
    return {
        {"no entry at all", ""},
        {"a file", file("./usr/bin/x")},
        {"names without the prefix", directory("usr") + file("usr/x")},
        {"the root by its short name", directory(".") + file("./x")},
        {"the root as rpm writes it", directory("./") + file("./x")},
        {"sizes around the padding", file("a", "") + file("ab", "1") + file("abc", "12") +
                                         file("abcd", "123") + file("abcde", "1234")},
        {"parents that have no entry", file("./a/b/c") + file("./a/b/d") + directory("./a/e")},
        {"a directory behind its content", file("./a/b") + directory("./a")},
        {"dots in names", file("./..a") + file("./a..") + file("./...") + file("./.b/.c")},
        {"odd names",
         file("./a b\nc\t\"\\$`*") + file("./\xff\xfe") + file("./-rf") + file("./TRAILER!!!")},
        {"a name like another one's beginning", file("./ab/c") + file("./a") + file("./abc")},
        {"the longest name", file(longName(4096))},
        {"a link", symbolicLink("./l", "/nowhere") + file("./m/x")},
        {"the longest target", symbolicLink("./l", std::string(4096, 'x'))},
        {"hard links", hardLink("./a", "", 3) + hardLink("./b", "", 3) + hardLink("./c", "x", 3)},
        {"hard links of an empty file", hardLink("./a", "") + hardLink("./b", "")},
        {"fewer hard links than there were", hardLink("./a", "x", 5)},
        {"hard links with files between them",
         hardLink("./a", "") + file("./f") + hardLink("./c", "", 2, 8) + hardLink("./b", "x") +
             hardLink("./d", "y", 2, 8)},
        {"links in the same place on other devices",
         cpioEntry({.name = "a", .data = "1", .links = 2, .deviceMajor = 1}) +
             cpioEntry({.name = "b", .data = "2", .links = 2, .deviceMinor = 1}) +
             cpioEntry({.name = "c", .data = "3", .links = 2})},
        {"one inode of files without links", file("./a") + file("./b")},
        {"a set-id bit that the header has",
         cpioEntry({.name = "./permitted", .mode = kFile | 04111})},
        {"sticky bits and what everybody can write to",
         special("./a", kDirectory | 01777) + special("./b", kFile | 01666)},
    };
}

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

}  // namespace

TEST(ArchiveGuard, RegularArchivesPassUnchanged) {
    for (const RegularCase& row : regularCases()) {
        SCOPED_TRACE(row.name);
        const std::string archive = row.archive + cpioTrailer() + std::string(40, '\0');
        EXPECT_EQ(guarded(archive), (Outcome{{.end = GuardEnd::Whole}, archive}));
    }
}

TEST(ArchiveGuard, NothingPassesFromTheFirstIrregularEntryOn) {
    for (const IrregularCase& row : irregularCases()) {
        SCOPED_TRACE(row.name);
        const std::string archive = row.before + row.entry + file("./z") + cpioTrailer();
        const std::size_t offset = row.before.size() + row.offset;
        const GuardNote note{GuardEnd::Irregular, row.irregularity, offset, row.entryName};
        EXPECT_EQ(guarded(archive), (Outcome{note, archive.substr(0, offset)}));
    }
}

TEST(ArchiveGuard, EachIrregularityIsMet) {
    for (unsigned i = 0; i <= static_cast<unsigned>(Irregularity::Last); ++i) {
        const std::vector<IrregularCase> cases = irregularCases();
        EXPECT_TRUE(std::any_of(cases.begin(), cases.end(), [i](const IrregularCase& row) {
            return row.irregularity == static_cast<Irregularity>(i);
        })) << i;
    }
}

TEST(ArchiveGuard, PiecesMakeNoDifference) {
    std::vector<std::string> archives;
    for (const RegularCase& row : regularCases()) {
        archives.push_back(row.archive + cpioTrailer() + std::string(40, '\0'));
    }
    for (const IrregularCase& row : irregularCases()) {
        archives.push_back(row.before + row.entry + cpioTrailer());
    }
    for (const std::string& archive : archives) {
        const Outcome whole = guarded(archive);
        for (const std::size_t size : {1, 3, 64, 4096}) {
            EXPECT_EQ(guarded(archive, size), whole) << size;
        }
    }
}

// Cut before the irregular entry is known to be one, nothing of it has passed either.
TEST(ArchiveGuard, WhatIsCutShortIsSaidToBe) {
    for (const IrregularCase& row : irregularCases()) {
        SCOPED_TRACE(row.name);
        const std::string archive = row.before + row.entry + cpioTrailer();
        const Outcome whole = guarded(archive);
        for (std::size_t size = 0; size < std::min<std::size_t>(archive.size(), 600); ++size) {
            const Outcome cut = guarded(archive.substr(0, size));
            EXPECT_TRUE(whole.passed.starts_with(cut.passed));
            if (cut.note.end == GuardEnd::Irregular) {
                EXPECT_EQ(cut.note, whole.note);
            } else if (cut.note.end != GuardEnd::Whole) {
                EXPECT_EQ(cut.note, GuardNote{.end = GuardEnd::CutShort});
            }
        }
    }
}

TEST(ArchiveGuard, WholeIsWhatHasItsTrailer) {
    const std::string archive = directory("./d") + file("./d/f") + symbolicLink("./l", "f");
    const std::string whole = archive + cpioTrailer();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_EQ(guarded(whole.substr(0, size)).note.end, GuardEnd::CutShort) << size;
    }
    EXPECT_EQ(guarded(whole).note.end, GuardEnd::Whole);
}

TEST(ArchiveGuard, DataMayGoOnUnseen) {
    const std::string entry = file("./a", std::string(100, 'x'));
    ArchiveGuard guard(kOrders);
    std::string passed;
    guard.take(std::string_view(entry).substr(0, entry.size() - 60), &passed);
    EXPECT_EQ(guard.dataAhead(), 60U);
    guard.skipData(50);
    EXPECT_EQ(guard.dataAhead(), 10U);
    guard.skipData(10);
    EXPECT_EQ(guard.dataAhead(), 0U);
    guard.take(cpioTrailer(), &passed);
    EXPECT_EQ(passed, entry.substr(0, entry.size() - 60) + cpioTrailer());
    EXPECT_TRUE(guard.isBehindTrailer());
    EXPECT_EQ(guard.finish().end, GuardEnd::Whole);
}

TEST(ArchiveGuard, BytesCountAsTheyPass) {
    const std::string before = file("./a", "12345") + symbolicLink("./l", "123");
    const std::string archive =
        before + hardLink("./b", "") + hardLink("./c", "12") + directory("./d") + cpioTrailer();
    EXPECT_EQ(guarded(archive, 9, {10, 100}).note.end, GuardEnd::Whole);
    const Outcome outcome = guarded(archive, 9, {9, 100});
    EXPECT_EQ(outcome.note.end, GuardEnd::TooLarge);
    EXPECT_EQ(outcome.passed, before + hardLink("./b", ""));
    EXPECT_EQ(guarded(archive, 9, {7, 100}).note.end, GuardEnd::TooLarge);
}

// The entry does not have to hold what it says.
TEST(ArchiveGuard, EntryThatSaysThatItIsTooLargeIsNotBegun) {
    const std::string archive = cpioEntry({.name = "a", .dataSize = 0xffffffff});
    const Outcome outcome = guarded(archive, 1000, {0xfffffffe, 100});
    EXPECT_EQ(outcome.note.end, GuardEnd::TooLarge);
    EXPECT_EQ(outcome.passed, "");
}

TEST(ArchiveGuard, PaddingAtTheEndCountsAsBytes) {
    const std::string archive = cpioTrailer() + std::string(1000, '\0');
    EXPECT_EQ(guarded(archive, 100, {1000, 100}).note.end, GuardEnd::Whole);
    EXPECT_EQ(guarded(archive, 100, {999, 100}).note.end, GuardEnd::TooLarge);
}

// Directories that cpio makes on the way are files as well; the root is there already.
TEST(ArchiveGuard, FilesCountAsTheyPass) {
    const std::string before = directory(".") + file("./a/b/c") + symbolicLink("./l", "x");
    const std::string archive = before + hardLink("./d", "") + cpioTrailer();
    EXPECT_EQ(guarded(archive, 9, {100, 5}).note.end, GuardEnd::Whole);
    const Outcome outcome = guarded(archive, 9, {100, 4});
    EXPECT_EQ(outcome.note.end, GuardEnd::TooManyFiles);
    EXPECT_EQ(outcome.passed, before);
    EXPECT_EQ(guarded(archive, 9, {100, 2}).passed, directory("."));
}

}  // namespace pkgvet::cli
