// The parts of a SARIF document.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/base/spool.h"
#include "cli/model/summary.h"
#include "cli/report/format_json.h"
#include "cli/report/formats.h"

namespace pkgvet::cli {

// How far the lists of a document stand from the margin.
inline constexpr std::size_t kSarifRunMargin = 6;
inline constexpr std::size_t kSarifInvocationMargin = 10;

// One result of a run, of which there may be millions.
struct SarifResult {
    std::uint32_t package;     // its place in the run
    std::uint32_t finding;     // its place among the merged findings of the package
    std::uint32_t occurrence;  // of its fingerprint in the run, from 1
    std::uint32_t rule;        // its place among the rules of SarifParts
    std::uint8_t rank;         // grave ones come first, then those that count, then by severity
};

// A list in a document that waits on disk.
class SpooledList {
public:
    explicit SpooledList(const JsonList& list) : list_(list) {}

    void add(const nlohmann::ordered_json& element);
    // Writes the elements, but not the end of the list.
    void write(std::ostream* stream) const;
    // The list as it stands behind its last element.
    const JsonList& list() const { return list_; }

private:
    JsonList list_;
    Spool spool_;
};

// The packages of a run as artifacts, each once even where it was named twice.
class SarifPackages {
public:
    void add(const PackageReport& package, const ReportStyle& style);
    // Where package stands in the list of artifacts, and that as an artifact location.
    std::size_t index(const PackageReport& package) const { return places_.at(package.path); }
    nlohmann::ordered_json location(const PackageReport& package) const;

    std::size_t size() const { return places_.size(); }
    const SpooledList& list() const { return list_; }

private:
    SpooledList list_{JsonList(kSarifRunMargin)};
    std::map<std::string, std::size_t> places_;  // by paths
};

// The artifacts of a document behind those of the packages: the files that results are about.
class SarifFiles {
public:
    explicit SarifFiles(const SarifPackages& packages)
        : packages_(packages), list_(packages.list().list()) {}

    // Where the file at path in package stands. It is added to the list when it is not there.
    nlohmann::ordered_json location(const PackageReport& package, const std::string& path);

    // Writes all artifacts.
    void write(std::ostream* stream) const;

private:
    const SarifPackages& packages_;
    SpooledList list_;
    std::map<std::pair<std::size_t, std::string>, std::size_t> places_;
};

// What the documents of a run have in common. They are gathered as packages come, and take a few
// bytes of memory for each result and each path.
class SarifParts {
public:
    SarifParts(const RunReport& run, const ReportStyle& style);

    std::vector<SarifResult> results;  // in the order of the packages
    std::vector<std::string> rules;    // that results break
    SarifPackages packages;
    // What could not be judged, or not whole.
    SpooledList failures{JsonList(kSarifInvocationMargin)};
    bool isWhole = true;  // there are no failures

private:
    void addFailure(const PackageReport& package);
};

// The document of run that tells of results. It is the one of that number, from 1, of those that
// the run is divided into.
Spool sarifDocument(const RunReport& run, const SarifParts& parts,
                    std::span<const SarifResult> results, std::size_t number);

// The rules that a document speaks of, each with its place in the driver's list. The list is
// sorted, so that places do not depend on the order of the packages.
using SarifRules = std::map<std::string, std::size_t>;

SarifRules sarifRules(std::span<const SarifResult> results, const std::vector<std::string>& rules);

// The tool with these rules.
nlohmann::ordered_json sarifTool(const SarifRules& rules, const std::string& version);

// A place in an artifact.
nlohmann::ordered_json sarifPhysicalLocation(nlohmann::ordered_json artifactLocation);

// A remark on the run itself.
nlohmann::ordered_json sarifNotification(std::string_view id, const char* level,
                                         const std::string& text);

// text as a message.
nlohmann::ordered_json sarifMessage(std::string_view text);

// Text out of a package as a message, so that "[x](y)" in it is not taken for a link.
nlohmann::ordered_json foreignSarifMessage(const std::string& text);

const char* sarifLevel(Severity severity);

}  // namespace pkgvet::cli
