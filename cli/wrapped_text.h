// Prose in lines of a given width.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace pkgvet::cli {

// The text broken between words into lines that begin with indent and have no more than columns
// bytes, unless a single word is longer. Each ends in a line feed.
std::string wrapped(std::string_view text, std::string_view indent, std::size_t columns);

// The lines of a text, each without its line feed; the last may lack one.
std::vector<std::string_view> linesOf(std::string_view text);

}  // namespace pkgvet::cli
