// What the rules on files as such find out.
#pragma once

namespace pkgvet {

// Written by checkExcludedPaths.
struct FileFacts {
    bool debugDir = false;
    // The main binary is there, whether wanted or not. Read by binRequired and by the rule on the
    // symbols of the main binary.
    bool unwantedBinExists = false;
    bool correctSealwatchd = true;
    bool binDirOwned = false;  // not read by any rule
};

}  // namespace pkgvet
