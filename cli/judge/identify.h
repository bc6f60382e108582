// From the library's lines to findings.
#pragma once

#include "cli/model/model.h"

namespace pkgvet::cli {

// The finding that a line of the library tells: its id, its severity, its subject. A line that no
// rule composes, such as a remark of a library in use, gets the id "other-remark".
Finding identify(const LogLine& line);

}  // namespace pkgvet::cli
