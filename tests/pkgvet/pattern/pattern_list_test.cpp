// Compile-once lists of whole-string patterns.
#include "pkgvet/pattern/pattern_list.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>

namespace {

using pkgvet::PatternList;
using pkgvet::WholePattern;
using namespace std::regex_constants;

// What came of a match: an answer or the error that was thrown.
struct Outcome {
    bool matched = false;
    int error = -1;
    bool operator==(const Outcome&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Outcome& outcome) {
    return outcome.error < 0 ? stream << outcome.matched : stream << "error " << outcome.error;
}

Outcome outcomeOf(const std::function<bool()>& match) {
    try {
        return {match(), -1};
    } catch (const std::regex_error& error) {
        return {false, static_cast<int>(error.code())};
    }
}

// The plain reading.
Outcome expected(const std::string& pattern, const std::string& text) {
    return outcomeOf([&] { return std::regex_match(text, std::regex(pattern)); });
}

Outcome actual(const std::string& pattern, const std::string& text) {
    return outcomeOf([&] { return WholePattern(pattern).matches(text); });
}

std::string repeated(const std::string& text, std::size_t count) {
    std::string result;
    for (std::size_t i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

// Pieces that patterns are made of, with those that only make sense next to others.
const std::vector<std::string> kPieces = {
    "a",     "b",        "lib",   ".so",         ".",     R"(\.)", R"(\+)", R"(\-)",   R"(\/)",
    R"(\_)", R"(\))",    R"(\ )", "*",           "+",     "?",     "*?",    "+?",      "??",
    "(",     ")",        "(?:",   "|",           "[ab]",  "[^a]",  "[a-z]", "[",       "]",
    "{2}",   "{1,}",     "{0,2}", "{",           "}",     "^",     "$",     R"(\d)",   R"(\w)",
    R"(\S)", R"(\b)",    R"(\B)", R"(\1)",       R"(\n)", R"(\r)", R"(\0)", R"(\x41)", "(?=",
    "(?!",   "\n",       "\r",    "-",           "/",     "@",     "~",     " ",       ",",
    "\xFF",  "\xD0\xB6", "_",     "[[:alpha:]]", "()",    "(a)",   "(b|)",  "(a*)",    "([ab])",
    "x",     "1",        "#",     "'",           "\"",    ":",     R"(\q)", R"(\e)",   R"(\a)",
    R"(\\)", "\\",       "%",     "`",           "=",     "<",     "!"};

const std::vector<std::string> kSubjectPieces = {
    "a",           "b",        "lib", ".so", ".",
    "+",           "-",        "/",   "_",   ")",
    " ",           "(",        "*",   "?",   "[",
    "]",           "{",        "}",   "^",   "$",
    "1",           "A",        "\n",  "\r",  std::string(1, '\0'),
    "\xFF",        "\xD0\xB6", "\\",  "|",   "@",
    "~",           ",",        "x",   "#",   "'",
    "\"",          ":",        "q",   "2",   "\x85",
    "\xE2\x80\xA8"};

std::string randomText(const std::vector<std::string>& pieces, std::size_t most,
                       std::mt19937* random) {
    std::string text;
    for (std::size_t left = (*random)() % (most + 1); left > 0; --left) {
        text += pieces[(*random)() % pieces.size()];
    }
    return text;
}

// Most generated subjects have nothing to do with their pattern, so some are made out of it.
std::string subjectFor(const std::string& pattern, std::mt19937* random) {
    if ((*random)() % 2 == 0) {
        return randomText(kSubjectPieces, 6, random);
    }
    std::string subject;
    for (const char c : pattern) {
        if (c == '.' || c == '\\') {
            subject += (*random)() % 3 == 0 ? kSubjectPieces[(*random)() % kSubjectPieces.size()]
                                            : std::string(c == '.' ? 1 : 0, c);
        } else if ((*random)() % 10 != 0) {
            subject += c;
        }
    }
    return subject;
}

void expectEqual(const std::string& pattern, const std::string& text) {
    ASSERT_EQ(actual(pattern, text), expected(pattern, text))
        << testing::PrintToString(pattern) << " against " << testing::PrintToString(text);
}

TEST(WholePattern, AnswersAsStdRegexOnGeneratedPatterns) {
    std::mt19937 random(20240229);
    for (int i = 0; i < 8000 && !testing::Test::HasFatalFailure(); ++i) {
        const std::string pattern = randomText(kPieces, 7, &random);
        for (int k = 0; k < 6 && !testing::Test::HasFatalFailure(); ++k) {
            expectEqual(pattern, subjectFor(pattern, &random));
        }
    }
}

TEST(WholePattern, AnswersAsStdRegexOnGeneratedPlainText) {
    const std::vector<std::string> pieces = {"a", "b1", ".", R"(\.)", R"(\+)", "-", "/", "Lib",
                                             "_", " ",  ":", R"(\\)", R"(\()", "@", ","};
    std::mt19937 random(7);
    for (int i = 0; i < 6000 && !testing::Test::HasFatalFailure(); ++i) {
        const std::string pattern = randomText(pieces, 6, &random);
        for (int k = 0; k < 6 && !testing::Test::HasFatalFailure(); ++k) {
            expectEqual(pattern, subjectFor(pattern, &random));
        }
    }
}

TEST(WholePattern, AnswersAsStdRegexOnEachByteAlone) {
    for (int c = 0; c < 256; ++c) {
        const std::string byte(1, static_cast<char>(c));
        for (const std::string& pattern : {byte, "\\" + byte, "a" + byte, std::string("."),
                                           "[" + byte + "]", "\\" + byte + "1"}) {
            for (const std::string& text :
                 {byte, "a" + byte, "\\" + byte, std::string("a"), std::string()}) {
                expectEqual(pattern, text);
            }
        }
    }
}

TEST(WholePattern, DotIsAnyCharacterButALineEnd) {
    for (int c = 0; c < 256; ++c) {
        const bool isLineEnd = c == '\n' || c == '\r';
        const std::string byte(1, static_cast<char>(c));
        EXPECT_EQ(WholePattern(".").matches(byte), !isLineEnd) << c;
        EXPECT_EQ(WholePattern("(?:.)").matches(byte), !isLineEnd) << c;
    }
    EXPECT_FALSE(WholePattern(".").matches(""));
    EXPECT_FALSE(WholePattern(".").matches("ab"));
}

TEST(WholePattern, BadPatternThrowsEachTime) {
    WholePattern pattern("a(");
    EXPECT_EQ(outcomeOf([&] { return pattern.matches("a"); }).error, error_paren);
    EXPECT_EQ(outcomeOf([&] { return pattern.matches("b"); }).error, error_paren);
    EXPECT_EQ(actual("a(", std::string(100000, 'a')).error, error_paren);
}

TEST(WholePattern, BackReferencesAreFollowed) {
    EXPECT_TRUE(WholePattern(R"((a+)-\1)").matches("aa-aa"));
    EXPECT_FALSE(WholePattern(R"((a+)-\1)").matches("aa-a"));
}

TEST(WholePattern, TextsBeyondTheBoundsThrow) {
    struct Case {
        const char* name;
        std::string pattern;
        std::size_t bound;
    };
    const Case cases[] = {
        {"any text", ".*", pkgvet::kMaxSubjectSize},
        {"alternatives", "(a|b|ab)*", pkgvet::kMaxSubjectSize},
        {"nested repeats", "((a*)*)*", pkgvet::kMaxSubjectSize},
        {"classes", "([a-z]|[^b])+", pkgvet::kMaxSubjectSize},
        {"back-reference", R"(((a|b)\2?)*)", pkgvet::kMaxBacktrackingSubjectSize},
        {"nested back-reference", R"((((a)|b)\3?)*)", pkgvet::kMaxBacktrackingSubjectSize},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        EXPECT_EQ(actual(test.pattern, std::string(test.bound, 'a')), (Outcome{true, -1}));
        EXPECT_EQ(actual(test.pattern, std::string(test.bound + 1, 'a')).error, error_stack);
    }
}

TEST(WholePattern, PlainTextHasNoBounds) {
    const std::string text(200000, 'a');
    EXPECT_TRUE(WholePattern(text).matches(text));
    EXPECT_TRUE(WholePattern(std::string(200000, '.')).matches(text));
    EXPECT_FALSE(WholePattern("a").matches(text));
}

TEST(WholePattern, PatternsBeyondTheBoundsThrow) {
    const std::size_t size = pkgvet::kMaxPatternSize;
    const std::size_t groups = pkgvet::kMaxGroups;
    EXPECT_EQ(actual(repeated("a*", size / 2), "a"), (Outcome{true, -1}));
    EXPECT_EQ(actual(std::string(size - 1, 'a') + "+", std::string(size, 'a')),
              (Outcome{true, -1}));
    EXPECT_EQ(actual(std::string(size, 'a') + "+", "a").error, error_stack);
    EXPECT_EQ(actual(repeated("(", groups) + "a" + repeated(")", groups), "a"),
              (Outcome{true, -1}));
    EXPECT_EQ(actual(repeated("(", groups + 1) + "a" + repeated(")", groups + 1), "a").error,
              error_stack);
}

TEST(WholePattern, EngineThatWouldNotEndGivesUp) {
    const std::string text = std::string(pkgvet::kMaxBacktrackingSubjectSize - 1, 'a') + "b";
    EXPECT_EQ(actual(R"((a*)*(a*)*\1c)", text).error, error_complexity);
    EXPECT_EQ(actual("((?=((?=((?=.*c|.*b)a)*b)a)*b)a)*c", text).error, error_complexity);
}

TEST(WholePattern, PatternsThatAreHardForABacktrackingEngineAreAnswered) {
    const std::string text = std::string(5000, 'a') + "b";
    EXPECT_EQ(actual("(a*)*c", text), (Outcome{false, -1}));
    EXPECT_EQ(actual("(a|aa)+b", text), (Outcome{true, -1}));
    EXPECT_EQ(actual("(.*)(.*)(.*)(.*)c", text), (Outcome{false, -1}));
}

TEST(PatternList, IsTriedInOrderUpToTheFirstHit) {
    PatternList list({"plain", "b+", "(", "c"});
    EXPECT_TRUE(list.matches("plain"));
    EXPECT_TRUE(list.matches("bbb"));
    EXPECT_THROW(list.matches("c"), std::regex_error);
    EXPECT_THROW(list.matches("c"), std::regex_error);
    EXPECT_TRUE(list.matches("plain"));
}

TEST(PatternList, EmptyListMatchesNothing) {
    EXPECT_FALSE(PatternList({}).matches(""));
}

// The plain reading of a list: the first element that matches or throws decides.
Outcome expectedOfList(const std::vector<std::string>& patterns, const std::string& text) {
    for (const std::string& pattern : patterns) {
        const Outcome outcome = expected(pattern, text);
        if (outcome.matched || outcome.error >= 0) {
            return outcome;
        }
    }
    return {};
}

TEST(PatternList, AnswersAsThePlainReadingOnGeneratedLists) {
    std::mt19937 random(41);
    for (int i = 0; i < 500; ++i) {
        std::vector<std::string> patterns;
        for (std::size_t left = random() % 6; left > 0; --left) {
            patterns.push_back(randomText(kPieces, 3, &random));
        }
        PatternList list(patterns);
        for (int k = 0; k < 8; ++k) {
            const std::string text = randomText(kSubjectPieces, 3, &random);
            EXPECT_EQ(outcomeOf([&] { return list.matches(text); }), expectedOfList(patterns, text))
                << testing::PrintToString(patterns) << testing::PrintToString(text);
        }
    }
}

}  // namespace
