// Where in the files of a rule tree faults stand.
#pragma once

#include <map>
#include <string>

#include "cli/base/fault.h"
#include "cli/base/json_positions.h"

namespace pkgvet::cli {

// Reads each file once, and only when a fault is looked for in it.
class FaultLocator {
public:
    // Fills in position and value of what a fault is about, as far as they are known: of the value
    // at its key, or of the key itself.
    void locateValue(Fault* fault);
    void locateKey(Fault* fault);

    const JsonPositions& positionsIn(const std::string& file);

private:
    std::map<std::string, JsonPositions> files_;
};

}  // namespace pkgvet::cli
