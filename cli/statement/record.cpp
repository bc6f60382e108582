// Makes records of verdicts.
#include "cli/statement/record.h"

#include <algorithm>
#include <set>

#include "cli/base/checksum.h"
#include "cli/base/escape.h"
#include "cli/base/text_counts.h"
#include "cli/base/version.h"
#include "cli/catalogue/catalogue.h"
#include "cli/model/kept_packages.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kProgramInput = "pkgvet";
constexpr const char* kProgramUri = "pkg:generic/pkgvet@";
constexpr const char* kOptionsInput = "options";
constexpr const char* kKeyringInput = "keyring";
constexpr const char* kWaiversInput = "waivers";
constexpr const char* kBaselineInput = "baseline";

constexpr const char* kOn = "on";
constexpr const char* kOff = "off";

// The chapters by rules that stand in them.
constexpr std::string_view kOfHeader = "scripts-not-allowed";
constexpr std::string_view kOfIntegrity = "source-package";

// These look only where there are keys to look with.
constexpr std::string_view kWithKeys[] = {"package-not-signed", "signature-not-good"};

constexpr std::size_t kLongestName = 100;
constexpr const char* kSuffix = ".intoto.json";

std::string onOrOff(bool isOn) {
    return isOn ? kOn : kOff;
}

// Tells builds of one version apart that do not have the same rules.
std::string digestOfRules() {
    Checksum sum;
    for (const Entry* entry : entries()) {
        sum.add(entry->id);
        sum.add("\n");
    }
    return sum.finish();
}

RecordedInput programInput() {
    static const std::string digest = digestOfRules();
    return {kProgramInput, kProgramUri + programVersion(), digest, {{"version", programVersion()}}};
}

// What is not a file of its own but changes verdicts.
RecordedInput optionsInput(const PackageReport& package, const Provenance& provenance) {
    RecordedInput input{kOptionsInput, "", "", {}};
    input.annotations["validation"] = onOrOff(package.validationEnabled);
    input.annotations["integrity"] = onOrOff(provenance.integrity);
    if (!provenance.failOn.empty()) {
        input.annotations["fail-on"] = provenance.failOn;
    }
    Checksum sum;
    for (const auto& [name, value] : input.annotations) {
        sum.add(name + "=" + value + "\n");
    }
    input.digest = sum.finish();
    return input;
}

std::string rulesDigest(const Provenance& provenance, const std::string& profile) {
    for (const ProfileRules& rules : provenance.profiles) {
        if (rules.name == profile) {
            return rules.digest;
        }
    }
    return std::string();
}

std::vector<RecordedInput> configurationOf(const PackageReport& package, const Judgement& judgement,
                                           const Provenance& provenance) {
    std::vector<RecordedInput> inputs = {programInput(),
                                         {kRulesInput,
                                          "",
                                          rulesDigest(provenance, judgement.profile),
                                          {{kProfileAnnotation, printable(judgement.profile)}}},
                                         optionsInput(package, provenance)};
    if (!provenance.keyring.empty()) {
        inputs.push_back({kKeyringInput, "", provenance.keyring});
    }
    for (const std::string& digest : provenance.waivers) {
        inputs.push_back({kWaiversInput, "", digest});
    }
    if (!provenance.baseline.empty()) {
        inputs.push_back({kBaselineInput, "", provenance.baseline});
    }
    return inputs;
}

bool isInChapterOf(const Entry& entry, std::string_view id) {
    return &chapterOf(entry) == &chapterOf(*findEntry(id));
}

// Whether the rule ran on the package. Where that is not certain, it did not.
bool looked(const Entry& entry, const PackageReport& package, const Provenance& provenance) {
    if (!package.complete()) {
        return isInChapterOf(entry, kOfHeader);
    }
    if (isInChapterOf(entry, kOfIntegrity) && !provenance.integrity) {
        return false;
    }
    const bool needsKeys =
        std::find(std::begin(kWithKeys), std::end(kWithKeys), entry.id) != std::end(kWithKeys);
    return !isInChapterOf(entry, kOtherRemark) && (!needsKeys || !provenance.keyring.empty());
}

// What is excused does not reject, and neither does anything where the package passes.
bool rejects(const Finding& finding, const Judgement& judgement, const Provenance& provenance) {
    const bool isGraveEnough = finding.severity >= Severity::Error ||
                               (finding.severity == Severity::Warning &&
                                provenance.failOn == severityName(Severity::Warning));
    return !judgement.passes && finding.standing == Standing::Counts && isGraveEnough;
}

void addTests(const PackageReport& package, const Judgement& judgement,
              const Provenance& provenance, Record* record) {
    std::set<std::string> failed;
    std::set<std::string> warned;
    for (const Finding& finding : judgement.findings) {
        if (finding.rule != kOtherRemark) {
            (rejects(finding, judgement, provenance) ? failed : warned).insert(finding.rule);
        }
    }
    std::set<std::string> passed;
    for (const Entry* entry : entries()) {
        const std::string id(entry->id);
        if (failed.count(id) == 0 && warned.count(id) == 0 && looked(*entry, package, provenance)) {
            passed.insert(id);
        }
    }
    for (const std::string& id : failed) {
        warned.erase(id);
    }
    record->failedTests.assign(failed.begin(), failed.end());
    record->warnedTests.assign(warned.begin(), warned.end());
    record->passedTests.assign(passed.begin(), passed.end());
}

std::string_view resultOf(const Judgement& judgement, const Record& record) {
    if (!judgement.passes) {
        return kFailedResult;
    }
    return record.warnedTests.empty() ? kPassedResult : kWarnedResult;
}

bool isPlainInName(char c) {
    constexpr std::string_view kPlain = "._+-";
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           kPlain.find(c) != std::string_view::npos;
}

// Whatever the package calls itself, the name leads nowhere else, is not hidden and not too long.
// The digest tells packages apart, so that the part before it need not.
std::string fileNameOf(const PackageReport& package, const Judgement& judgement) {
    std::string name = percentEncoded(package.name, isPlainInName).substr(0, kLongestName);
    if (name.starts_with('.')) {
        name.replace(0, 1, "%2E");
    }
    return name + "-" + package.sha256 + "." +
           percentEncoded(judgement.profile, isPlainInName).substr(0, kLongestName) + kSuffix;
}

}  // namespace

std::optional<Record> recordOf(const PackageReport& package, const Judgement& judgement,
                               const Provenance& provenance) {
    if (!package.judged() || rulesDigest(provenance, judgement.profile).empty()) {
        return std::nullopt;
    }
    Record record;
    record.package = printable(package.name);
    record.sha256 = package.sha256;
    record.configuration = configurationOf(package, judgement, provenance);
    addTests(package, judgement, provenance, &record);
    record.result = resultOf(judgement, record);
    return record;
}

void forEachRecord(const RunReport& run,
                   const std::function<void(const NamedRecord& named)>& receive) {
    TextCounts files;
    forEachPackage(run, [&](const PackageReport& package) {
        for (const Judgement& judgement : package.judgements) {
            std::optional<Record> record = recordOf(package, judgement, run.provenance);
            const std::string file = fileNameOf(package, judgement);
            // A package that was named twice has one record.
            if (record && files.add(file) == 1) {
                receive({file, std::move(*record)});
            }
        }
    });
}

}  // namespace pkgvet::cli
