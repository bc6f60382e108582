// Checked access to bytes from a stranger.
#include "pkgvet/elf/byte_view.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using pkgvet::ByteOrder;
using pkgvet::ByteView;

constexpr std::uint64_t kHuge = std::numeric_limits<std::uint64_t>::max();

TEST(ByteView, NumbersFollowTheByteOrder) {
    const std::string_view bytes("\x01\x02\x03\x04\x05\x06\x07\xF8", 8);
    const ByteView little(bytes, ByteOrder::Little);
    EXPECT_EQ(little.number(0, 2), 0x0201U);
    EXPECT_EQ(little.number(1, 4), 0x05040302U);
    EXPECT_EQ(little.number(0, 8), 0xF807060504030201U);
    const ByteView big(bytes, ByteOrder::Big);
    EXPECT_EQ(big.number(0, 2), 0x0102U);
    EXPECT_EQ(big.number(1, 4), 0x02030405U);
    EXPECT_EQ(big.number(0, 8), 0x01020304050607F8U);
}

TEST(ByteView, NumbersOutsideTheBytesAreNone) {
    const ByteView view("12345678", ByteOrder::Little);
    EXPECT_TRUE(view.number(4, 4));
    EXPECT_FALSE(view.number(5, 4));
    EXPECT_FALSE(view.number(8, 1));
    EXPECT_FALSE(view.number(9, 1));
    EXPECT_FALSE(view.number(kHuge, 8));
    EXPECT_FALSE(view.number(kHuge - 3, 4));
    EXPECT_FALSE(ByteView("", ByteOrder::Big).number(0, 2));
}

TEST(ByteView, TextEndsAtItsNulOrWithTheBytes) {
    const ByteView view(std::string_view("ab\0cd", 5), ByteOrder::Little);
    EXPECT_EQ(view.text(0), "ab");
    EXPECT_EQ(view.text(1), "b");
    EXPECT_EQ(view.text(2), "");
    EXPECT_EQ(view.text(3), "cd");
    EXPECT_EQ(view.text(4), "d");
}

TEST(ByteView, TextBehindTheEndIsEmpty) {
    const ByteView view("ab", ByteOrder::Little);
    EXPECT_EQ(view.text(2), "");
    EXPECT_EQ(view.text(3), "");
    EXPECT_EQ(view.text(kHuge), "");
    EXPECT_EQ(ByteView("", ByteOrder::Little).text(0), "");
}

}  // namespace
