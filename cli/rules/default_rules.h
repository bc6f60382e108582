// The rule tree that comes with the program.
#pragma once

#include <string>
#include <vector>

#include "cli/base/fault.h"
#include "pkgvet/base/descriptor.h"

namespace pkgvet::cli {

// Its configuration file, found from where the program itself stands: the build tree is laid out as
// an installation is.
//
// That file names the others by where they were meant to be installed. In an installation that was
// moved, or staged below another directory, they lie beside it and not there, where another version
// may lie. Then a copy of the file that names those beside it is made, in memory, for as long as
// the object lives.
class DefaultRules {
public:
    DefaultRules();

    // A path for this process and for those that it starts.
    const std::string& path() const { return path_; }

    // Has faults of the copy name the file that it was made of. Both have the same lines.
    void nameFile(std::vector<Fault>* faults) const;

private:
    std::string file_;
    std::string path_;
    Descriptor copy_;
};

}  // namespace pkgvet::cli
