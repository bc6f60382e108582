// The record behind MetaValidator.
#pragma once

#include <cstdint>

#include "pkgvet/report/failures.h"

struct MetaValidatorPrivate {
    std::uint32_t failures = 0;
    bool domainNotation = true;
    bool mandatoryProvide = true;
    bool mandatoryConflict = true;
    bool scripts = false;
};
