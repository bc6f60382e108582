// The numbers at the beginning of an entry.
#include "cli/guard/entry_fields.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/package/cpio_archive.h"

namespace pkgvet::cli {

TEST(EntryFields, AreReadInTheirOrder) {
    const CpioEntry entry{.name = "name",
                          .data = "data",
                          .mode = 3,
                          .inode = 2,
                          .user = 4,
                          .group = 5,
                          .links = 6,
                          .time = 7,
                          .deviceMajor = 9,
                          .deviceMinor = 0xfedcba98,
                          .nameSize = 13};
    const std::optional<EntryFields> fields = readFields(cpioEntry(entry));
    ASSERT_TRUE(fields);
    EXPECT_EQ(fields->inode, 2U);
    EXPECT_EQ(fields->mode, 3U);
    EXPECT_EQ(fields->user, 4U);
    EXPECT_EQ(fields->group, 5U);
    EXPECT_EQ(fields->links, 6U);
    EXPECT_EQ(fields->time, 7U);
    EXPECT_EQ(fields->dataSize, 4U);
    EXPECT_EQ(fields->deviceMajor, 9U);
    EXPECT_EQ(fields->deviceMinor, 0xfedcba98U);
    EXPECT_EQ(fields->nameSize, 13U);
}

TEST(EntryFields, DigitsMayBeOfEitherCase) {
    std::string bytes = cpioEntry({.name = "name"});
    bytes.replace(kEntryMagic.size(), 8, "00ABcdEF");
    EXPECT_EQ(readFields(bytes)->inode, 0xabcdefU);
}

TEST(EntryFields, EachIsEightDigits) {
    const std::string bytes = cpioEntry({.name = "name"});
    for (std::size_t i = kEntryMagic.size(); i < kFieldsEnd; ++i) {
        for (const char byte : {' ', '-', '+', 'x', 'g', '\0'}) {
            std::string changed = bytes;
            changed[i] = byte;
            EXPECT_FALSE(readFields(changed)) << i << " " << byte;
        }
    }
}

TEST(EntryFields, PaddingReachesTheNextMultipleOfFour) {
    EXPECT_EQ(paddingOf(0), 0U);
    EXPECT_EQ(paddingOf(1), 3U);
    EXPECT_EQ(paddingOf(2), 2U);
    EXPECT_EQ(paddingOf(3), 1U);
    EXPECT_EQ(paddingOf(4), 0U);
}

}  // namespace pkgvet::cli
