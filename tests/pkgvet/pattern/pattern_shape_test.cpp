// What a pattern asks of the std::regex engine.
#include "pkgvet/pattern/pattern_shape.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using pkgvet::engineFrames;
using pkgvet::shapeOf;

std::size_t stackFor(std::size_t groups, std::size_t terms) {
    return groups * engineFrames().group + terms * engineFrames().term;
}

TEST(PatternShape, CompilerRecursesForTermsInARowAndGroupsInOneAnother) {
    struct Case {
        const char* pattern;
        std::size_t groups;
        std::size_t terms;
    };
    const Case cases[] = {
        {"", 0, 0},
        {"abc", 0, 3},
        {"a*b+?c??", 0, 3},
        {"a{2}b{2,}c{2,3}?", 0, 3},
        {"^a$", 0, 3},
        {"ab|cde|f", 0, 3},
        {"(a)(b)(c)", 1, 3},
        {"((()))", 3, 0},
        {"ab(c(d", 2, 4},
        {"(?:a(?=b(?!c", 3, 3},
        {"(a|(b|c))", 2, 1},
        {R"(\(\(\))", 0, 3},
        {R"([(][\]()][^(][[:alpha:](]a)", 0, 5},
        {"[]a[^](", 1, 3},
        {R"(\x41\u0041\cA\0a\b)", 0, 6},
        {R"((a)\12\1)", 1, 1},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.pattern);
        const std::size_t expected = stackFor(test.groups, test.terms);
        EXPECT_EQ(shapeOf(test.pattern).compilerStack, expected);
    }
}

TEST(PatternShape, NothingCountsBehindAFaultAtWhichTheCompilerStops) {
    for (const char* pattern : {"a)", "*", "a|*", "^*", "(?=a)+", "a{", "a{x", "a{1", "a{1,2",
                                "a(?<", "[", "[[:alpha:]", "(+"}) {
        SCOPED_TRACE(pattern);
        const std::string prefix = pattern;
        EXPECT_LE(shapeOf(prefix + "((((((((").compilerStack, stackFor(1, 2));
    }
}

TEST(PatternShape, EngineStopsAtItsLimitOfStates) {
    std::string pattern;
    for (int i = 0; i < 100000; ++i) {
        pattern += "a*";
    }
    EXPECT_LE(shapeOf(pattern).compilerStack, stackFor(0, 50001));
}

TEST(PatternShape, AlternativesAreCountedWithTheCopiesOfARepeat) {
    EXPECT_EQ(shapeOf("a|b|c").alternatives, 2u);
    EXPECT_EQ(shapeOf(R"([|]\|)").alternatives, 0u);
    EXPECT_EQ(shapeOf("a*?b??c+?d*e?").alternatives, 3u) << "lazy repeats";
    EXPECT_EQ(shapeOf("(a|b){3}").alternatives, 3u);
    EXPECT_EQ(shapeOf("((a|b|c){3,5}){2,}").alternatives, 2u * 5 * 3);
    EXPECT_EQ(shapeOf("(a|b){99999}").alternatives, 33333u);
    EXPECT_EQ(shapeOf("(a|b){99999999999999999999999}").alternatives, 33333u);
}

TEST(PatternShape, LookaheadsTakeMemoryForEachState) {
    EXPECT_EQ(shapeOf("(a(?:b(c)))").lookaheadDepth, 0u);
    EXPECT_EQ(shapeOf("(a(?:b(c)))").lookaheadMemory, 0u);
    EXPECT_EQ(shapeOf("(?=a)(?!b)").lookaheadDepth, 1u);
    EXPECT_EQ(shapeOf("(?=a(?!(b)))").lookaheadDepth, 2u);
    EXPECT_GE(shapeOf("(?=a)bcd").lookaheadMemory, 7u * 32);
}

TEST(PatternShape, NumbersThatWouldOverflowAreSeen) {
    struct Case {
        const char* pattern;
        bool isHuge;
    };
    for (const Case& test : {
             Case{"a{9223372036854775807}", false},
             Case{"a{9223372036854775808}", true},
             Case{"a{1,9223372036854775808}", true},
             Case{"a{00000000000000000000000000000001}", false},
             Case{R"((a)\9223372036854775807)", false},
             Case{R"((a)\33333333333333333333)", true},
             Case{R"([\33333333333333333333])", true},
             Case{R"()\33333333333333333333)", false},
             Case{"99999999999999999999999", false},
         }) {
        EXPECT_EQ(shapeOf(test.pattern).hasHugeNumber, test.isHuge) << test.pattern;
    }
}

}  // namespace
