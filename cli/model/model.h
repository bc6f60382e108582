// What a run looks at and what it finds out: packages, judgements and findings as plain data.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/base/version.h"

namespace pkgvet::cli {

enum class Severity { Info, Warning, Error, Critical };

// What the policy of the run made of a finding.
enum class Standing {
    Counts,
    Waived,  // a waiver excuses it
    Known,   // it stands in the baseline
};

// A package that a run is about.
struct Input {
    std::string path;
    std::string cause;         // why there is nothing to judge; empty when there may be
    std::size_t position = 0;  // in the whole input, from 1; 0 where nobody counts
};

// One line of the library in the pieces of which it was composed. They say which of its words are
// the rule's own and which came out of the package, so that no name can pass for a message.
struct LogLine {
    Severity severity = Severity::Info;
    std::vector<std::string> pieces;

    std::string text() const;
};

struct Finding {
    std::string rule;  // the permanent id, such as "library-not-allowed"
    Severity severity = Severity::Info;
    std::optional<std::string> subject;  // a path in the package, a dependency, a key
    std::string message;                 // the library's line without its label
    Standing standing = Standing::Counts;
    std::string reason;  // of the waiver
    // How many findings it stands for: more than one of the rule, which are left out.
    std::size_t count = 1;
};

// A package under one profile.
struct Judgement {
    std::string profile;
    // The library's own verdicts.
    bool metaAccepted = false;
    bool contentAccepted = false;
    // The program's own: whether what was judged is what would be installed. A package that is not
    // intact never passes.
    bool intact = true;
    // The verdict once waivers, baseline and the least severity that counts are applied; without
    // any of them that of the library and the program.
    bool passes = false;
    std::vector<Finding> findings;

    // The library's verdict.
    bool accepted() const { return metaAccepted && contentAccepted; }
};

// Why a package could not be judged, in words for machines, of which there are no others.
enum class CauseCode {
    None,          // it was judged
    Unreadable,    // unreadable
    NotAPackage,   // not-a-package
    UnpackFailed,  // unpack-failed
    TooLarge,      // too-large
    TooManyFiles,  // too-many-files
    OutOfTime,     // out-of-time
    OutOfMemory,   // out-of-memory
    Crashed,       // crashed
    RuleFailed,    // rule-failed
    Interrupted,   // interrupted
};

struct Cause {
    CauseCode code = CauseCode::None;
    std::string text;  // for people
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
    // Why the package could not be judged, and the last line on standard error in the attempt. The
    // cause is empty when it was judged.
    std::string cause;
    CauseCode causeCode = CauseCode::None;
    std::string lastErrorLine;
    // Why the rules on the payload did not run on a package that is rejected without them; empty
    // when they did, or when it could not be judged at all.
    std::string incomplete;
    std::optional<double> seconds;  // that it took; not there where a report does not say so
    // SHA-256 of all that the judgements depend on beside the package, so that they can be taken
    // over where it is the same; empty where nobody asked for it.
    std::string judgedBy;
    // Where the package stands in the whole input, from 1, when its report is that of a shard.
    std::size_t position = 0;
    std::vector<Judgement> judgements;  // one for each profile asked for, in their order

    // A package that could not be judged passes under no profile.
    bool judged() const { return cause.empty(); }
    // Whether every rule ran.
    bool complete() const { return judged() && incomplete.empty(); }
    // Of a long text its beginning.
    void setCause(const Cause& why);
    bool passes() const;
};

// A profile of the run.
struct ProfileRules {
    std::string name;
    std::string digest = {};  // of the rules in force under it; empty where nobody asked for it
};

// What a run allowed each package at the most, as it was asked for. Less where the machine has
// less.
struct AllowedMost {
    double seconds = 0;
    unsigned processorSeconds = 0;
    std::uint64_t unpackedBytes = 0;
    unsigned files = 0;
    std::uint64_t memory = 0;
    std::uint64_t report = 0;
};

// How the verdicts of a run came about.
struct Provenance {
    std::string version = programVersion();   // of the program that judged
    std::vector<ProfileRules> profiles = {};  // in the order in which they were asked for
    std::string validation = {};              // "auto", "on" or "off"
    bool integrity = true;
    std::string failOn = {};  // the least severity that rejects, if the user says so
    // SHA-256 over the public keys, of which one has to have signed; empty for none.
    std::string keyring = {};
    // SHA-256 of files; empty for no file.
    std::vector<std::string> waivers = {};
    std::string baseline = {};
    AllowedMost limits = {};
};

struct PackageTally {
    std::size_t accepted = 0;
    std::size_t rejected = 0;
    std::size_t notJudged = 0;

    void add(const PackageReport& package);
    std::size_t packages() const { return accepted + rejected + notJudged; }
};

// A report of more parts than this is not one of ours.
inline constexpr unsigned kMostShards = 100'000;

// Which part of its input a run was to judge: the sorted paths from the number-th on, each of-th of
// them.
struct Shard {
    unsigned number = 1;
    unsigned of = 1;
    std::size_t packages = 0;  // of the whole input
    std::string input;         // SHA-256 of the sorted paths of the whole input
};

class KeptPackages;

struct RunReport {
    std::vector<PackageReport> packages;  // in input order
    // Packages that were told as they came and are not among packages: a run of many of them takes
    // little memory.
    PackageTally dropped = {};
    // These once more, where a report goes through them at the end; null for none. Whoever sets it
    // owns them.
    const KeptPackages* kept = nullptr;
    std::optional<Shard> shard = {};   // none for a run over all of its input
    std::string sandbox;               // what cages the judges, such as "none"
    bool partial = false;              // the run was interrupted
    std::vector<std::string> notices;  // remarks on the run itself, such as unused waivers
    Provenance provenance;
};

// "unreadable" to "interrupted"; empty for None.
std::string_view causeCodeName(CauseCode code);

// "info" to "critical".
std::string_view severityName(Severity severity);

// A hash in hexadecimal of rule, package name and subject: what stays the same from build to build.
// Neither the package's path or version nor the text of the message is part of it. It is written
// into reports that other people keep, and never changes.
std::string fingerprintOf(const std::string& packageName, const Finding& finding);

}  // namespace pkgvet::cli
