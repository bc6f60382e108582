// What a finding is known by from run to run.
#pragma once

#include <string>

#include "cli/model/model.h"

namespace pkgvet::cli {

// A hash in hexadecimal of rule, package name and subject: what stays the same from build to build.
// Neither the package's path or version nor the text of the message is part of it. It is written
// into reports that other people keep, and never changes.
std::string fingerprintOf(const std::string& packageName, const Finding& finding);

}  // namespace pkgvet::cli
