// Whether there is enough memory to read a payload.
#pragma once

#include <string>

#include "cli/integrity/rpm_session.h"

namespace pkgvet::cli {

// Reads the payload of the package at path and tells whether that ends for want of memory. This is
// for a payload that did not unpack: rpm2cpio does not say why, and has less to spare than this
// process only where its limits are lower.
bool isShortOfMemory(const std::string& path, RpmSession* rpm);

}  // namespace pkgvet::cli
