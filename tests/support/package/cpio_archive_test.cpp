// The archives written by hand, as cpio reads them.
#include "tests/support/package/cpio_archive.h"

#include <gtest/gtest.h>

#include "tests/support/base/temporary_directory.h"
#include "tests/support/package/package_builder.h"

namespace {

std::string listed(const std::string& archive) {
    const TemporaryDirectory directory;
    std::string output;
    runProgram({"sh", "-c", "cpio --quiet -t <\"$1\"", "sh", directory.write("archive", archive)},
               &output);
    return output;
}

CpioEntry named(const std::string& name, const std::string& data = std::string()) {
    CpioEntry entry;
    entry.name = name;
    entry.data = data;
    return entry;
}

}  // namespace

TEST(CpioArchive, IsWhatCpioReads) {
    const std::string archive =
        cpioEntry(named("./a", "content")) + cpioEntry(named("./longer name")) + cpioTrailer();
    EXPECT_EQ(listed(archive), "./a\n./longer name\n");
}

TEST(CpioArchive, EntriesStartAtMultiplesOfFour) {
    for (const char* data : {"", "1", "12", "123", "1234"}) {
        EXPECT_EQ(cpioEntry(named("name", data)).size() % 4, 0U) << data;
    }
}

TEST(CpioArchive, ClaimedSizesStandInPlaceOfTheTrueOnes) {
    CpioEntry entry = named("./name", "data");
    entry.dataSize = 0;
    entry.nameSize = 4;
    const std::string bytes = cpioEntry(entry);
    EXPECT_EQ(bytes.substr(54, 8), "00000000");
    EXPECT_EQ(bytes.substr(94, 8), "00000004");
    EXPECT_NE(bytes.find("./name"), std::string::npos);
    EXPECT_NE(bytes.find("data"), std::string::npos);
}

TEST(CpioArchive, NamesMayHoldNulBytes) {
    EXPECT_EQ(listed(cpioEntry(named(std::string("./a\0b", 5))) + cpioTrailer()), "./a\n");
}

// cpio does not know these entries: it skips to the next that it knows.
TEST(CpioArchive, CpioSkipsEntriesForLargeFiles) {
    const std::string inner = cpioEntry(named("./inner", "x")) + cpioTrailer();
    const std::string listing = listed(cpioLargeFileEntry(0, inner) + cpioTrailer());
    EXPECT_NE(listing.find("./inner"), std::string::npos) << listing;
}
