// The parts of a SARIF document.
#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/report/formats.h"
#include "cli/report/tally.h"

namespace pkgvet::cli {

// One result of a run.
struct SarifResult {
    const PackageReport* package;
    MergedFinding merged;
    std::string fingerprint;
    std::size_t occurrence;  // of the fingerprint in the run, from 1
};

// The results of a run in the order of its packages. They point into run.
std::vector<SarifResult> sarifResults(const RunReport& run);

// The rules that results break, each with its place in the driver's list. The list is sorted, so
// that places do not depend on the order of the packages.
using SarifRules = std::map<std::string, std::size_t>;

SarifRules sarifRules(std::span<const SarifResult> results);

// The tool with these rules.
nlohmann::ordered_json sarifTool(const SarifRules& rules, const std::string& version);

// What a document is about: the packages of a run, each once even where it was named twice, and the
// files in them that results are about.
class SarifArtifacts {
public:
    SarifArtifacts(const RunReport& run, const ReportStyle& style);

    // Where package stands in the list, as an artifact location.
    nlohmann::ordered_json location(const PackageReport& package) const;
    // Where the file at path in package stands. It is added to the list when it is not there.
    nlohmann::ordered_json location(const PackageReport& package, const std::string& path);

    const nlohmann::ordered_json& json() const { return list_; }

private:
    nlohmann::ordered_json list_ = nlohmann::ordered_json::array();
    std::map<std::string, std::size_t> packages_;  // by their paths
    std::map<std::pair<std::size_t, std::string>, std::size_t> files_;
};

// text as a message.
nlohmann::ordered_json sarifMessage(std::string_view text);

// Text out of a package as a message, so that "[x](y)" in it is not taken for a link.
nlohmann::ordered_json foreignSarifMessage(const std::string& text);

const char* sarifLevel(Severity severity);

}  // namespace pkgvet::cli
