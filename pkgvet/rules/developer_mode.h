// The state of the platform's developer mode.
#pragma once

#include <string>

namespace pkgvet {

// Where the platform keeps that state.
inline constexpr const char* kDeveloperModeFile = "/var/lib/tinkerd/tinkerd.conf";

// Whether rule violations reject a package, by the key file at path. True when the file, the group
// or the key is missing; a value that is not a boolean reads as false.
bool readValidationEnabled(const std::string& path);

}  // namespace pkgvet
