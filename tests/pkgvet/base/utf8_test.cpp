// Text from strangers in front of libraries that require UTF-8.
#include "pkgvet/base/utf8.h"

#include <glib.h>
#include <gtest/gtest.h>

namespace {

using pkgvet::isUtf8;
using pkgvet::validUtf8;

TEST(IsUtf8, TellsValidTextFromOther) {
    for (const char* text : {"", "plain", "жир", "\xF0\x9F\x8E\x88", "\uFFFD"}) {
        EXPECT_TRUE(isUtf8(text)) << text;
    }
    EXPECT_TRUE(isUtf8(std::string_view()));
    for (const char* text : {"\x80", "a\xFFz", "\xE2\x82", "\xC0\xAF", "\xED\xA0\x80"}) {
        EXPECT_FALSE(isUtf8(text)) << testing::PrintToString(text);
    }
    EXPECT_FALSE(isUtf8(std::string_view("a\0b", 3)));
    EXPECT_FALSE(isUtf8(std::string_view("ж", 1)));
}

TEST(ValidUtf8, ValidTextStaysAsItIs) {
    for (const std::string text : {"", "plain", "жир", "\xF0\x9F\x8E\x88", "a\tb\n", "\uFFFD"}) {
        EXPECT_EQ(validUtf8(text), text);
    }
    EXPECT_EQ(validUtf8(std::string_view()), "");
}

TEST(ValidUtf8, EachOffendingByteIsReplaced) {
    struct Case {
        const char* name;
        std::string text;
        std::string expected;
    };
    const Case cases[] = {
        {"byte that begins nothing", "a\xFFz", "a\uFFFDz"},
        {"continuation alone", "\x80", "\uFFFD"},
        {"cut at the end", "a\xE2\x82", "a\uFFFD\uFFFD"},
        {"overlong slash", "\xC0\xAF", "\uFFFD\uFFFD"},
        {"surrogate", "\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},
        {"beyond Unicode", "\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"long form of old", "\xFC", "\uFFFD"},
        {"Latin-1 between valid text", "ж\xE9ж", "ж\uFFFDж"},
        {"NUL", std::string("a\0b", 3),
         "a\uFFFD"
         "b"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        EXPECT_EQ(validUtf8(test.text), test.expected);
    }
}

TEST(ValidUtf8, AllPairsOfBytesComeOutValid) {
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; ++second) {
            const std::string text = {static_cast<char>(first), static_cast<char>(second)};
            const std::string valid = validUtf8(text);
            ASSERT_TRUE(g_utf8_validate(valid.data(), static_cast<gssize>(valid.size()), nullptr))
                << first << " " << second;
        }
    }
}

TEST(ValidUtf8, TextIsReadByItsLength) {
    EXPECT_EQ(validUtf8(std::string_view("ж", 1)), "\uFFFD");
    EXPECT_EQ(validUtf8(std::string_view("abc", 2)), "ab");
}

}  // namespace
