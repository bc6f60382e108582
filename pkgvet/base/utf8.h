// Text from strangers in front of libraries that require UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace pkgvet {

// Whether text is valid UTF-8 without NUL bytes.
bool isUtf8(std::string_view text);

// For output only, since different texts may come out equal: text itself where it is such UTF-8,
// otherwise a copy in which each offending byte is replaced by U+FFFD.
std::string validUtf8(std::string_view text);

}  // namespace pkgvet
