// Gathers what the documents of a run have in common.
#include "cli/report/sarif_parts.h"

#include "cli/base/escape.h"
#include "cli/base/text_counts.h"
#include "cli/catalogue/catalogue.h"
#include "cli/model/kept_packages.h"

namespace pkgvet::cli {

namespace {

using Json = nlohmann::ordered_json;

// Each part weighs more than those behind it together.
constexpr unsigned kNotGrave = 8;
constexpr unsigned kExcused = 4;

std::uint8_t rankOf(const Finding& finding) {
    const auto severity =
        static_cast<unsigned>(Severity::Critical) - static_cast<unsigned>(finding.severity);
    return static_cast<std::uint8_t>((isGrave(finding) ? 0 : kNotGrave) +
                                     (finding.standing == Standing::Counts ? 0 : kExcused) +
                                     severity);
}

// Numbers results as they come.
class ResultList {
public:
    explicit ResultList(SarifParts* parts) : parts_(*parts) {}

    void add(const PackageReport& package) {
        std::uint32_t place = 0;
        for (const MergedFinding& merged : mergedFindings(package)) {
            const Finding& finding = *merged.finding;
            const std::size_t occurrence = occurrences_.add(fingerprintOf(package.name, finding));
            parts_.results.push_back({packages_, place++, static_cast<std::uint32_t>(occurrence),
                                      numberOf(finding.rule), rankOf(finding)});
        }
        ++packages_;
    }

private:
    std::uint32_t numberOf(const std::string& rule) {
        const auto next = static_cast<std::uint32_t>(parts_.rules.size());
        const auto [place, isNew] = rules_.try_emplace(rule, next);
        if (isNew) {
            parts_.rules.push_back(rule);
        }
        return place->second;
    }

    SarifParts& parts_;
    std::uint32_t packages_ = 0;
    std::map<std::string, std::uint32_t> rules_;
    TextCounts occurrences_;
};

// A notification on one package.
Json notificationOn(const PackageReport& package, std::string_view id, const std::string& text,
                    const SarifPackages& packages) {
    Json json = sarifNotification(id, "error", printable(package.path) + text);
    json["locations"] =
        Json::array({{{"physicalLocation", sarifPhysicalLocation(packages.location(package))}}});
    return json;
}

}  // namespace

SarifParts::SarifParts(const RunReport& run, const ReportStyle& style) {
    ResultList list(this);
    forEachPackage(run, [&](const PackageReport& package) {
        packages.add(package, style);
        addFailure(package);
        list.add(package);
    });
}

void SarifParts::addFailure(const PackageReport& package) {
    if (!package.judged()) {
        failures.add(notificationOn(package, kNotJudgedId,
                                    " could not be judged: " + printable(package.cause), packages));
    } else if (!package.complete()) {
        failures.add(notificationOn(package, kIncompleteId,
                                    " was not judged whole: " + printable(package.incomplete),
                                    packages));
    }
    isWhole = isWhole && package.complete();
}

}  // namespace pkgvet::cli
