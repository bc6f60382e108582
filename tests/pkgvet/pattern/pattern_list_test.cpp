// Compile-once lists of whole-string patterns.
#include "pkgvet/pattern/pattern_list.h"

#include <gtest/gtest.h>
#include <pthread.h>

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

std::string nested(const std::string& opening, std::size_t depth) {
    return repeated(opening, depth) + "a" + repeated(")", depth);
}

// The plain engine overflows the ordinary stack sooner in code that is not optimized.
Outcome onLargeStack(const std::function<Outcome()>& match) {
    struct Call {
        const std::function<Outcome()>* match;
        Outcome outcome;
    } call = {&match, {}};
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, std::size_t{512} << 20);
    pthread_t thread;
    const auto run = [](void* argument) -> void* {
        Call& inThread = *static_cast<Call*>(argument);
        inThread.outcome = (*inThread.match)();
        return nullptr;
    };
    EXPECT_EQ(pthread_create(&thread, &attributes, run, &call), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    return call.outcome;
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

TEST(WholePattern, TellsWhyItCannotBeUsed) {
    for (const char* sound : {"", "lib", "lib.*", R"((a)\1)"}) {
        EXPECT_EQ(WholePattern(sound).fault(), std::nullopt) << sound;
    }
    try {
        std::regex unused("a(");
        FAIL() << "the engine takes the pattern";
    } catch (const std::regex_error& error) {
        EXPECT_EQ(WholePattern("a(").fault(), error.what());
    }
}

TEST(WholePattern, BackReferencesAreFollowed) {
    EXPECT_TRUE(WholePattern(R"((a+)-\1)").matches("aa-aa"));
    EXPECT_FALSE(WholePattern(R"((a+)-\1)").matches("aa-a"));
}

// Patterns and texts that the plain engine survives, which an earlier bound on their size or on the
// number of parentheses refused.
// The frames of sanitized code are so large that the bounds act sooner than here.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kHasUsualFrames = false;
#else
constexpr bool kHasUsualFrames = true;
#endif

TEST(WholePattern, AnswersAsStdRegexOnLargePatternsAndTexts) {
    if (!kHasUsualFrames) {
        GTEST_SKIP() << "sanitized code reaches the bounds with smaller patterns";
    }
    const std::string a20000(20000, 'a');
    struct Case {
        const char* name;
        std::string pattern;
        std::string text;
    };
    const Case cases[] = {
        {"groups in a row", repeated("(a)", 2000), std::string(2000, 'a')},
        {"empty groups in a row", repeated("()", 5000) + "a", "a"},
        {"escaped parentheses", repeated(R"(\()", 5000) + "+", std::string(5000, '(')},
        {"parentheses in brackets", repeated("[(]", 5000), std::string(5000, '(')},
        {"parentheses in a bracket", "[" + std::string(20000, '(') + "]", "("},
        {"groups in one another", nested("(", 1900), "a"},
        {"other groups in one another", nested("(?:", 1900), "b"},
        {"lookaheads in one another", nested("(?=", 300) + "a", "a"},
        {"long row", std::string(8300, 'a') + "+", std::string(8301, 'a')},
        {"long row of repeats", repeated("a*", 8300), std::string(5, 'a')},
        {"long row of options", repeated("a?", 8300), std::string(5, 'a')},
        {"alternatives", repeated("b|", 5000) + "c", "c"},
        {"row behind a fault", "a)" + repeated("(", 100000), "a"},
        {"too many states", repeated("a?", 60000), "a"},
        {"too many copies", "((a{100}){100}){100}", "a"},
        {"lazy options", repeated("a??", 4000), std::string(5, 'a')},
        {"any text", ".*", a20000},
        {"classes", "([a-z]|[^b])+", a20000},
        {"class and rest", "[a-z]+b", a20000},
        {"repeats in one another", "((a*)*)*", a20000},
        {"back-reference", R"(((a|b)\2?)*)", std::string(2500, 'a')},
        {"other back-reference", R"((a+)\1)", std::string(4000, 'a')},
        {"options that take turns", "(?:a?){2000}", std::string(2000, 'a')},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        const auto plain = onLargeStack([&] { return expected(test.pattern, test.text); });
        EXPECT_EQ(onLargeStack([&] { return actual(test.pattern, test.text); }), plain);
    }
}

TEST(WholePattern, WhatTheEngineCannotCompileThrows) {
    const pkgvet::EngineFrames frames = pkgvet::engineFrames();
    const std::size_t terms = pkgvet::kMaxEngineStack / frames.term;
    const std::size_t groups = pkgvet::kMaxEngineStack / frames.group;
    struct Case {
        const char* name;
        std::string pattern;
        int error;
    };
    const Case cases[] = {
        {"row", std::string(terms - 1, 'b') + "*", -1},
        {"longer row", std::string(terms, 'b') + "b*", error_stack},
        {"nest", nested("(", groups - 1), -1},
        {"deeper nest", nested("(", groups + 1), error_stack},
        {"nest of lookaheads", nested("(?=", 5000), error_stack},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        const auto outcome = onLargeStack([&] { return actual(test.pattern, "c"); });
        EXPECT_EQ(outcome, (Outcome{false, test.error}));
    }
}

// At such a number the engine does what is not defined.
TEST(WholePattern, NumbersThatTheEngineCannotHoldThrow) {
    const std::string digits(30, '9');
    EXPECT_EQ(actual("a{" + digits + "}", "a").error, error_complexity);
    EXPECT_EQ(actual("(a)\\" + digits, "a").error, error_complexity);
}

TEST(WholePattern, BackReferencesThatWouldOverflowTheStackThrow) {
    EXPECT_EQ(actual(R"(((a|b)\2?)*)", std::string(100000, 'a')).error, error_stack);
}

TEST(WholePattern, TextsMayBeOfAnySize) {
    const std::string text(200000, 'a');
    EXPECT_EQ(actual("[a-z]*", text), (Outcome{true, -1}));
    EXPECT_EQ(actual("(a|b|ab)*", text), (Outcome{true, -1}));
    EXPECT_EQ(actual("b.*", text), (Outcome{false, -1}));
}

TEST(WholePattern, PlainTextHasNoBounds) {
    const std::string text(200000, 'a');
    EXPECT_TRUE(WholePattern(text).matches(text));
    EXPECT_TRUE(WholePattern(std::string(200000, '.')).matches(text));
    EXPECT_FALSE(WholePattern("a").matches(text));
}

TEST(WholePattern, EngineThatWouldNotEndGivesUp) {
    const std::string text = std::string(1000, 'a') + "b";
    EXPECT_EQ(actual(R"((a*)*(a*)*\1c)", text).error, error_complexity);
    EXPECT_EQ(actual("((?=((?=((?=.*c|.*b)a)*b)a)*b)a)*c", text).error, error_complexity);
    EXPECT_EQ(actual("(?:" + repeated("(a?)", 1000) + "){1,3}c", text).error, error_complexity);
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
