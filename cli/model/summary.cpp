// Adds up the packages of a run, and merges what several profiles find.
#include "cli/model/summary.h"

#include <map>
#include <string_view>
#include <tuple>

namespace pkgvet::cli {

namespace {

// All that reports show of a finding, so that two with the same key read the same. The flag tells
// an empty subject from none.
using FindingKey = std::tuple<std::string_view, Severity, bool, std::string_view, std::string_view,
                              Standing, std::string_view>;

FindingKey keyOf(const Finding& finding) {
    const std::string_view subject = finding.subject ? *finding.subject : std::string_view();
    return {finding.rule,  finding.severity, finding.subject.has_value(),
            subject,       finding.message,  finding.standing,
            finding.reason};
}

}  // namespace

PackageTally tallyOf(const RunReport& run) {
    PackageTally tally = run.dropped;
    for (const PackageReport& package : run.packages) {
        tally.add(package);
    }
    return tally;
}

std::vector<MergedFinding> mergedFindings(const PackageReport& package) {
    std::vector<MergedFinding> merged;
    // Where in merged the first, second, ... finding of each kind stands. What a profile finds for
    // the second time is merged with the second time of the other profiles.
    std::map<FindingKey, std::vector<std::size_t>> places;
    for (const Judgement& judgement : package.judgements) {
        std::map<FindingKey, std::size_t> seen;
        for (const Finding& finding : judgement.findings) {
            std::vector<std::size_t>& same = places[keyOf(finding)];
            const std::size_t occurrence = seen[keyOf(finding)]++;
            if (occurrence == same.size()) {
                same.push_back(merged.size());
                merged.push_back({&finding, {}});
            }
            merged[same[occurrence]].profiles.push_back(judgement.profile);
        }
    }
    return merged;
}

}  // namespace pkgvet::cli
