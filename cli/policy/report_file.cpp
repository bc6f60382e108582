// Reads reports. Of what they hold only what is needed is looked at, since later versions add keys.
#include "cli/policy/report_file.h"

#include <nlohmann/json.hpp>

#include "cli/base/json_place.h"
#include "cli/base/strict_json.h"

namespace pkgvet::cli {

namespace {

using Json = nlohmann::json;

constexpr const char* kSchemaVersion = "schema_version";
constexpr const char* kPackages = "packages";
constexpr const char* kJudgements = "judgements";
constexpr const char* kFindings = "findings";
constexpr const char* kCounts = "counts";

class ReportReader {
public:
    ReportReader(const std::string& path, std::vector<Fault>* faults) : reader_(path, faults) {}

    std::vector<ReportedFinding> read() {
        const Json root = reader_.load();
        if (root.is_null()) {
            return {};
        }
        if (root.value(kSchemaVersion, Json()) != 1) {
            reader_.report(kSchemaVersion, "is not that of a report that this version can read");
            return {};
        }
        for (const auto& [key, package] : reader_.objects(root, std::string(), kPackages)) {
            readPackage(package, key);
        }
        return std::move(findings_);
    }

private:
    void readPackage(const Json& package, const std::string& place) {
        for (const auto& [key, judgement] : reader_.objects(package, place, kJudgements)) {
            for (const auto& [at, finding] : reader_.objects(judgement, key, kFindings)) {
                readFinding(finding, at, reader_.text(package, place, "name"));
            }
        }
    }

    void readFinding(const Json& object, const std::string& place, const std::string& package) {
        ReportedFinding finding;
        finding.package = package;
        finding.rule = reader_.text(object, place, "rule");
        finding.severity = reader_.text(object, place, "severity");
        finding.counts = reader_.text(object, place, "standing") == kCounts;
        finding.standsForOthers = object.contains("count");
        if (!object.value("subject", Json()).is_null()) {
            finding.subject = reader_.text(object, place, "subject");
        }
        findings_.push_back(finding);
    }

    JsonReader reader_;
    std::vector<ReportedFinding> findings_;
};

}  // namespace

std::vector<ReportedFinding> readReport(const std::string& path, std::vector<Fault>* faults) {
    return ReportReader(path, faults).read();
}

}  // namespace pkgvet::cli
