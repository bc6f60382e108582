// Text from strangers made safe for libraries that require UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace pkgvet {

// text itself where it is valid UTF-8 without NUL bytes, otherwise a copy in which each offending
// byte is replaced by U+FFFD.
std::string validUtf8(std::string_view text);

}  // namespace pkgvet
