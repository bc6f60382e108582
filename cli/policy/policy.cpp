// Applies a policy.
#include "cli/policy/policy.h"

#include <algorithm>
#include <utility>

#include "cli/catalogue/catalogue.h"

namespace pkgvet::cli {

namespace {

// Of a waiver that will expire, so that there is time to see to it.
constexpr int kDaysOfWarning = 14;

std::string subjectOf(const Waiver& waiver) {
    return "the waiver for " + waiver.rule;
}

bool hasCounting(const Judgement& judgement, Severity least) {
    return std::any_of(judgement.findings.begin(), judgement.findings.end(),
                       [least](const Finding& finding) {
                           return finding.standing == Standing::Counts && finding.severity >= least;
                       });
}

// Whether everything that made the library reject is excused. A rejection that no finding accounts
// for stays one.
bool isExcused(const Judgement& judgement) {
    const bool anyExcused = std::any_of(
        judgement.findings.begin(), judgement.findings.end(), [](const Finding& finding) {
            return finding.standing != Standing::Counts && finding.severity >= Severity::Error;
        });
    return anyExcused && !hasCounting(judgement, Severity::Error);
}

bool passes(const Judgement& judgement, bool validationEnabled, std::optional<Severity> failOn) {
    if (!judgement.intact) {
        return false;
    }
    if (failOn && hasCounting(judgement, *failOn)) {
        return false;
    }
    // With validation off the library rejects for grave findings only.
    return judgement.accepted() || (validationEnabled && isExcused(judgement));
}

}  // namespace

Policy::Policy(const PolicyOptions& options, const Date& today, std::vector<Fault>* faults)
    : failOn_(options.failOn) {
    for (const std::string& path : options.waivers) {
        addWaivers(readWaivers(path, faults, &digests_.waivers.emplace_back()), today);
    }
    if (!options.baseline.empty()) {
        baseline_ = readBaseline(options.baseline, faults, &digests_.baseline);
    }
}

Policy::Policy(std::vector<Waiver> waivers, Baseline baseline, std::optional<Severity> failOn,
               const Date& today)
    : baseline_(std::move(baseline)), failOn_(failOn) {
    addWaivers(std::move(waivers), today);
}

void Policy::addWaivers(std::vector<Waiver> waivers, const Date& today) {
    for (Waiver& waiver : waivers) {
        std::optional<int> daysLeft;
        if (waiver.lastDay) {
            daysLeft = daysBetween(today, *waiver.lastDay);
        }
        waivers_.push_back({std::move(waiver), daysLeft});
    }
}

void Policy::apply(PackageReport* package) {
    for (Judgement& judgement : package->judgements) {
        excuse(&judgement, package->name);
        judgement.passes = passes(judgement, package->validationEnabled, failOn_);
    }
}

void Policy::excuse(Judgement* judgement, const std::string& package) {
    Baseline seen;
    for (Finding& finding : judgement->findings) {
        if (isGrave(finding) || waive(&finding, package)) {
            continue;
        }
        // Of findings that are alike, the first ones are those that were there before.
        const KnownFinding identity = identityOf(finding, package);
        const auto known = baseline_.find(identity);
        if (known != baseline_.end() && ++seen[identity] <= known->second) {
            finding.standing = Standing::Known;
        }
    }
}

// Every waiver that covers the finding is in use; the first one gives the reason.
bool Policy::waive(Finding* finding, const std::string& package) {
    for (TrackedWaiver& tracked : waivers_) {
        if (tracked.isExpired() || !covers(&tracked.waiver, *finding, package)) {
            continue;
        }
        tracked.used = true;
        if (finding->standing != Standing::Waived) {
            finding->standing = Standing::Waived;
            finding->reason = tracked.waiver.reason;
        }
    }
    return finding->standing == Standing::Waived;
}

std::string Policy::expiryNotice(const TrackedWaiver& tracked) {
    const Waiver& waiver = tracked.waiver;
    const std::string verb = tracked.isExpired() ? " expired on " : " expires after ";
    return describe({waiver.file, std::string(),
                     subjectOf(waiver) + verb + formatDate(*waiver.lastDay),
                     waiver.lastDayPosition});
}

std::vector<std::string> Policy::notices(bool complete) const {
    std::vector<std::string> lines;
    for (const TrackedWaiver& tracked : waivers_) {
        const Waiver& waiver = tracked.waiver;
        if (tracked.daysLeft && *tracked.daysLeft <= kDaysOfWarning) {
            lines.push_back(expiryNotice(tracked));
        }
        if (!tracked.isExpired() && !tracked.used && complete) {
            lines.push_back(describe({waiver.file, std::string(),
                                      subjectOf(waiver) + " was never used", waiver.position}));
        }
    }
    return lines;
}

}  // namespace pkgvet::cli
