// Whole-string patterns, with the engine spared where the pattern is plain text.
#include "pkgvet/pattern/pattern_list.h"

#include <algorithm>
#include <string_view>

#include "pkgvet/pattern/counting_iterator.h"
#include "pkgvet/pattern/pattern_characters.h"
#include "pkgvet/pattern/sound_pattern.h"

namespace pkgvet {

namespace {

// Trying a lookahead costs as much as its memory; it copies some ten places in the text.
constexpr std::size_t kLookaheadMemoryOfAStep = 1024;

// At each place in the text the polynomial mode clears a mark of each state.
constexpr std::size_t kMarksOfAStep = 256;

// The text that pattern stands for, or nothing when it needs the engine.
std::optional<std::string> plainTextOf(std::string_view pattern) {
    std::string text;
    text.reserve(pattern.size());
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const char c = pattern[i];
        if (isOrdinary(c)) {
            text += c;
        } else if (c == '.') {
            text += kAnyCharacter;
        } else if (c == '\\' && i + 1 < pattern.size() && isEscapable(pattern[i + 1])) {
            text += pattern[++i];
        } else {
            return std::nullopt;
        }
    }
    return text;
}

// Takes what the engine has used off the steps that are left, however it ends.
class StepCount {
public:
    StepCount(const EngineBudget& budget, std::size_t most, std::size_t* steps)
        : budget_(budget), most_(most), steps_(*steps) {}
    StepCount(const StepCount&) = delete;
    StepCount(StepCount&&) = delete;
    StepCount& operator=(const StepCount&) = delete;
    StepCount& operator=(StepCount&&) = delete;
    ~StepCount() { steps_ -= most_ - budget_.steps; }

private:
    const EngineBudget& budget_;
    const std::size_t most_;
    std::size_t& steps_;
};

}  // namespace

WholePattern::WholePattern(const std::string& pattern) : text_(pattern), plain_(false) {
    if (std::optional<std::string> plain = plainTextOf(pattern)) {
        text_ = std::move(*plain);
        plain_ = true;
    }
}

bool WholePattern::matches(const std::string& text) {
    // In either mode.
    std::size_t steps = 2 * kMaxSteps;
    return matches(text, &steps);
}

bool WholePattern::matches(const std::string& text, std::size_t* steps) {
    if (plain_) {
        return matchesPlainText(text);
    }
    compile();
    return matchesCompiled(text, steps);
}

std::optional<std::string> WholePattern::fault() {
    if (plain_ || isSurelySound(text_)) {
        return std::nullopt;
    }
    try {
        matches(std::string());
    } catch (const std::regex_error& error) {
        return error.what();
    }
    return std::nullopt;
}

// The two modes give the same answers, so the second is tried where the first gives up. The
// polynomial mode comes first: it does not recurse for each character, and takes no exponential
// time on a pattern that a stranger chose. On some patterns with thousands of states it takes too
// many steps all the same, while the backtracking mode is quick.
bool WholePattern::matchesCompiled(const std::string& text, std::size_t* steps) {
    if (polynomial_) {
        try {
            return run(*polynomial_, text, shape_.states / kMarksOfAStep, steps);
        } catch (const std::regex_error&) {
            if (!backtracking_) {
                backtracking_.emplace(text_, std::regex::ECMAScript);
            }
        }
    }
    return run(*backtracking_, text, 0, steps);
}

bool WholePattern::run(const std::regex& regex, const std::string& text, std::size_t stepsOfAPlace,
                       std::size_t* steps) const {
    const std::size_t unseen = shape_.alternatives * engineFrames().alternative;
    const std::size_t stack = kMaxEngineStack - std::min(unseen, kMaxEngineStack);
    const std::size_t ofLookaheads = shape_.lookaheadMemory / kLookaheadMemoryOfAStep;
    const std::size_t most = std::min(kMaxSteps, *steps);
    EngineBudget budget{most, kStepsOfACopy + ofLookaheads, stepsOfAPlace,
                        EngineBudget::currentFrame() - stack};
    const StepCount count(budget, most, steps);
    const CountingIterator begin(text.data(), &budget);
    const CountingIterator end(text.data() + text.size(), &budget);
    return std::regex_match(begin, end, regex);
}

bool WholePattern::matchesPlainText(const std::string& text) const {
    return std::equal(
        text.begin(), text.end(), text_.begin(), text_.end(), [](char actual, char expected) {
            return expected == kAnyCharacter ? !isLineEnd(actual) : actual == expected;
        });
}

// The polynomial mode of libstdc++ refuses back-references, which leave only the backtracking mode.
void WholePattern::compile() {
    if (polynomial_ || backtracking_) {
        return;
    }
    shape_ = shapeOf(text_);
    if (shape_.hasHugeNumber) {
        throw std::regex_error(std::regex_constants::error_complexity);
    }
    if (shape_.compilerStack > kMaxEngineStack ||
        shape_.lookaheadDepth * shape_.lookaheadMemory > kMaxLookaheadMemory) {
        throw std::regex_error(std::regex_constants::error_stack);
    }
    try {
        polynomial_.emplace(text_, std::regex::ECMAScript | std::regex_constants::__polynomial);
    } catch (const std::regex_error& error) {
        if (error.code() != std::regex_constants::error_complexity) {
            throw;
        }
        backtracking_.emplace(text_, std::regex::ECMAScript);
    }
}

PatternList::PatternList(const std::vector<std::string>& patterns)
    : patterns_(patterns.begin(), patterns.end()) {}

bool PatternList::matches(const std::string& text) {
    return std::any_of(patterns_.begin(), patterns_.end(),
                       [&text](WholePattern& pattern) { return pattern.matches(text); });
}

}  // namespace pkgvet
