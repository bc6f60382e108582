// Words that are nearly the ones that somebody meant.
#include "cli/base/nearest.h"

#include <gtest/gtest.h>

namespace {

using namespace pkgvet::cli;

TEST(Nearest, DistanceCountsChangedCharacters) {
    struct Case {
        const char* from;
        const char* to;
        std::size_t distance;
    };
    const Case cases[] = {{"", "", 0},          {"", "abc", 3},    {"abc", "", 3},
                          {"chek", "check", 1}, {"abc", "abd", 1}, {"kitten", "sitting", 3}};
    for (const Case& test : cases) {
        SCOPED_TRACE(test.from);
        EXPECT_EQ(editDistance(test.from, test.to), test.distance);
    }
}

TEST(Nearest, OneWordIsSuggestedOrNone) {
    const std::vector<std::string> words = {"check", "explain", "rules"};
    EXPECT_EQ(nearestWord("chek", words), "check");
    EXPECT_EQ(nearestWord("rule", words), "rules");
    EXPECT_EQ(nearestWord("frobnicate", words), "");
    EXPECT_EQ(nearestWord("", words), "");
    EXPECT_EQ(nearestWord("check", {}), "");
    EXPECT_EQ(suggestion("explian", words), ": did you mean explain?");
    EXPECT_EQ(suggestion("x", words), "");
}

}  // namespace
