// Text from packages made fit for a terminal and for URIs.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pkgvet::cli {

// text with control characters, marks that turn the direction of writing, and bytes that are
// not UTF-8 written as "\xNN" or "\u{NNNN}", so that no package can colour, move or reorder what a
// person reads. Line feeds and tabs are escaped too.
std::string printable(std::string_view text);

// text with bytes that are not UTF-8 written as "\xNN" and backslashes doubled, so that different
// texts stay different. Nothing where all of text is UTF-8.
std::optional<std::string> bytesEscaped(std::string_view text);

// The text of which bytesEscaped() made this one. Nothing where it made none such.
std::optional<std::string> bytesUnescaped(std::string_view escaped);

// text with every byte that keeps() refuses written as "%NN".
std::string percentEncoded(std::string_view text, bool (*keeps)(char byte));

}  // namespace pkgvet::cli
