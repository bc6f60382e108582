// The sets of GRegex flags that the rules use.
#pragma once

#include <glib.h>

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

}  // namespace pkgvet
