// A list of patterns against the engine that stands behind it: the first line of the input is the
// text, and each other line a pattern.
#include "pkgvet/pattern/patterns.h"

#include <regex>

#include "fuzz/fuzz_target.h"
#include "pkgvet/pattern/counting_iterator.h"
#include "pkgvet/pattern/pattern_list.h"
#include "pkgvet/pattern/pattern_shape.h"
#include "pkgvet/pattern/sound_pattern.h"

namespace {

// Enough to tell one construct of the grammar from another, and little enough for the plain engine
// in its other mode, which takes time and stack without a bound.
constexpr std::size_t kMostBytes = 48;
constexpr std::size_t kMostSteps = 500'000;

enum class Answer { No, Yes, Refused, TooMuch };

Answer answerOf(const std::regex_error& error) {
    const bool gaveUp = error.code() == std::regex_constants::error_complexity ||
                        error.code() == std::regex_constants::error_stack ||
                        error.code() == std::regex_constants::error_space;
    return gaveUp ? Answer::TooMuch : Answer::Refused;
}

// The plain reading, by steps that are counted.
Answer expectedAnswer(const std::string& pattern, const std::string& text) {
    // At such a number the engine does what is not defined.
    if (pkgvet::shapeOf(pattern).hasHugeNumber) {
        return Answer::TooMuch;
    }
    pkgvet::EngineBudget budget{kMostSteps, 1, 0,
                                pkgvet::EngineBudget::currentFrame() - (1U << 20U)};
    try {
        const std::regex regex(pattern);
        const pkgvet::CountingIterator begin(text.data(), &budget);
        const pkgvet::CountingIterator end(text.data() + text.size(), &budget);
        return std::regex_match(begin, end, regex) ? Answer::Yes : Answer::No;
    } catch (const std::regex_error& error) {
        return answerOf(error);
    }
}

Answer actualAnswer(const std::string& pattern, const std::string& text) {
    try {
        return pkgvet::WholePattern(pattern).matches(text) ? Answer::Yes : Answer::No;
    } catch (const std::regex_error& error) {
        return answerOf(error);
    }
}

}  // namespace

void pkgvet::fuzz::run(std::string_view input) {
    std::vector<std::string> patterns = linesOf(input.substr(0, 4 * kMostBytes));
    if (patterns.empty() || patterns.front().size() > kMostBytes) {
        return;
    }
    const std::string text = patterns.front();
    patterns.erase(patterns.begin());
    std::vector<std::string> tried;
    bool isMatched = false;
    for (const std::string& pattern : patterns) {
        const Answer expected = expectedAnswer(pattern, text);
        const Answer actual = actualAnswer(pattern, text);
        expect(expected != Answer::Refused || !isSurelySound(pattern),
               "a pattern that the engine refuses is not taken for sound");
        if (expected == Answer::TooMuch || actual == Answer::TooMuch) {
            continue;
        }
        expect(actual == expected, "a pattern has the answer of the plain engine");
        if (actual != Answer::Refused) {
            tried.push_back(pattern);
            isMatched = isMatched || actual == Answer::Yes;
        }
    }
    expect(PatternList(tried).matches(text) == isMatched, "a list matches where a pattern does");
    expect(matchesAnyPattern(tried, text) == isMatched, "so does a list that is not kept");
}
