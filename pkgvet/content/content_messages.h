// The texts of the findings on a package's files as such.
#pragma once

#include <string_view>

namespace pkgvet {

inline constexpr std::string_view kQmlOnlyShouldBeNoarch = "[arch] QML-only RPMs should be noarch";

}  // namespace pkgvet
