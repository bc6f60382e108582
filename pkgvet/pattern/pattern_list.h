// A list of whole-string patterns, made once by a rule that tries it on many texts.
#pragma once

#include <cstddef>
#include <optional>
#include <regex>
#include <string>
#include <vector>

namespace pkgvet {

// The longest text that is handed to the std::regex engine, and the longest where a pattern refers
// back to a group of its own. The engine backtracks for the latter only, by one recursion or more
// for each character: measured, it overflows a stack of 8 MiB at 5,500 characters for awkward
// patterns and at 25,000 for simple ones.
inline constexpr std::size_t kMaxSubjectSize = 16384;
inline constexpr std::size_t kMaxBacktrackingSubjectSize = 1024;

// The most opening parentheses of a pattern. The compiler of std::regex recurses for each one that
// nests, and overflows the same stack between 16,000 and 32,000.
inline constexpr std::size_t kMaxGroups = 1024;

// One whole-string pattern, std::regex in the ECMAScript grammar. Plain text, that is letters,
// digits, harmless or escaped punctuation and "." as any character but a line end, is compared
// without an engine; any other pattern is compiled once, when it is first tried.
class WholePattern {
public:
    explicit WholePattern(const std::string& pattern);

    // Whether the pattern matches the whole of text. Throws std::regex_error for a pattern that
    // does not compile, each time, and (error_stack) for a text beyond the bounds above.
    bool matches(const std::string& text);

private:
    bool matchesPlainText(const std::string& text) const;
    void compile();

    std::string text_;  // the pattern, or the plain text that it stands for
    bool plain_;
    bool backtracks_ = false;
    std::optional<std::regex> regex_;
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
