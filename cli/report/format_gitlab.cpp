// Writes a Code Quality report of GitLab.
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "cli/base/escape.h"
#include "cli/base/text_counts.h"
#include "cli/catalogue/catalogue.h"
#include "cli/model/kept_packages.h"
#include "cli/report/format_json.h"
#include "cli/report/formats.h"
#include "cli/report/tally.h"

namespace pkgvet::cli {

namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kRunPath = "pkgvet";  // where what is about the run itself stands
constexpr std::string_view kHere = "./";
constexpr int kFirstLine = 1;

const char* severityOf(const Finding& finding) {
    if (isGrave(finding)) {
        return "blocker";
    }
    switch (finding.severity) {
        case Severity::Info:
            return "info";
        case Severity::Warning:
            return "minor";
        case Severity::Error:
            return "major";
        case Severity::Critical:
            break;
    }
    return "critical";
}

// GitLab looks for paths in the repository, and does not know them with "./" in front.
std::string pathOf(const std::string& path) {
    return printable(path.starts_with(kHere) ? path.substr(kHere.size()) : path);
}

Json degradation(const std::string& check, const std::string& description,
                 const std::string& fingerprint, const char* severity, const std::string& path) {
    return {{"description", description},
            {"check_name", check},
            {"fingerprint", fingerprint},
            {"severity", severity},
            {"location", {{"path", pathOf(path)}, {"lines", {{"begin", kFirstLine}}}}}};
}

class Writer {
public:
    explicit Writer(std::ostream* stream) : stream_(*stream) {}

    void add(const PackageReport& package) {
        addFailure(package);
        for (const MergedFinding& merged : mergedFindings(package)) {
            const Finding& finding = *merged.finding;
            // The report has no place for what is excused.
            if (finding.standing == Standing::Counts) {
                write(degradation(finding.rule,
                                  printable(finding.message + profilesNote(package, merged)),
                                  nextFingerprint(package.name, finding.rule, finding),
                                  severityOf(finding), package.path));
            }
        }
    }

    void finish(bool isPartial) {
        if (isPartial) {
            const std::string id(kPartialId);
            write(degradation(id, std::string(kInterruptedText), nextFingerprint(kRunPath, id),
                              "blocker", kRunPath));
        }
        list_.finish(&stream_);
        stream_ << '\n';
    }

private:
    // A package that was not judged, or not whole, must not look clean.
    void addFailure(const PackageReport& package) {
        if (!package.complete()) {
            const std::string id(package.judged() ? kIncompleteId : kNotJudgedId);
            write(degradation(id, printable(package.judged() ? package.incomplete : package.cause),
                              nextFingerprint(package.path, id), "blocker", package.path));
        }
    }

    // GitLab drops what has a fingerprint that came before, so equals are numbered.
    std::string nextFingerprint(const std::string& package, const std::string& rule,
                                const Finding& finding = {}) {
        Finding identity = finding;
        identity.rule = rule;
        const std::string fingerprint = fingerprintOf(package, identity);
        const std::size_t occurrence = seen_.add(fingerprint);
        return occurrence == 1 ? fingerprint : fingerprint + "-" + std::to_string(occurrence);
    }

    void write(const Json& json) { list_.add(json, &stream_); }

    std::ostream& stream_;
    JsonList list_{0};
    TextCounts seen_;
};

}  // namespace

void finishGitlab(const RunReport& run, const ReportStyle& /*style*/, std::ostream& stream) {
    Writer writer(&stream);
    forEachPackage(run, [&writer](const PackageReport& package) { writer.add(package); });
    writer.finish(run.partial);
}

}  // namespace pkgvet::cli
