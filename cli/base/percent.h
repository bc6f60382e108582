// Percent-encoding.
#pragma once

#include <string>
#include <string_view>

namespace pkgvet::cli {

// text with every byte that keeps() refuses written as "%NN".
std::string percentEncoded(std::string_view text, bool (*keeps)(char byte));

}  // namespace pkgvet::cli
