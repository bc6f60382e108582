#include "cli/base/text.h"

#include <gtest/gtest.h>

namespace pkgvet::cli {

TEST(Wrapped, BreaksAtSpacesWhereALineIsFull) {
    struct Case {
        const char* name;
        const char* text;
        std::vector<std::string> lines;
    };
    const Case cases[] = {
        {"nothing", "", {}},
        {"one word", "one", {"one"}},
        {"fits exactly", "one two", {"one two"}},
        {"one byte too many", "one twos", {"one", "twos"}},
        {"a word longer than a line", "a incompatibility b", {"a", "incompatibility", "b"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(wrapped(c.text, 7), c.lines);
    }
}

TEST(Joined, PutsTheSeparatorBetweenTexts) {
    using Texts = std::vector<std::string>;
    EXPECT_EQ(joined(Texts{}, ", "), "");
    EXPECT_EQ(joined(Texts{"a"}, ", "), "a");
    EXPECT_EQ(joined(Texts{"a", "", "b"}, ", "), "a, , b");
    EXPECT_EQ(joined(Texts{"", "a"}, ","), ",a");
    EXPECT_EQ(joined(std::vector<std::string_view>{"a", "b"}, ""), "ab");
}

TEST(Counted, OneIsSingular) {
    EXPECT_EQ(counted(0, "error"), "0 errors");
    EXPECT_EQ(counted(1, "error"), "1 error");
    EXPECT_EQ(counted(2, "error"), "2 errors");
}

TEST(Padded, FillsColumnsAndNotBytes) {
    EXPECT_EQ(displayWidth("a\u00e9"), 2U);
    EXPECT_EQ(displayWidth("e\u0301"), 1U);  // a combining mark
    EXPECT_EQ(displayWidth("\u6f22"), 2U);
    EXPECT_EQ(paddedRight("\u00e9", 3), "\u00e9  ");
    EXPECT_EQ(paddedLeft("\u6f22", 3), " \u6f22");
    EXPECT_EQ(paddedLeft("long", 3), "long");
}

}  // namespace pkgvet::cli
