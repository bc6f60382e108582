// Files of waivers as the program writes them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/base/date.h"

namespace pkgvet::cli {

// A waiver of one finding. Subject and package are plain texts here and become patterns that match
// them and nothing else.
struct NewWaiver {
    std::string rule;
    std::string subject;  // empty for a finding without one
    std::string package;
    std::string reason;
    std::optional<Date> lastDay;
};

// A pattern that matches text and nothing else.
std::string patternFor(const std::string& text);

// What a file of these waivers consists of, each once, in the order in which they come first.
std::string formatWaivers(const std::vector<NewWaiver>& waivers);

}  // namespace pkgvet::cli
