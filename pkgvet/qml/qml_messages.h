// The texts of the findings on QML files.
#pragma once

#include <string_view>

namespace pkgvet {

inline constexpr std::string_view kShouldBeOstrandQt5 =
    "[desktop] X-Dorrit-Application-Type should be ostrand-qt5 for apps importing Lumbra.Ostrand "
    "in QML";

// Behind "[" and the text of the import.
inline constexpr std::string_view kImportNotAllowed = "] Import is not allowed";
inline constexpr std::string_view kImportUnstable = "] Import is unstable or deprecated";

}  // namespace pkgvet
