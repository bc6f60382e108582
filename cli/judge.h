// The judgement of one package.
#pragma once

#include <string>
#include <vector>

#include "cli/finding.h"
#include "cli/rpm_session.h"

class Configuration;

namespace pkgvet::cli {

struct Judgement {
    std::string package;  // as the user named it
    std::string cause;    // why the package could not be judged; empty when it was
    std::vector<Finding> findings;
    bool metaAccepted = false;
    bool contentAccepted = false;

    bool judged() const { return cause.empty(); }
    // A package that could not be judged is never accepted.
    bool accepted() const { return judged() && metaAccepted && contentAccepted; }
};

// Judges the package at path, a path on disk. Never throws: whatever goes wrong is the cause in
// the result. While it runs, std::cerr and file descriptor 2 are led away.
Judgement judge(const std::string& path, const Configuration& configuration, RpmSession* rpm);

}  // namespace pkgvet::cli
