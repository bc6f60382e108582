// Counts of findings, and the notes that go with them and with those of packages.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cli/model/model.h"
#include "cli/model/summary.h"

namespace pkgvet::cli {

// The findings that count, by severity, and those that do not.
struct FindingTally {
    std::size_t errors = 0;  // critical findings too
    std::size_t warnings = 0;
    std::size_t grave = 0;  // of both: what nothing excuses
    std::size_t waived = 0;
    std::size_t known = 0;
};

FindingTally tallyOf(const Judgement& judgement);

// "74 errors, 7 warnings"; nothing where there are none of either, and both where there is one, so
// that lines compare.
std::string countsOf(const FindingTally& tally);

// "2 packages: 1 accepted, 1 rejected, 0 not judged", and that the run was interrupted if it was.
std::string summaryOf(const RunReport& run);

// A rule with the findings of it that count.
struct RuleTally {
    std::string rule;
    Severity worst = Severity::Info;
    bool grave = false;
    std::vector<MergedFinding> findings;
    std::size_t count = 0;  // of them and of those that they stand for
};

// The rules that a package breaks, each finding counted once whatever the number of profiles, and
// ranked. They point into package.
std::vector<RuleTally> ruleTallies(const PackageReport& package);

// Whether a comes ahead of b in a ranking: grave rules come first, then the most severe, then those
// that are broken most often.
bool ranksAhead(const RuleTally& a, const RuleTally& b);

// The first subjects of the rule's findings, each once, at most as many, and how many more there
// are then. They are fit for a terminal. What is about the package as a whole has none.
std::vector<std::string> firstSubjects(const RuleTally& rule, std::size_t most);

// Why the package was not judged, with the last line on standard error if there was one, fit for a
// terminal.
std::string causeWithLastLine(const PackageReport& package);

// " (waived: REASON)" or " (known)" for a finding that does not count, else nothing.
std::string standingNote(const Finding& finding);

// " (PROFILE, PROFILE)" where a package was judged under more than one profile, else nothing.
std::string profilesNote(const PackageReport& package, const MergedFinding& merged);

}  // namespace pkgvet::cli
