// Keeps the findings of a package within bounds.
#include "cli/judge/finding_list.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kLeftOut = " further findings like these are left out";

}  // namespace

void FindingList::add(Finding finding) {
    if (++counts_[{finding.rule, finding.severity}] <= kMostOfARule) {
        findings_.push_back(std::move(finding));
    }
}

std::vector<Finding> FindingList::take() {
    for (const auto& [kind, count] : counts_) {
        if (count > kMostOfARule) {
            Finding rest;
            rest.rule = kind.first;
            rest.severity = kind.second;
            rest.count = count - kMostOfARule;
            rest.message = std::to_string(rest.count) + kLeftOut;
            findings_.push_back(std::move(rest));
        }
    }
    counts_.clear();
    return std::exchange(findings_, {});
}

}  // namespace pkgvet::cli
