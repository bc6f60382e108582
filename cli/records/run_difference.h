// Whether two runs can be parts of one.
#pragma once

#include <string>

#include "cli/model/model.h"

namespace pkgvet::cli {

// In what other was made otherwise than run, such as "by version 1.1.0 and not 1.0.0": what makes
// their verdicts those of different runs. Empty where nothing does.
std::string differenceOf(const RunReport& run, const RunReport& other);

}  // namespace pkgvet::cli
