// What single characters mean to std::regex in the ECMAScript grammar.
#pragma once

#include <string_view>

namespace pkgvet {

// Characters that std::regex gives no meaning, alone or, for the last, behind a backslash.
// Whatever stands in neither list goes to the engine, the safe side.
inline constexpr std::string_view kOrdinaryPunctuation = " !\"#%&',-/:;<=>@_`~";
inline constexpr std::string_view kEscapablePunctuation = "!\"#$%&'()*+,-./:;<=>?@[\\]^_`{|}~";

constexpr bool isAlphanumeric(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

// Whether c stands for itself.
constexpr bool isOrdinary(char c) {
    return isAlphanumeric(c) || kOrdinaryPunctuation.find(c) != std::string_view::npos;
}

// Whether c stands for itself behind a backslash.
constexpr bool isEscapable(char c) {
    return kEscapablePunctuation.find(c) != std::string_view::npos;
}

}  // namespace pkgvet
