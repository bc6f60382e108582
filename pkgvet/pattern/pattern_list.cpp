// Whole-string patterns, with the engine spared where the pattern is plain text.
#include "pkgvet/pattern/pattern_list.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace pkgvet {

namespace {

// Stands for "." in plain text. A pattern that holds a line end of its own goes to the engine, so
// the two are never confused.
constexpr char kAnyCharacter = '\n';

// Characters that std::regex gives no meaning, alone or, for the last, behind a backslash.
// Whatever stands in neither list goes to the engine, the safe side.
constexpr std::string_view kOrdinaryPunctuation = " !\"#%&',-/:;<=>@_`~";
constexpr std::string_view kEscapablePunctuation = "!\"#$%&'()*+,-./:;<=>?@[\\]^_`{|}~";

bool isAlphanumeric(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

bool isOrdinary(char c) {
    return isAlphanumeric(c) || kOrdinaryPunctuation.find(c) != std::string_view::npos;
}

// The text that pattern stands for, or nothing when it needs the engine.
std::optional<std::string> plainText(std::string_view pattern) {
    std::string text;
    text.reserve(pattern.size());
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const char c = pattern[i];
        if (isOrdinary(c)) {
            text += c;
        } else if (c == '.') {
            text += kAnyCharacter;
        } else if (c == '\\' && i + 1 < pattern.size() &&
                   kEscapablePunctuation.find(pattern[i + 1]) != std::string_view::npos) {
            text += pattern[++i];
        } else {
            return std::nullopt;
        }
    }
    return text;
}

bool isLineEnd(char c) {
    return c == '\n' || c == '\r';
}

// Walks a text for the engine and counts the looks that it takes, since std::regex has no limit of
// its own. The engine also makes iterators out of nothing, for groups that took no part.
class CountingIterator {
public:
    using iterator_category = std::bidirectional_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    CountingIterator() = default;
    CountingIterator(const char* position, std::size_t* steps)
        : position_(position), steps_(steps) {}

    reference operator*() const {
        count();
        return *position_;
    }
    CountingIterator& operator++() {
        ++position_;
        return *this;
    }
    CountingIterator operator++(int) { return {position_++, steps_}; }
    CountingIterator& operator--() {
        --position_;
        return *this;
    }
    CountingIterator operator--(int) { return {position_--, steps_}; }
    bool operator==(const CountingIterator& other) const {
        count();
        return position_ == other.position_;
    }

private:
    void count() const {
        if (steps_ != nullptr && ++*steps_ > kMaxSteps) {
            throw std::regex_error(std::regex_constants::error_complexity);
        }
    }

    const char* position_ = nullptr;
    std::size_t* steps_ = nullptr;
};

}  // namespace

WholePattern::WholePattern(const std::string& pattern) : text_(pattern), plain_(false) {
    if (std::optional<std::string> plain = plainText(pattern)) {
        text_ = std::move(*plain);
        plain_ = true;
    }
}

bool WholePattern::matches(const std::string& text) {
    if (plain_) {
        return matchesPlainText(text);
    }
    compile();
    return matchesCompiled(text);
}

bool WholePattern::matchesCompiled(const std::string& text) const {
    if (text.size() > (backtracks_ ? kMaxBacktrackingSubjectSize : kMaxSubjectSize)) {
        throw std::regex_error(std::regex_constants::error_stack);
    }
    std::size_t steps = 0;
    const CountingIterator begin(text.data(), &steps);
    const CountingIterator end(text.data() + text.size(), &steps);
    return std::regex_match(begin, end, *regex_);
}

bool WholePattern::matchesPlainText(const std::string& text) const {
    return std::equal(
        text.begin(), text.end(), text_.begin(), text_.end(), [](char actual, char expected) {
            return expected == kAnyCharacter ? !isLineEnd(actual) : actual == expected;
        });
}

// The polynomial mode of libstdc++ gives the answers of the plain one, but walks all alternatives
// side by side: no recursion for each character and no exponential time on a pattern that a
// stranger chose. It refuses back-references, which leave only the plain mode.
void WholePattern::compile() {
    if (regex_) {
        return;
    }
    if (text_.size() > kMaxPatternSize ||
        std::count(text_.begin(), text_.end(), '(') > static_cast<std::ptrdiff_t>(kMaxGroups)) {
        throw std::regex_error(std::regex_constants::error_stack);
    }
    try {
        regex_.emplace(text_, std::regex::ECMAScript | std::regex_constants::__polynomial);
    } catch (const std::regex_error& error) {
        if (error.code() != std::regex_constants::error_complexity) {
            throw;
        }
        regex_.emplace(text_, std::regex::ECMAScript);
        backtracks_ = true;
    }
}

PatternList::PatternList(const std::vector<std::string>& patterns)
    : patterns_(patterns.begin(), patterns.end()) {}

bool PatternList::matches(const std::string& text) {
    return std::any_of(patterns_.begin(), patterns_.end(),
                       [&text](WholePattern& pattern) { return pattern.matches(text); });
}

}  // namespace pkgvet
