// The judgement of one package.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "cli/integrity/integrity_options.h"
#include "cli/judge/rpm_session.h"
#include "cli/model/model.h"

class Configuration;

namespace pkgvet::cli {

// What a judge finds around it.
struct Surroundings {
    int package = -1;      // a descriptor of the package, which is read to its end
    std::string copyPath;  // where its copy goes; safe in a shell, and in a place that is private
    // Called once the payload is unpacked, before a rule looks.
    std::function<void()> closeAround;
    // Called when unpacking failed: the limit that it met, without a code when it met none.
    std::function<Cause()> limitMet;
    // Called when unpacking failed and met no limit: what the guard in front of the tools found
    // irregular, as findings on the package's integrity; none when it let everything pass. Null
    // where there is no guard.
    std::function<std::vector<Finding>()> irregularities;
};

// Judges a package under each of the configurations, of which there is at least one, and unpacks it
// once for all of them. The program's own rules on its integrity run once as well; what they find
// stands behind the library's findings in each judgement. The package is copied first, and
// everything that is said of it is said of the copy. Never throws: whatever goes wrong is the cause
// in the result. A package whose unpacking the guard stopped is judged by its header alone, and
// rejected. While it runs, std::cerr is led away; what tools and C libraries say on file descriptor
// 2 is not.
//
// What was unpacked is left to whoever made the surroundings, as its removal takes longer than
// their end.
PackageReport judge(const Surroundings& surroundings,
                    const std::vector<Configuration>& configurations,
                    const IntegrityOptions& integrity, RpmSession* rpm);

}  // namespace pkgvet::cli
