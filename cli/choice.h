// What counts of a run's findings.
#pragma once

#include <string>
#include <vector>

#include "cli/baseline.h"
#include "cli/calendar.h"
#include "cli/model.h"
#include "cli/waivers.h"

namespace pkgvet::cli {

// Applies waivers, a baseline and the least severity that fails a package to what the library said.
// Grave findings are neither waived nor known.
// The library's own verdicts stay as they are; the one after the choice stands in
// Judgement::passes. Belongs to one thread, and to one run, since it keeps in mind what was used.
class Choice {
public:
    // failOn is Severity::Error or Severity::Warning.
    Choice(std::vector<Waiver> waivers, Baseline baseline, Severity failOn, const Date& today);

    // Sets standing and reason of each finding, and the verdict under each profile.
    //
    // What the library rejected passes when all errors are waived or known. Severity::Warning fails
    // a package for each error or warning that counts, also where validation is off: whoever asks
    // for it means it. Severity::Error adds nothing to the library's verdict, so that with
    // validation off only grave findings reject.
    void apply(PackageReport* package);

    // One line for each waiver of waiversFile that has expired or excused nothing. Only a run that
    // came to its end knows of the latter.
    std::vector<std::string> notices(const std::string& waiversFile, bool complete) const;

private:
    struct WatchedWaiver {
        Waiver waiver;
        bool expired;
        bool used;
    };

    void excuse(Judgement* judgement, const std::string& package);
    bool waive(Finding* finding, const std::string& package);

    std::vector<WatchedWaiver> waivers_;
    Baseline baseline_;
    Severity failOn_;
};

}  // namespace pkgvet::cli
