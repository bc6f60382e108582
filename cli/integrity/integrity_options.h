// What the user decides about a package's integrity.
#pragma once

#include <string>
#include <vector>

#include "cli/base/option.h"

namespace pkgvet::cli {

struct IntegrityOptions {
    bool enabled = true;
    std::string keyring;  // a directory of public keys; empty for none
};

std::vector<Option> integrityOptions(IntegrityOptions* options);

}  // namespace pkgvet::cli
