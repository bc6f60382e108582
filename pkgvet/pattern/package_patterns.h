// Patterns that a package brings, such as its own paths where a rule takes them for patterns.
#pragma once

#include <cstddef>
#include <exception>
#include <string>
#include <vector>

namespace pkgvet {

// The most steps that all patterns of a list may take together, a few seconds of work. To compile a
// pattern counts as well: a path such as "[a-z]{90000}" is short and a large automaton.
inline constexpr std::size_t kMaxListSteps = 200'000'000;

// What came of one text.
struct PatternAnswer {
    bool isMatched = false;
    std::exception_ptr error;  // what a pattern threw, in place of an answer

    // Whether a pattern matched. Throws the error if there is one.
    bool get() const;
};

// What PatternList(patterns).matches() gives for each of texts, or throws. Strangers wrote the
// patterns, so that each is compiled once, tried on all texts and dropped, and patterns that are
// plain text are looked up. Where the steps are used up, the texts that are still open have
// std::regex_error (error_complexity).
std::vector<PatternAnswer> matchPackagePatterns(const std::vector<std::string>& patterns,
                                                const std::vector<std::string>& texts);

}  // namespace pkgvet
