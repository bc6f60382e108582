// The word of flags behind a verdict.
#pragma once

#include <cstdint>

namespace pkgvet {

// Bits are only ever set.
inline constexpr std::uint32_t kViolation = 1;     // rejects while validation is enabled
inline constexpr std::uint32_t kGraveFinding = 2;  // rejects in any case

// Whether a package with these failures is accepted.
constexpr bool isAccepted(std::uint32_t failures, bool validationEnabled) {
    return validationEnabled ? failures == 0 : (failures & kGraveFinding) == 0;
}

}  // namespace pkgvet
