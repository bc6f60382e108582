// Words that are nearly the ones that somebody meant.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace pkgvet::cli {

// How many characters must be put in, taken out or replaced to make one word of the other.
std::size_t editDistance(std::string_view from, std::string_view to);

// The one of words that word is most likely meant to be, the first of several; empty when none is
// like it.
std::string nearestWord(std::string_view word, const std::vector<std::string>& words);

// ": did you mean WORD?" with the nearest of words, or nothing.
std::string suggestion(std::string_view word, const std::vector<std::string>& words);

}  // namespace pkgvet::cli
