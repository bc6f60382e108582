// What a run found out: packages, judgements and findings as plain data.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pkgvet::cli {

enum class Severity { Info, Warning, Error, Critical };

// What the choice of what counts made of a finding.
enum class Standing {
    Counts,
    Waived,  // a waiver excuses it
    Known,   // it stands in the baseline
};

struct Finding {
    std::string rule;  // the permanent id, such as "library-not-allowed"
    Severity severity = Severity::Info;
    std::optional<std::string> subject;  // a path in the package, a dependency, a key
    std::string message;                 // the library's line without its label
    Standing standing = Standing::Counts;
    std::string reason;  // of the waiver
};

// A package under one profile.
struct Judgement {
    std::string profile;
    // The library's own verdicts.
    bool metaAccepted = false;
    bool contentAccepted = false;
    // The verdict once waivers, baseline and the least severity that counts are applied; without
    // any of them the library's own.
    bool passes = false;
    std::vector<Finding> findings;

    bool accepted() const { return metaAccepted && contentAccepted; }
};

// One package, as it comes back from the process that judged it.
struct PackageReport {
    std::string path;  // as the user named it
    std::string name;
    std::string version;
    std::string release;
    std::string arch;
    std::string sha256;
    bool validationEnabled = true;
    // Why the package could not be judged, and what was last said on standard error in the attempt.
    // The cause is empty when it was judged.
    std::string cause;
    std::string lastWords;
    double seconds = 0;
    std::vector<Judgement> judgements;  // one for each profile asked for, in their order

    // A package that could not be judged passes under no profile.
    bool judged() const { return cause.empty(); }
    bool passes() const;
};

struct RunReport {
    std::vector<PackageReport> packages;  // in input order
    bool partial = false;                 // the run was interrupted
    std::vector<std::string> notices;     // remarks on the run itself, such as unused waivers
};

// "info" to "critical".
std::string_view severityName(Severity severity);

}  // namespace pkgvet::cli
