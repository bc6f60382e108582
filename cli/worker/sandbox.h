// How much of the machine a package can reach while it is judged.
#pragma once

#include <string>

namespace pkgvet::cli {

// What the user asks for.
enum class SandboxMode {
    Auto,     // the best that the machine allows
    Require,  // all of it, or nothing is judged
    Off,      // none of it
};

// What the machine allows, as found out once for a run.
struct Sandbox {
    bool namespaces = false;  // each package has file systems, processes and networks of its own
    bool landlock = false;    // each package reads and writes only below the paths that it needs
    std::string missing;      // why not both; empty when both are there or none was asked for

    bool isWhole() const { return namespaces && landlock; }
    bool isAny() const { return namespaces || landlock; }
    // "namespaces+landlock", "namespaces", "landlock" or "none".
    std::string name() const;
};

}  // namespace pkgvet::cli
