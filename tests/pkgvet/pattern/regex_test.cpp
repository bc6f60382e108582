// Searching text with GLib's regular expressions.
#include "pkgvet/pattern/regex.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <stdexcept>

#include "pkgvet/pattern/rule_pattern.h"
#include "tests/support/base/captured_log.h"

namespace {

using pkgvet::kPlainPattern;
using pkgvet::kRulePattern;
using pkgvet::kTextPattern;
using pkgvet::PatternFlags;
using testing::HasSubstr;

constexpr GRegexMatchFlags kNoFlags = kPlainPattern.match;

// An import of ten thousand components takes the engine through all ways of cutting it.
const std::string kImportPattern =
    R"(^[\s;]*import\s+(".+"|\S+\s+\d+(?:\.\d+)*)(?:as\s.+|\/\/.*)?)";

std::string exhaustingImport() {
    std::string line = "import Foo 1";
    for (int i = 0; i < 10000; ++i) {
        line += ".1";
    }
    return line;
}

bool isFound(const std::string& pattern, std::string_view subject,
             const PatternFlags& flags = kPlainPattern) {
    return Regex(pattern, flags.compile, flags.match).match(subject).has_value();
}

// The first group of a match.
std::optional<std::string> firstGroup(const std::string& pattern, std::string_view subject) {
    const auto info = Regex(pattern, kPlainPattern.compile, kPlainPattern.match).match(subject);
    return info ? info->fetch(1) : std::nullopt;
}

// A pattern that matches text and nothing else.
std::string whole(const std::string& text) {
    return std::string("^").append(Regex::escape(text)).append("$");
}

TEST(Regex, FlagsHaveTheirNumbers) {
    EXPECT_EQ(kRulePattern.compile, 0x2000);
    EXPECT_EQ(kRulePattern.match, 0x400);
    EXPECT_EQ(kTextPattern.compile, 0x2000);
    EXPECT_EQ(kTextPattern.match, 0x500000);
    EXPECT_EQ(kPlainPattern.compile, 0);
    EXPECT_EQ(kPlainPattern.match, 0);
}

TEST(Regex, FindsThePatternAnywhereUnlessItAnchorsItself) {
    EXPECT_TRUE(isFound("b", "abc"));
    EXPECT_FALSE(isFound("^b", "abc"));
    EXPECT_FALSE(isFound("b$", "abc"));
    EXPECT_FALSE(isFound("d", "abc"));
    EXPECT_TRUE(isFound("a(?=b)(?:x)?", "abc"));
    EXPECT_FALSE(isFound("a(*COMMIT)x|b", "ab"));
}

TEST(Regex, NotEmptyKeepsAPatternFromMatchingNothing) {
    EXPECT_TRUE(isFound("", "abc", kPlainPattern));
    EXPECT_FALSE(isFound(Regex::escape(""), "abc", kRulePattern));
    EXPECT_FALSE(isFound("x*", "abc", kRulePattern));
    EXPECT_TRUE(isFound("b*", "abc", kRulePattern));
}

TEST(Regex, TextPatternsKnowAllLineEnds) {
    EXPECT_FALSE(isFound("a.b", "a\rb", kTextPattern));
    EXPECT_FALSE(isFound("a.b", "a\nb", kTextPattern));
    EXPECT_TRUE(isFound("a.b", "a\vb", kTextPattern));
    EXPECT_FALSE(isFound("a.b", "a\vb", kPlainPattern)) << "a line end by default";
    EXPECT_TRUE(Regex::matchSimple("^a$", "a\r\n", kTextPattern.compile, kTextPattern.match));
}

TEST(Regex, FlagsOfOneMatchAddToTheStandingOnes) {
    const Regex regex("b*", kPlainPattern.compile, kPlainPattern.match);
    EXPECT_TRUE(regex.match("a"));
    EXPECT_FALSE(regex.match("a", G_REGEX_MATCH_NOTEMPTY));
    const Regex standing("b*", kRulePattern.compile, kRulePattern.match);
    EXPECT_FALSE(standing.match("a", G_REGEX_MATCH_NOTBOL));
}

TEST(Regex, MatchSimpleCompilesAndSearchesInOneGo) {
    EXPECT_TRUE(Regex::matchSimple("b.", "abc", kRulePattern.compile, kRulePattern.match));
    EXPECT_FALSE(Regex::matchSimple("x", "abc", kRulePattern.compile, kRulePattern.match));
    EXPECT_FALSE(Regex::matchSimple("x*", "abc", kRulePattern.compile, kRulePattern.match));
    EXPECT_TRUE(Regex::matchSimple("", "", kPlainPattern.compile, kPlainPattern.match));
}

TEST(Regex, EscapedTextStandsForItself) {
    EXPECT_EQ(Regex::escape("org.example"), R"(org\.example)");
    EXPECT_TRUE(isFound(Regex::escape("org.example"), "x-org.example-y"));
    EXPECT_FALSE(isFound(Regex::escape("org.example"), "orgxexample"));
    EXPECT_EQ(Regex::escape(""), "");
    EXPECT_EQ(Regex::escape("a_b c/d"), "a_b c/d");
    const std::string special = R"(\|()[]{}^$*+?.-)";
    EXPECT_TRUE(isFound(whole(special), special));
}

TEST(Regex, EscapeOfANullTextThrows) {
    const CapturedDescriptor standardError;
    try {
        Regex::escape(std::string_view());
        FAIL() << "nothing was thrown";
    } catch (const std::logic_error& error) {
        EXPECT_STREQ(error.what(), "basic_string: construction from null is not valid");
    }
    EXPECT_THAT(standardError.text(), HasSubstr("g_regex_escape_string: assertion"));
}

TEST(Regex, EscapeKeepsBytesThatAreNotUtf8) {
    struct Case {
        const char* name;
        std::string text;
        std::string expected;
    };
    const Case cases[] = {
        {"Latin-1", "app\xE9", "app\xE9"},
        {"byte that announces more than there is", "\xE9", "\xE9"},
        {"special characters behind such a byte", "\xE9.*\xF0+", "\xE9\\.\\*\xF0\\+"},
        {"valid text around a stray byte", "ж.\xFFж.", "ж\\.\xFFж\\."},
        {"surrogate", "ok\xED\xA0\x80", "ok\xED\xA0\x80"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        EXPECT_EQ(Regex::escape(test.text), test.expected);
        EXPECT_TRUE(isFound(whole(test.text), test.text));
    }
}

TEST(Regex, EscapeQuotesANul) {
    EXPECT_EQ(Regex::escape(std::string_view("a\0.b", 4)), R"(a\0\.b)");
    EXPECT_EQ(Regex::escape(std::string_view("\0", 1)), R"(\0)");
    EXPECT_EQ(Regex::escape(std::string_view("\xE9\0.", 3)), "\xE9\\0\\.");
    EXPECT_EQ(Regex::escape(std::string_view("abc", 2)), "ab");
}

TEST(Regex, BadPatternMatchesNothingWithACriticalMessage) {
    const CapturedDescriptor standardError;
    const Regex regex("a(", kRulePattern.compile, kRulePattern.match);
    EXPECT_EQ(standardError.text(), "");
    EXPECT_FALSE(regex.match("a("));
    EXPECT_FALSE(Regex::matchSimple("[", "[", kPlainPattern.compile, kPlainPattern.match));
    EXPECT_THAT(standardError.text(), HasSubstr("g_regex_match"));
    EXPECT_THAT(standardError.text(), HasSubstr("assertion 'regex != NULL' failed"));
}

TEST(Regex, TextsThatDifferInAByteDiffer) {
    const std::string bytes[] = {"app\xE8", "app\xE9", "app\xEF\xBF\xBD", "app\xC3\xA9", "app\xC3"};
    for (const std::string& pattern : bytes) {
        for (const std::string& subject : bytes) {
            SCOPED_TRACE(testing::PrintToString(pattern) + testing::PrintToString(subject));
            EXPECT_EQ(isFound(whole(pattern), subject, kRulePattern), pattern == subject);
            EXPECT_EQ(Regex::matchSimple(whole(pattern), subject, kRulePattern.compile,
                                         kRulePattern.match),
                      pattern == subject);
        }
    }
}

TEST(Regex, PatternThatIsNotUtf8IsTakenAsBytes) {
    EXPECT_TRUE(isFound("^a\xFF$", "a\xFF"));
    EXPECT_TRUE(isFound("^\xFF?..$", "ж")) << "two bytes of a valid subject";
    EXPECT_FALSE(isFound("^\xFF?.$", "ж"));
    EXPECT_TRUE(isFound("^[\xE8\xE9]$", "\xE9"));
    EXPECT_TRUE(isFound("^[^\xE8]$", "\xE9"));
    EXPECT_TRUE(isFound("(?i)^A\xFF$", "a\xFF"));
}

TEST(Regex, NullPatternIsABadPattern) {
    const CapturedDescriptor standardError;
    const Regex regex(std::string_view(), kPlainPattern.compile, kPlainPattern.match);
    EXPECT_FALSE(regex.match(""));
    EXPECT_THAT(standardError.text(), HasSubstr("assertion 'regex != NULL' failed"));
}

TEST(Regex, EngineThatGivesUpHasNotSaidNo) {
    const std::string line = exhaustingImport();
    const Regex regex(kImportPattern, kTextPattern.compile, kTextPattern.match);
    EXPECT_TRUE(regex.match("import Foo 1.1.1"));
    const auto code = [](const auto& match) {
        try {
            match();
        } catch (const std::regex_error& error) {
            return error.code();
        }
        return std::regex_constants::error_type();
    };
    EXPECT_EQ(code([&] { regex.match(line); }), std::regex_constants::error_complexity);
    EXPECT_EQ(code([&] {
                  Regex::matchSimple(kImportPattern, line, kTextPattern.compile,
                                     kTextPattern.match);
              }),
              std::regex_constants::error_complexity);
}

TEST(Regex, SubjectThatIsNotUtf8IsTakenAsBytes) {
    const Regex regex("^a(.+)b$", kTextPattern.compile, kTextPattern.match);
    for (const std::string between : {"\xFF", "ж", "ж\xFF", "\xE2\x82"}) {
        SCOPED_TRACE(testing::PrintToString(between));
        const auto match = regex.match("a" + between + "b");
        ASSERT_TRUE(match);
        EXPECT_EQ(match->fetch(1), between);
    }
    EXPECT_TRUE(isFound("^.{3}$", "ж\xFF")) << "three bytes";
    EXPECT_FALSE(isFound("^a$", "a\xC3"));
    EXPECT_TRUE(Regex::matchSimple("b$", "\xF8\x88 b", kPlainPattern.compile, kNoFlags));
}

TEST(Regex, SubjectOfBytesFindsTheFlagsOfThePattern) {
    EXPECT_FALSE(isFound("x*", "\xFF", kRulePattern));
    EXPECT_TRUE(isFound("x*", "\xFF", kPlainPattern));
    EXPECT_FALSE(isFound("\xFF?a.b", "a\rb", kTextPattern));
    EXPECT_FALSE(isFound("a.b", "a\rb\xFF", kTextPattern));
    EXPECT_TRUE(isFound("a.b", "a\vb\xFF", kTextPattern));
    const Regex caseless("ABC", G_REGEX_CASELESS, kNoFlags);
    EXPECT_TRUE(caseless.match("abc\xFF"));
    EXPECT_TRUE(caseless.match("abc"));
}

TEST(Regex, PatternThatBytesCannotMatchFailsAsABadOne) {
    const CapturedDescriptor standardError;
    const Regex regex(R"(\x{416})", kPlainPattern.compile, kPlainPattern.match);
    EXPECT_TRUE(regex.match("Ж"));
    EXPECT_EQ(standardError.text(), "");
    EXPECT_FALSE(regex.match("Ж\xFF"));
    EXPECT_THAT(standardError.text(), HasSubstr("assertion 'regex != NULL' failed"));
}

TEST(Regex, ValidUtf8IsOneCharacterEach) {
    EXPECT_TRUE(isFound("^.$", "ж"));
    EXPECT_EQ(firstGroup("(.)$", "aж"), "ж");
}

TEST(Regex, SubjectIsSearchedUpToItsFirstNul) {
    EXPECT_FALSE(isFound("b", std::string_view("a\0b", 3)));
    EXPECT_TRUE(isFound("^a$", std::string_view("a\0b", 3)));
    EXPECT_EQ(firstGroup("a(.*)", std::string_view("ac\0b", 4)), "c");
    EXPECT_TRUE(isFound("^ж$", std::string_view("ж\0\xFF", 4))) << "bytes behind it do not count";
    EXPECT_TRUE(
        Regex::matchSimple("^a$", std::string_view("a\0b", 3), kPlainPattern.compile, kNoFlags));
}

TEST(Regex, SubjectIsReadByItsLength) {
    EXPECT_FALSE(isFound("c", std::string_view("abc", 2)));
    EXPECT_TRUE(isFound("^$", std::string_view()));
}

TEST(Regex, MatchSimpleOfANullSubjectIsACriticalMessage) {
    const CapturedDescriptor standardError;
    EXPECT_FALSE(Regex::matchSimple("", std::string_view(), kPlainPattern.compile, kNoFlags));
    EXPECT_THAT(standardError.text(), HasSubstr("assertion 'string != NULL' failed"));
}

TEST(RulePattern, CompilesWithTheFlagsOfItsKind) {
    EXPECT_FALSE(pkgvet::rulePattern("x*").match("abc"));
    EXPECT_TRUE(pkgvet::rulePattern("b*").match("abc"));
    EXPECT_TRUE(pkgvet::textPattern("x*").match("abc"));
    EXPECT_TRUE(pkgvet::textPattern("a.b").match("a\vb"));
    EXPECT_FALSE(pkgvet::rulePattern("a.b").match("a\vb")) << "a line end by default";
}

}  // namespace
