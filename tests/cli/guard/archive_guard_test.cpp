// Archives whose entries are given, whatever the pieces in which they come, and what counts against
// a ceiling.
#include "cli/guard/archive_guard.h"

#include <gtest/gtest.h>

#include "tests/support/package/guarded_archive.h"

namespace pkgvet::cli {

namespace {

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

}  // namespace

TEST(ArchiveGuard, EntriesOfRegularArchivesAreGiven) {
    for (const RegularCase& row : regularCases()) {
        SCOPED_TRACE(row.name);
        const std::string archive = row.archive + cpioTrailer() + std::string(40, '\0');
        EXPECT_EQ(guarded(archive), (Outcome{{.end = GuardEnd::Whole}, entriesOf(archive)}));
    }
}

TEST(ArchiveGuard, PiecesMakeNoDifference) {
    for (const RegularCase& row : regularCases()) {
        SCOPED_TRACE(row.name);
        expectPiecesMakeNoDifference(row.archive + cpioTrailer() + std::string(40, '\0'));
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

TEST(ArchiveGuard, DataMayBeTakenPastIt) {
    const std::string entry = file("./a", std::string(100, 'x'));
    GivenEntries given;
    ArchiveGuard guard(kOrders, receiverOf(&given));
    guard.take(std::string_view(entry).substr(0, entry.size() - 60));
    EXPECT_EQ(guard.dataAhead(), 60U);
    guard.skipData(50);
    EXPECT_EQ(guard.dataAhead(), 10U);
    guard.skipData(10);
    EXPECT_EQ(guard.dataAhead(), 0U);
    guard.take(file("./b") + cpioTrailer());
    ASSERT_EQ(given.size(), 2U);
    EXPECT_EQ(given.front().data, std::string(40, 'x'));
    EXPECT_EQ(given.back().data, "content");
    EXPECT_EQ(guard.finish().end, GuardEnd::Whole);
}

TEST(ArchiveGuard, RootIsNotGiven) {
    EXPECT_EQ(guarded(directory(".") + cpioTrailer()).given, GivenEntries());
    EXPECT_EQ(guarded(directory("./") + cpioTrailer()).given, GivenEntries());
}

TEST(ArchiveGuard, BytesCountAsTheyAreGiven) {
    const std::string before = file("./a", "12345") + symbolicLink("./l", "123");
    const std::string archive =
        before + hardLink("./b", "") + hardLink("./c", "12") + directory("./d") + cpioTrailer();
    EXPECT_EQ(guarded(archive, 9, {10, 100}).note.end, GuardEnd::Whole);
    const Outcome outcome = guarded(archive, 9, {9, 100});
    EXPECT_EQ(outcome.note.end, GuardEnd::TooLarge);
    EXPECT_EQ(outcome.given, entriesOf(before + hardLink("./b", "")));
    EXPECT_EQ(guarded(archive, 9, {7, 100}).note.end, GuardEnd::TooLarge);
}

// The entry does not have to hold what it says.
TEST(ArchiveGuard, EntryThatSaysThatItIsTooLargeIsNotBegun) {
    const std::string archive = cpioEntry({.name = "a", .dataSize = 0xffffffff});
    const Outcome outcome = guarded(archive, 1000, {0xfffffffe, 100});
    EXPECT_EQ(outcome.note.end, GuardEnd::TooLarge);
    EXPECT_EQ(outcome.given, GivenEntries());
}

TEST(ArchiveGuard, PaddingAtTheEndCountsAsBytes) {
    const std::string archive = cpioTrailer() + std::string(1000, '\0');
    EXPECT_EQ(guarded(archive, 100, {1000, 100}).note.end, GuardEnd::Whole);
    EXPECT_EQ(guarded(archive, 100, {999, 100}).note.end, GuardEnd::TooLarge);
}

// Directories that are made on the way are files as well; the root is there already.
TEST(ArchiveGuard, FilesCountAsTheyAreGiven) {
    const std::string before = directory(".") + file("./a/b/c") + symbolicLink("./l", "x");
    const std::string archive = before + hardLink("./d", "") + cpioTrailer();
    EXPECT_EQ(guarded(archive, 9, {100, 5}).note.end, GuardEnd::Whole);
    const Outcome outcome = guarded(archive, 9, {100, 4});
    EXPECT_EQ(outcome.note.end, GuardEnd::TooManyFiles);
    EXPECT_EQ(outcome.given, entriesOf(before));
    EXPECT_EQ(guarded(archive, 9, {100, 2}).given, GivenEntries());
}

}  // namespace pkgvet::cli
