// The set-id bits that a package asks for.
#pragma once

#include "cli/guard/guard_note.h"
#include "cli/integrity/package_header.h"

namespace pkgvet::cli {

// By path, of the files of the header that have one.
SetIdModes readSetIdModes(const PackageHeader& header);

}  // namespace pkgvet::cli
