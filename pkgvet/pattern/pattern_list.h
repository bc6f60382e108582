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

// The longest pattern that is handed to the engine, and the most opening parentheses in it. The
// compiler of std::regex recurses for each term and, deeper, for each group that nests: measured,
// it overflows the same stack beyond 64,000 terms and between 16,000 and 32,000 groups, and with
// instrumented code at 16,000 and 4,000.
inline constexpr std::size_t kMaxPatternSize = 8192;
inline constexpr std::size_t kMaxGroups = 1024;

// The most looks that the engine may take at a text, some seconds of work. Packages bring patterns
// of their own, and with back-references or nested lookaheads one can be written that never ends.
inline constexpr std::size_t kMaxSteps = 20'000'000;

// One whole-string pattern, std::regex in the ECMAScript grammar. Plain text, that is letters,
// digits, harmless or escaped punctuation and "." as any character but a line end, is compared
// without an engine; any other pattern is compiled once, when it is first tried.
class WholePattern {
public:
    explicit WholePattern(const std::string& pattern);

    // Whether the pattern matches the whole of text. Throws std::regex_error for a pattern that
    // does not compile, each time, for a text or a pattern beyond the bounds above (error_stack)
    // and when the engine gives up (error_complexity).
    bool matches(const std::string& text);

private:
    bool matchesPlainText(const std::string& text) const;
    void compile();
    bool matchesCompiled(const std::string& text) const;

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
