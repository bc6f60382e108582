// Writes faults.
#include "cli/base/fault.h"

#include <set>
#include <tuple>

#include "cli/base/escape.h"

namespace pkgvet::cli {

std::string describe(const Fault& fault) {
    const std::string key = fault.key.empty() ? "" : '"' + printable(fault.key) + "\" ";
    return printable(fault.file) + ": " + key + printable(fault.cause);
}

std::vector<Fault> eachOnce(const std::vector<Fault>& faults) {
    std::vector<Fault> unique;
    // The order in which faults were found is that of the file, so sorting will not do.
    std::set<std::tuple<std::string, std::string, std::string>> seen;
    for (const Fault& fault : faults) {
        if (seen.emplace(fault.file, fault.key, fault.cause).second) {
            unique.push_back(fault);
        }
    }
    return unique;
}

}  // namespace pkgvet::cli
