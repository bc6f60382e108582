// The word of flags behind a verdict.
#pragma once

#include <cstdint>

#include "pkgvet/report/findings.h"

namespace pkgvet {

// Whether a package with these failures is accepted.
constexpr bool isAccepted(std::uint32_t failures, bool validationEnabled) {
    return validationEnabled ? failures == 0 : (failures & kGraveFinding) == 0;
}

}  // namespace pkgvet
