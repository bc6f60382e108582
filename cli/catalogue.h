// Every rule of the library by its permanent id.
#pragma once

#include "cli/finding_capture.h"
#include "cli/model.h"

namespace pkgvet::cli {

// The finding that a line of the library tells: its id, its severity, its subject.
Finding identify(const LogLine& line);

}  // namespace pkgvet::cli
