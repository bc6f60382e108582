// Groups the findings of a package by their kinds.
#include "cli/page/finding_groups.h"

#include <algorithm>
#include <map>

#include "cli/model/summary.h"

namespace pkgvet::cli {

std::vector<FindingGroup> groupsOf(const PackageReport& package, FindingKinds* kinds) {
    std::vector<FindingGroup> groups;
    std::map<std::size_t, std::size_t> places;
    for (const MergedFinding& merged : mergedFindings(package)) {
        const std::size_t kind = kinds->of(merged);
        const auto [place, isNew] = places.try_emplace(kind, groups.size());
        if (isNew) {
            groups.push_back({kind, {}});
        }
        groups[place->second].findings.push_back(merged.finding);
    }
    const auto severity = [kinds](const FindingGroup& group) {
        return kinds->all()[group.kind]->severity;
    };
    std::stable_sort(groups.begin(), groups.end(),
                     [&severity](const FindingGroup& a, const FindingGroup& b) {
                         return severity(a) > severity(b);
                     });
    return groups;
}

}  // namespace pkgvet::cli
