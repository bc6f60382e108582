// Which findings of a run count, and what follows for the verdicts.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/base/date.h"
#include "cli/model/model.h"
#include "cli/policy/baseline.h"
#include "cli/policy/policy_options.h"
#include "cli/policy/waivers.h"

namespace pkgvet::cli {

// Applies waivers, a baseline and the least severity that fails a package to what the library said.
// Grave findings are neither waived nor known, and a package that is not intact never passes.
//
// The library's own verdicts stay as they are; the one under the policy stands in
// Judgement::passes. Belongs to one thread, and to one run, since it remembers which waivers were
// used.
class Policy {
public:
    // SHA-256 of each file that was read, as it was then.
    struct Digests {
        std::vector<std::string> waivers = {};  // in the order of the files
        std::string baseline = {};              // empty for none
    };

    // What the user asks for. Everything that is wrong with the files that it names goes to
    // faults; the result is of use only when nothing was.
    Policy(const PolicyOptions& options, const Date& today, std::vector<Fault>* faults);
    // Without failOn the verdict of the library counts, apart from what is excused.
    Policy(std::vector<Waiver> waivers, Baseline baseline, std::optional<Severity> failOn,
           const Date& today);

    // Sets standing and reason of each finding, and the verdict under each profile.
    //
    // What the library rejected passes when all errors are waived or known; a rejection with
    // validation off is for grave findings and stays. failOn rejects also for each finding that
    // counts and is at least so severe, and does so with validation off as well: whoever asks for
    // it means it.
    void apply(PackageReport* package);

    // One line for each waiver that has expired, will do so within 14 days or excused nothing, and
    // a second one for a waiver that excused nothing and will expire. Only a run that came to its
    // end knows what excused nothing.
    std::vector<std::string> notices(bool complete) const;

    const Digests& digests() const { return digests_; }

private:
    // A waiver, and what its notices depend on.
    struct TrackedWaiver {
        Waiver waiver;
        std::optional<int> daysLeft;  // none for one without a last day; below 0 it has expired
        bool used = false;

        bool isExpired() const { return daysLeft && *daysLeft < 0; }
    };

    static std::string expiryNotice(const TrackedWaiver& tracked);

    void addWaivers(std::vector<Waiver> waivers, const Date& today);
    void excuse(Judgement* judgement, const std::string& package);
    bool waive(Finding* finding, const std::string& package);

    std::vector<TrackedWaiver> waivers_;
    Baseline baseline_;
    Digests digests_;
    std::optional<Severity> failOn_;
};

}  // namespace pkgvet::cli
