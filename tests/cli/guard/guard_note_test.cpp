// What judges and the guard write for one another.
#include "cli/guard/guard_note.h"

#include <gtest/gtest.h>

namespace pkgvet::cli {

namespace {

const GuardNote kNote{GuardEnd::Irregular, Irregularity::SetId, 0x123456789, "./a\nb\0"};

}  // namespace

TEST(GuardNote, IsReadAsItWasWritten) {
    for (const GuardNote& note :
         {kNote, GuardNote(), GuardNote{.end = GuardEnd::TooManyFiles},
          GuardNote{GuardEnd::Irregular, Irregularity::NameEnd, 0, std::string("a\0b", 3)},
          GuardNote{.name = std::string(kMaxNameSize, 'x')}}) {
        EXPECT_EQ(parseNote(formatNote(note)), note);
    }
}

TEST(GuardNote, HasOneSize) {
    EXPECT_EQ(formatNote({}).size(), kNoteSize);
    EXPECT_EQ(formatNote({.name = std::string(2 * kMaxNameSize, 'x')}).size(), kNoteSize);
}

TEST(GuardNote, WhatItsWriterWouldNotWriteIsNotRead) {
    const std::string whole = formatNote(kNote);
    const auto begun = [](const std::string& text) {
        return text + std::string(kNoteSize - text.size(), '\0');
    };
    ASSERT_TRUE(parseNote(begun("1 0 0 0\n")));
    for (const std::string& text :
         {std::string(), whole.substr(1), whole.substr(0, whole.size() - 1), whole + '\0',
          begun(""), begun("1"), begun("1 2 3"), begun("x 0 0 0\n"), begun("-1 0 0 0\n"),
          begun("7 0 0 0\n"), begun("3 21 0 0\n"), begun("1 0 99999999999999999999 0\n"),
          begun("1 0 0 4097\n")}) {
        EXPECT_FALSE(parseNote(text)) << text;
    }
}

TEST(GuardOrders, AreReadAsTheyWereWritten) {
    const GuardOrders orders{5, 0xffffffffffffffff, {{"/a b\n", 04000}, {"/b", 06000}}};
    const std::optional<GuardOrders> read = parseOrders(formatOrders(orders));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->bytes, orders.bytes);
    EXPECT_EQ(read->files, orders.files);
    EXPECT_EQ(read->setIdModes, orders.setIdModes);
}

TEST(GuardOrders, NameOnlyPathsWithSetIdBits) {
    const GuardOrders orders{1, 2, {{"/a", 0755}, {"/b", 04755}}};
    EXPECT_EQ(parseOrders(formatOrders(orders))->setIdModes, (SetIdModes{{"/b", 04000}}));
}

TEST(GuardOrders, HaveABoundedSize) {
    GuardOrders orders{1, 2, {}};
    for (int i = 0; i < 10000; ++i) {
        orders.setIdModes.emplace(std::to_string(i) + std::string(4000, 'x'), 04000);
    }
    const std::string text = formatOrders(orders);
    EXPECT_LT(text.size(), 17U << 20U);
    EXPECT_LT(parseOrders(text)->setIdModes.size(), 10000U);
}

TEST(GuardOrders, WhatTheirWriterWouldNotWriteIsNotRead) {
    for (const char* const text : {"", "1", "1 ", "1 2", "x 2\n", "1 2\n2048 5\n/a",
                                   "1 2\n4096 2\n/a", "1 2\nx 2\n/a", "18446744073709551616 2\n"}) {
        EXPECT_FALSE(parseOrders(text)) << text;
    }
}

}  // namespace pkgvet::cli
