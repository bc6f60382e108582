// One-shot whole-string matching.
#include "pkgvet/pattern/patterns.h"

#include <gtest/gtest.h>

#include <regex>

#include "pkgvet/pattern/regex.h"
#include "pkgvet/pattern/rule_pattern.h"

namespace {

using Patterns = std::vector<std::string>;

TEST(MatchesPattern, ThePatternCoversTheWholeText) {
    struct Case {
        const char* text;
        const char* pattern;
        bool expected;
    };
    const Case cases[] = {
        {"abc", "abc", true},       {"abc", "b", false},
        {"abc", "ab", false},       {"abc", "a.c", true},
        {"abc", "a.*", true},       {"abc", "^abc$", true},
        {"abc", "ABC", false},      {"", "", true},
        {"a", "", false},           {"", "a*", true},
        {"a.c", R"(a\.c)", true},   {"abc", R"(a\.c)", false},
        {"abab", "(ab)+", true},    {"aXa", R"((a)X\1)", true},
        {"b", "a|b", true},         {"ab", "a|b", false},
        {"a1", R"([a-z]\d)", true}, {"a\nb", "a.b", false},
        {"ab", "(?=a).b", true},
    };
    for (const Case& test : cases) {
        EXPECT_EQ(matchesPattern(test.text, test.pattern), test.expected)
            << test.text << " against " << test.pattern;
    }
}

TEST(MatchesPattern, SearchFindsWhatTheWholeTextDoesNot) {
    const Regex search("b", pkgvet::kPlainPattern.compile, pkgvet::kPlainPattern.match);
    EXPECT_TRUE(search.match("abc"));
    EXPECT_FALSE(matchesAnyPattern({"b"}, "abc"));
    EXPECT_TRUE(matchesAnyPattern({".*b.*"}, "abc"));
}

TEST(MatchesPattern, BadPatternThrows) {
    for (const char* pattern : {"(", "[", "a{2,1}", "*", R"(\)", "(?<name>a)"}) {
        EXPECT_THROW(matchesPattern("a", pattern), std::regex_error) << pattern;
    }
}

TEST(MatchesAnyPattern, EmptyListMatchesNothing) {
    EXPECT_FALSE(matchesAnyPattern({}, ""));
    EXPECT_FALSE(matchesAnyPattern({}, "a"));
}

TEST(MatchesAnyPattern, AnyElementWillDo) {
    const Patterns patterns = {"x.*", "abc", "a+"};
    EXPECT_TRUE(matchesAnyPattern(patterns, "xyz"));
    EXPECT_TRUE(matchesAnyPattern(patterns, "abc"));
    EXPECT_TRUE(matchesAnyPattern(patterns, "aaa"));
    EXPECT_FALSE(matchesAnyPattern(patterns, "ab"));
}

TEST(MatchesAnyPattern, BadPatternThrowsWhenTheWalkGetsToIt) {
    const Patterns patterns = {"a", "b+", "(", "c"};
    EXPECT_TRUE(matchesAnyPattern(patterns, "a"));
    EXPECT_TRUE(matchesAnyPattern(patterns, "bb"));
    EXPECT_THROW(matchesAnyPattern(patterns, "c"), std::regex_error);
}

}  // namespace
