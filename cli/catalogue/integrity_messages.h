// The texts of the program's own findings, which are on the integrity of a package.
#pragma once

#include "pkgvet/report/message.h"

namespace pkgvet::cli {

// On the header.
inline constexpr Message kPathNotNormal{"[", kSubject,
                                        "] Path in the header is not absolute and normal"};

// On the findings themselves.
inline constexpr Message kFindingsLeftOut{kDetail, " further findings like this one: ", kSubject};

}  // namespace pkgvet::cli
