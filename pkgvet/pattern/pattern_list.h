// A list of whole-string patterns, made once by a rule that tries it on many texts.
#pragma once

#include <cstddef>
#include <optional>
#include <regex>
#include <string>
#include <vector>

#include "pkgvet/pattern/pattern_shape.h"

namespace pkgvet {

// The most steps that the engine may take on one text, less than a second of work: a look at the
// text is one, a copy of a place in it, of which each group has two, several. Packages bring
// patterns of their own, and one can be written that never ends.
inline constexpr std::size_t kMaxSteps = 50'000'000;
inline constexpr std::size_t kStepsOfACopy = 5;

// Stands for "." in plain text. A pattern that holds a line end of its own goes to the engine, so
// the two are never confused.
inline constexpr char kAnyCharacter = '\n';

// What kAnyCharacter does not stand for.
constexpr bool isLineEnd(char c) {
    return c == '\n' || c == '\r';
}

// One whole-string pattern, std::regex in the ECMAScript grammar. Plain text, that is letters,
// digits, harmless or escaped punctuation and "." as any character but a line end, is compared
// without an engine; any other pattern is compiled once, when it is first tried.
class WholePattern {
public:
    explicit WholePattern(const std::string& pattern);

    // Whether the pattern matches the whole of text. Throws std::regex_error for a pattern that
    // does not compile, each time, where the engine would overflow the stack (error_stack), see
    // pattern_shape.h, and where it gives up (error_complexity).
    bool matches(const std::string& text);
    // The same with no more than *steps, which become fewer by those that were taken.
    bool matches(const std::string& text, std::size_t* steps);

    // The text that a pattern of plain text stands for, with kAnyCharacter in it; null for others.
    const std::string* plainText() const { return plain_ ? &text_ : nullptr; }

    // Why the pattern cannot be tried on any text, in the words of the engine; nothing where it
    // can.
    std::optional<std::string> fault();

private:
    bool matchesPlainText(const std::string& text) const;
    void compile();
    bool matchesCompiled(const std::string& text, std::size_t* steps);
    bool run(const std::regex& regex, const std::string& text, std::size_t stepsOfAPlace,
             std::size_t* steps) const;

    std::string text_;  // the pattern, or the plain text that it stands for
    bool plain_;
    PatternShape shape_;
    // The pattern in the two modes of the engine, which are named for how they work: the first not
    // for patterns with back-references, the second made where the first is missing or gave up.
    std::optional<std::regex> polynomial_;
    std::optional<std::regex> backtracking_;
};

// Answers as matchesAnyPattern does, the moment at which a bad pattern throws included: when the
// walk first gets to it. Keeps a copy of the patterns, and is for one thread.
class PatternList {
public:
    explicit PatternList(const std::vector<std::string>& patterns);

    // Whether a pattern of the list matches the whole of text, tried in order up to the first hit.
    bool matches(const std::string& text);

private:
    std::vector<WholePattern> patterns_;
};

}  // namespace pkgvet
