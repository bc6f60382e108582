// The judgement of one package.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "cli/guard/guard_note.h"
#include "cli/integrity/integrity_options.h"
#include "cli/integrity/rpm_session.h"
#include "cli/model/model.h"

class Configuration;

namespace pkgvet::cli {

inline constexpr const char* kOutOfMemory = "it took more memory than --memory allows";

// What a judge finds around it.
struct Surroundings {
    int package = -1;      // a descriptor of the package, which is read to its end
    std::string copyPath;  // where its copy goes; safe in a shell, and in a place that is private
    std::string tree;      // where the payload will be unpacked
    // Called once the package is copied, before it is looked into. Through an open descriptor,
    // whatever takes this process over could change the mode of the user's own file.
    std::function<void()> closePackage;
    // Called once the payload is unpacked, before a rule looks.
    std::function<void()> closeAround;
    // Called when unpacking failed: the limit that it met, without a code when it met none.
    std::function<Cause()> limitMet;
    // Called before unpacking: has the guard stand in the place of cpio, and let nothing pass that
    // is irregular or has a set-id bit other than these. The cause when it cannot.
    std::function<Cause(const SetIdModes&)> placeGuard;
    // Called after unpacking: what the guard noted, nothing when it did not run.
    std::function<std::optional<GuardNote>()> guardNote;
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
