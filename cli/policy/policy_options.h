// What the user decides about which findings count.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/base/option.h"
#include "cli/model/model.h"

namespace pkgvet::cli {

// What can be asked for as the least severity that rejects.
inline constexpr Words<Severity, 2> kFailOnWords = {{
    {"error", Severity::Error},
    {"warning", Severity::Warning},
}};

struct PolicyOptions {
    std::vector<std::string> waivers;  // files
    bool showWaived = false;           // findings that do not count are reported too
    std::string baseline;              // a file; empty for none
    std::string writeBaseline;         // likewise
    std::optional<Severity> failOn;    // none: the library's own verdict counts
    bool exitZero = false;
};

std::vector<Option> policyOptions(PolicyOptions* options);

}  // namespace pkgvet::cli
