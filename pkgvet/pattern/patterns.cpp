// One-shot whole-string matching.
#include "pkgvet/pattern/patterns.h"

#include <algorithm>

#include "pkgvet/pattern/pattern_list.h"

bool matchesAnyPattern(const std::vector<std::string>& patterns, const std::string& text) {
    return std::any_of(patterns.begin(), patterns.end(), [&text](const std::string& pattern) {
        return matchesPattern(text, pattern);
    });
}

bool matchesPattern(const std::string& text, const std::string& pattern) {
    return pkgvet::WholePattern(pattern).matches(text);
}
