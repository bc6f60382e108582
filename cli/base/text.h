// Prose in lines of a given width.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace pkgvet::cli {

// The text broken at spaces into lines of at most width bytes. A word that is longer stays whole.
std::vector<std::string> wrapped(std::string_view text, std::size_t width);

}  // namespace pkgvet::cli
