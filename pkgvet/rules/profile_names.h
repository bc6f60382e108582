// The names of the validation profiles.
#pragma once

#include <array>
#include <string_view>

#include "pkgvet/rules/profiles.h"

namespace pkgvet {

// Indexed by the numeric Profiles value.
inline constexpr std::array<std::string_view, 6> kProfileNames = {
    "regular", "extended", "mdm", "antivirus", "auth", "market"};

}  // namespace pkgvet
