// How a rule reports what rejects the package.
#pragma once

#include <initializer_list>
#include <string_view>

#include "pkgvet/content/content_validator_private.h"
#include "pkgvet/report/logger.h"

namespace pkgvet {

// Writes the pieces as an error and remembers in record that a rule was violated.
inline void reportViolation(ContentValidatorPrivate* record,
                            std::initializer_list<std::string_view> pieces) {
    record->failures |= kViolation;
    Logger::log(LogLevel::Error, pieces);
}

}  // namespace pkgvet
