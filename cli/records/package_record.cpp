// Reads packages, judgements and findings.
#include "cli/records/package_record.h"

#include <array>
#include <limits>
#include <nlohmann/json.hpp>

#include "cli/catalogue/catalogue.h"

namespace pkgvet::cli {

namespace {

constexpr std::uint64_t kMostPackages = std::numeric_limits<std::uint32_t>::max();

constexpr std::uint64_t kMostFindings = std::numeric_limits<std::uint32_t>::max();

constexpr const char* kContradiction = "does not follow from the other members";

// In the order of the enumerations.
constexpr std::array<std::string_view, 4> kSeverities = {"info", "warning", "error", "critical"};
constexpr std::array<std::string_view, 3> kStandings = {"counts", "waived", "known"};
constexpr std::array<std::string_view, 11> kCauseCodes = {
    "",          "unreadable",     "not-a-package", "unpack-failed",
    "too-large", "too-many-files", "out-of-time",   "out-of-memory",
    "crashed",   "rule-failed",    "interrupted"};

Finding readFinding(const Fields& fields, const std::string& package) {
    Finding finding;
    finding.rule = fields.text("rule");
    fields.require(findEntry(finding.rule) != nullptr, "rule",
                   "is not the id of a rule that this version knows");
    finding.severity = static_cast<Severity>(fields.word("severity", kSeverities));
    finding.subject = fields.bytesOrNone("subject");
    finding.message = fields.bytes("message");
    finding.standing = static_cast<Standing>(fields.word("standing", kStandings));
    finding.reason = fields.bytes("reason");
    if (fields.has("count")) {
        finding.count = fields.number("count", 2, kMostFindings);
    }
    // The fingerprint of a report is what other tools follow a finding by.
    fields.require(fields.text("fingerprint") == fingerprintOf(package, finding), "fingerprint",
                   kContradiction);
    return finding;
}

Judgement readJudgement(const Fields& fields, const std::string& package) {
    Judgement judgement;
    judgement.profile = fields.bytes("profile");
    judgement.metaAccepted = fields.flag("meta_accepted");
    judgement.contentAccepted = fields.flag("content_accepted");
    judgement.intact = fields.flag("intact");
    judgement.passes = fields.flag("passes");
    fields.require(fields.flag("accepted") == judgement.accepted(), "accepted", kContradiction);
    fields.require(judgement.intact || !judgement.passes, "passes", kContradiction);
    for (const Fields& finding : fields.objects("findings")) {
        judgement.findings.push_back(readFinding(finding, package));
    }
    return judgement;
}

void readIdentity(const Fields& fields, PackageReport* package) {
    package->path = fields.bytes("path");
    package->name = fields.bytes("name");
    package->version = fields.bytes("version");
    package->release = fields.bytes("release");
    package->arch = fields.bytes("arch");
    package->sha256 = fields.digest("sha256");
    if (fields.has("judged_by")) {
        package->judgedBy = fields.digest("judged_by");
    }
    if (fields.has("position")) {
        package->position = fields.number("position", 1, kMostPackages);
    }
    if (fields.has("seconds")) {
        package->seconds = fields.seconds("seconds");
    }
}

void readCause(const Fields& fields, PackageReport* package) {
    package->cause = fields.bytes("cause");
    // Words come from the enumeration, in which the first one stands for none.
    if (const std::optional<std::string> code = fields.bytesOrNone("cause_code")) {
        package->causeCode = static_cast<CauseCode>(fields.word("cause_code", kCauseCodes));
    }
    fields.require(package->judged() == (package->causeCode == CauseCode::None), "cause_code",
                   kContradiction);
    package->incomplete = fields.bytes("incomplete");
    package->lastErrorLine = fields.bytes("last_words");
}

}  // namespace

PackageReport readPackage(const Fields& fields) {
    PackageReport package;
    readIdentity(fields, &package);
    package.validationEnabled = fields.flag("validation_enabled");
    readCause(fields, &package);
    for (const Fields& judgement : fields.objects("judgements")) {
        package.judgements.push_back(readJudgement(judgement, package.name));
    }
    // A package without any would count as one that passes.
    fields.require(package.judged() != package.judgements.empty(), "judgements", kContradiction);
    fields.require(fields.flag("complete") == package.complete(), "complete", kContradiction);
    fields.require(fields.flag("passes") == package.passes(), "passes", kContradiction);
    return package;
}

}  // namespace pkgvet::cli
