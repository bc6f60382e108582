// Lines for a terminal.
#include "cli/report/folding.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using namespace pkgvet::cli;

using Lines = std::vector<std::string>;

TEST(Folding, BreaksWhereALineIsFull) {
    struct Case {
        const char* name;
        const char* text;
        std::size_t columns;
        Lines lines;
    };
    const Case cases[] = {
        {"nothing", "", 10, {""}},
        {"any length", "one two three", 0, {"one two three"}},
        {"just fits", "one two", 7, {"one two"}},
        {"one more", "one two", 6, {"one", "two"}},
        {"spaces stay", "a  b   c", 20, {"a  b   c"}},
        {"phrase", "see the name (e.g. a b)", 18, {"see the name", "(e.g. a b)"}},
        {"phrase that no line holds", "see (e.g. a b)", 8, {"see", "(e.g. a", "b)"}},
        {"phrase without an end", "see (a b c", 6, {"see", "(a b c"}},
        {"long word", "a 1234567 b", 4, {"a", "1234", "567", "b"}},
        {"path", "in /usr/share/org.x/icons", 14, {"in", "/usr/share/", "org.x/icons"}},
        {"path with a long part", "/a/123456789/b", 6, {"/a/", "123456", "789/b"}},
        {"two columns each", "\u4e2d\u4e2d\u4e2d", 4, {"\u4e2d\u4e2d", "\u4e2d"}},
        {"colour", "\033[31mred\033[m blue", 8, {"\033[31mred\033[m blue"}},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        EXPECT_EQ(folded(test.text, test.columns), test.lines);
    }
}

TEST(Folding, LinesThatGoOnAreIndented) {
    std::ostringstream stream;
    writeFolded("one two three four", 9, stream);
    EXPECT_EQ(stream.str(), "one two\n  three\n  four\n");
}

TEST(Folding, TextGoesOnBelowItsBeginning) {
    std::ostringstream stream;
    writeHanging("rule  ", 6, "a message of words and more of them", 34, stream);
    EXPECT_EQ(stream.str(), "rule  a message of words and more\n      of them\n");
}

TEST(Folding, TextWithoutRoomStandsBelow) {
    std::ostringstream stream;
    writeHanging("a long rule ", 12, "a message of words and more", 30, stream);
    EXPECT_EQ(stream.str(), "a long rule\n      a message of words and\n      more\n");
}

}  // namespace
