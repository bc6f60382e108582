// The ways in which the rules compile GRegex patterns.
#pragma once

#include <glib.h>

#include <string>
#include <string_view>

#include "pkgvet/pattern/regex.h"

namespace pkgvet {

// Given together to a Regex, whose standing flags they become.
struct PatternFlags {
    GRegexCompileFlags compile;
    GRegexMatchFlags match;
};

// For names and paths.
inline constexpr PatternFlags kRulePattern = {G_REGEX_OPTIMIZE, G_REGEX_MATCH_NOTEMPTY};
// For the text of sandbox keys and of QML files.
inline constexpr PatternFlags kTextPattern = {G_REGEX_OPTIMIZE, G_REGEX_MATCH_NEWLINE_ANYCRLF};
// For the grammars of background tasks, intents and conditions.
inline constexpr PatternFlags kPlainPattern = {static_cast<GRegexCompileFlags>(0),
                                               static_cast<GRegexMatchFlags>(0)};

// Patterns of the three kinds. As with Regex, pattern is read up to its terminating NUL, so that it
// has to be a literal or the content of a string.
inline Regex rulePattern(std::string_view pattern) {
    return Regex(pattern, kRulePattern.compile, kRulePattern.match);
}
inline Regex textPattern(std::string_view pattern) {
    return Regex(pattern, kTextPattern.compile, kTextPattern.match);
}
inline Regex plainPattern(std::string_view pattern) {
    return Regex(pattern, kPlainPattern.compile, kPlainPattern.match);
}

// Whether pattern, which is compiled with flags, is found in text. For patterns that are tried
// once. Both texts are read up to their terminating NUL.
inline bool isPatternFound(std::string_view pattern, const std::string& text,
                           const PatternFlags& flags) {
    return Regex::matchSimple(pattern, text, flags.compile, flags.match);
}

}  // namespace pkgvet
