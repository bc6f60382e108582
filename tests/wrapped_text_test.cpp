#include "cli/wrapped_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pkgvet::cli {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Wrapped, BreaksBetweenWordsWhereALineIsFull) {
    struct Case {
        const char* name;
        const char* text;
        const char* result;
    };
    const Case cases[] = {
        {"nothing", "", ""},
        {"one word", "one", "  one\n"},
        {"fits exactly", "one two", "  one two\n"},
        {"one byte too many", "one twos", "  one\n  twos\n"},
        {"a word longer than a line", "a incompatibility b", "  a\n  incompatibility\n  b\n"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(wrapped(c.text, "  ", 9), c.result);
    }
}

TEST(LinesOf, CutsAtLineFeeds) {
    EXPECT_THAT(linesOf(""), IsEmpty());
    EXPECT_THAT(linesOf("a\n\nb\n"), ElementsAre("a", "", "b"));
    EXPECT_THAT(linesOf("a\nb"), ElementsAre("a", "b"));
}

}  // namespace pkgvet::cli
