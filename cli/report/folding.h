// Lines for a terminal.
#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace pkgvet::cli {

// text in lines of at most columns columns, or in one line where columns is 0. Nothing of it
// changes but that a line feed takes the place of a space. A phrase in parentheses stays together
// where a line can hold it, and a word that no line can hold is broken. text went through
// printable(); colour in it takes no columns.
std::vector<std::string> folded(std::string_view text, std::size_t columns);

// Writes text in lines of at most columns columns, all but the first of them indented.
void writeFolded(std::string_view text, std::size_t columns, std::ostream& stream);

// Writes start and text beside it, which goes on below its own beginning. start is width columns
// wide and ends in a space.
void writeHanging(std::string_view start, std::size_t width, std::string_view text,
                  std::size_t columns, std::ostream& stream);

}  // namespace pkgvet::cli
