// Text from packages made fit for a terminal.
#pragma once

#include <string>
#include <string_view>

namespace pkgvet::cli {

// text with control characters, marks that turn the direction of writing, and bytes that are no
// UTF-8 written as "\xNN" or "\u{NNNN}", so that no package can colour, move or reorder what a
// person reads. Line feeds and tabs are escaped too.
std::string printable(std::string_view text);

}  // namespace pkgvet::cli
