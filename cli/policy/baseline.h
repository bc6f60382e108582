// Findings that were there before.
#pragma once

#include <compare>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cli/base/fault.h"
#include "cli/model/model.h"

namespace pkgvet::cli {

// What makes a finding the same one on another day and another machine. Texts are those of
// printable(), so that bytes which are not UTF-8 can stand in JSON and stay distinct.
struct KnownFinding {
    std::string package;  // its name; versions come and go
    std::string rule;
    std::optional<std::string> subject;
    std::string message;

    // clang-tidy 14 takes the comparison that stands for this one for a null pointer.
    auto operator<=>(const KnownFinding&) const = default;  // NOLINT(modernize-use-nullptr)
};

KnownFinding identityOf(const Finding& finding, const std::string& package);

// How often each finding was there. The count is that of one package under one profile, the most
// that any had, so that neither the number of packages in a run nor that of profiles matters.
using Baseline = std::map<KnownFinding, std::size_t>;

// The baseline in the file at path. Everything that is wrong with it goes to faults; the result is
// of use only when nothing was. digest, unless it is null, receives SHA-256 of the file.
Baseline readBaseline(const std::string& path, std::vector<Fault>* faults,
                      std::string* digest = nullptr);

// Takes the findings of package into baseline, apart from those that are grave, which always count,
// and those that are waived, which have to count again once the waiver is gone.
void collect(const PackageReport& package, Baseline* baseline);

// What a file that holds baseline consists of: sorted, and the same bytes for the same findings.
std::string formatBaseline(const Baseline& baseline);

}  // namespace pkgvet::cli
