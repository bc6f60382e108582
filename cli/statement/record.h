// Verdicts as in-toto Statements with the predicate "test-result".
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/model/model.h"

namespace pkgvet::cli {

// Something that decided the verdict, as a resource descriptor.
struct RecordedInput {
    std::string name;  // such as "rules" or "waivers"
    std::string uri = {};
    std::string digest;  // SHA-256
    std::map<std::string, std::string> annotations = {};

    bool operator==(const RecordedInput& other) const = default;
};

// The verdict on one package under one profile, without a time or a place: the same package under
// the same rules has the same record, so that anyone can judge again and compare.
struct Record {
    std::string package;  // its name, fit for a terminal
    std::string sha256;
    std::string result;                        // one of those below
    std::vector<RecordedInput> configuration;  // the program first, then the rules and the options
    // Ids of rules, sorted: those with findings that reject the package, those with other findings,
    // and the others that looked.
    std::vector<std::string> failedTests;
    std::vector<std::string> warnedTests;
    std::vector<std::string> passedTests;
};

inline constexpr std::string_view kPassedResult = "PASSED";
inline constexpr std::string_view kWarnedResult = "WARNED";
inline constexpr std::string_view kFailedResult = "FAILED";

// What an input of a record is called, and the annotation of the rules that names the profile.
inline constexpr const char* kRulesInput = "rules";
inline constexpr const char* kProfileAnnotation = "profile";

// Nothing for a package that was not judged, and where the digest of the rules is not known.
std::optional<Record> recordOf(const PackageReport& package, const Judgement& judgement,
                               const Provenance& provenance);

// A record and the name of a file for it: the package's name as far as it is fit for one, its
// digest and the profile. A record with the same name is the same.
struct NamedRecord {
    std::string file;
    Record record;
};

// Hands on the records of a run in the order of its packages and profiles.
void forEachRecord(const RunReport& run,
                   const std::function<void(const NamedRecord& named)>& receive);

// The statement in one line, which ends in a line feed.
std::string formatRecord(const Record& record);

// What every record begins with.
std::string_view recordBeginning();

}  // namespace pkgvet::cli
