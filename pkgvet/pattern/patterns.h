// Whole-string matching of text against the patterns of rule files.
#pragma once

#include <string>
#include <vector>

#include "pkgvet/export.h"

// Patterns here are std::regex in the ECMAScript grammar and must match the whole of text, unlike
// those of Regex, which search.
//
// Both throw std::regex_error for a pattern that does not compile, where the engine would overflow
// the stack (error_stack) and when it gives up (error_complexity); patterns that are plain text
// have no such limits.

// Whether one of patterns matches text. They are tried in order up to the first match, and one that
// does not compile throws only when the walk gets to it. False for an empty list.
PKGVET_EXPORT bool matchesAnyPattern(const std::vector<std::string>& patterns,
                                     const std::string& text);

// Whether pattern matches text.
PKGVET_EXPORT bool matchesPattern(const std::string& text, const std::string& pattern);
