// The texts of the findings on QML files.
#pragma once

#include "pkgvet/report/message.h"

namespace pkgvet {

inline constexpr Message kShouldBeOstrandQt5 = {
    "[desktop] X-Dorrit-Application-Type should be ostrand-qt5 for apps importing Lumbra.Ostrand "
    "in QML"};

// The subject is the text of the import, with its version or its quotes.
inline constexpr Message kImportNotAllowed = {"[", kSubject, "] Import is not allowed"};
inline constexpr Message kImportUnstable = {"[", kSubject, "] Import is unstable or deprecated"};

}  // namespace pkgvet
