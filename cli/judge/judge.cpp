// Takes one package through the library.
#include "cli/judge/judge.h"

#include <algorithm>
#include <exception>
#include <iostream>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <utility>

#include "cli/catalogue/catalogue.h"
#include "cli/integrity/integrity_check.h"
#include "cli/integrity/payload_irregularity.h"
#include "cli/integrity/payload_memory.h"
#include "cli/integrity/set_id_modes.h"
#include "cli/judge/finding_capture.h"
#include "cli/judge/finding_list.h"
#include "cli/judge/identify.h"
#include "cli/judge/package_copy.h"
#include "pkgvet/content/content_validator.h"
#include "pkgvet/meta/meta_validator.h"
#include "pkgvet/package/rpm_meta.h"
#include "pkgvet/rules/configuration.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kNotAPackage = "not an RPM package";
constexpr const char* kNotUnpacked = "the payload did not unpack";
constexpr const char* kNotToItsEnd = "the payload did not unpack to its end";
constexpr const char* kIrregular =
    "the payload is irregular and was not unpacked, so that no rule on files ran";
constexpr const char* kNoGuard = "the guard in the place of cpio did not run";
constexpr const char* kRuleFailed = "a rule failed: ";

// librpm puts the path ahead of what it has to say.
std::string withoutPath(const std::string& message, const std::string& path) {
    const std::size_t position = message.find(path + ": ");
    return position == std::string::npos ? message : message.substr(position + path.size() + 2);
}

std::string unreadable(const std::string& message, const std::string& path) {
    return message.empty() ? kNotAPackage
                           : std::string(kNotAPackage) + ": " + withoutPath(message, path);
}

// Rules remember what they found, so that each configuration has a validator of its own. They share
// one tree, which the first of them to be destroyed would remove: none ever is, since the whole
// world ends sooner.
void judgeContent(const std::vector<Configuration>& configurations, const RpmMeta& meta,
                  const ContentValidator& unpacked, FindingList* findings, PackageReport* report) {
    for (const Configuration& configuration : configurations) {
        auto* const validator = new ContentValidator(unpacked);
        Judgement judgement;
        judgement.profile = configuration.name();
        judgement.metaAccepted = MetaValidator().validateMeta(configuration, meta);
        judgement.contentAccepted = validator->validateContent(configuration, meta);
        judgement.passes = judgement.accepted();
        judgement.findings = findings->take();
        report->judgements.push_back(std::move(judgement));
    }
}

// The header is held against the payload meanwhile, if check is not null. If both that and a rule
// fail, its failure is reported, so that the answer does not depend on which came first.
void judgePayload(const std::vector<Configuration>& configurations, const RpmMeta& meta,
                  ContentValidator* unpacked, IntegrityCheck* check, FindingList* findings,
                  PackageReport* report) {
    if (check == nullptr) {
        unpacked->rememberFiles(meta);
        return judgeContent(configurations, meta, *unpacked, findings, report);
    }
    check->compareTree();
    try {
        unpacked->rememberFiles(
            meta, [check](const struct stat& status) { return check->holdsHardcodedPath(status); });
        judgeContent(configurations, meta, *unpacked, findings, report);
    } catch (const std::exception&) {
        check->awaitComparison();
        throw;
    }
}

void describe(const RpmMeta& meta, PackageReport* report) {
    report->name = meta.name();
    report->version = meta.version();
    report->release = meta.release();
    report->arch = meta.arch();
}

RpmMeta readHeader(const std::string& path, RpmSession* rpm) {
    RpmMeta meta(path.c_str(), rpm->transactions());
    const std::string message = rpm->takeMessage();
    if (meta.name().empty()) {
        throw NotJudged{{CauseCode::NotAPackage, unreadable(message, path)}};
    }
    return meta;
}

// Nothing is unpacked without the guard.
ContentValidator* unpack(const Surroundings& surroundings, const SetIdModes& setIdModes) {
    const Cause cause = surroundings.placeGuard(setIdModes);
    if (cause.code != CauseCode::None) {
        throw NotJudged{cause};
    }
    return new ContentValidator(surroundings.copyPath);
}

// Why the payload did not unpack. The tools do not say that they had too little memory.
Cause causeOfFailure(const Surroundings& surroundings, const GuardNote& note, RpmSession* rpm) {
    if (note.end == GuardEnd::OutOfMemory) {
        return {CauseCode::OutOfMemory, kOutOfMemory};
    }
    const Cause limit = surroundings.limitMet();
    if (limit.code != CauseCode::None) {
        return limit;
    }
    if (isShortOfMemory(surroundings.copyPath, rpm)) {
        return {CauseCode::OutOfMemory, kOutOfMemory};
    }
    return {CauseCode::UnpackFailed, note.end == GuardEnd::CutShort ? kNotToItsEnd : kNotUnpacked};
}

// What the guard found irregular, nothing when all of the payload was unpacked. All else that did
// not unpack is not judged.
std::optional<Finding> irregularityOf(const Surroundings& surroundings, bool isUnpacked,
                                      RpmSession* rpm) {
    const std::optional<GuardNote> note = surroundings.guardNote();
    if (!note) {
        throw NotJudged{{CauseCode::Crashed, kNoGuard}};
    }
    if (note->end == GuardEnd::Irregular) {
        return irregularityFinding(*note);
    }
    if (isUnpacked && note->end == GuardEnd::Whole) {
        return std::nullopt;
    }
    throw NotJudged{causeOfFailure(surroundings, *note, rpm)};
}

// Without the payload its rules would look at the files of this machine under the package's names.
void judgeHeaderAlone(const std::vector<Configuration>& configurations, const RpmMeta& meta,
                      FindingList* findings, PackageReport* report) {
    report->incomplete = kIrregular;
    for (const Configuration& configuration : configurations) {
        Judgement judgement;
        judgement.profile = configuration.name();
        judgement.metaAccepted = MetaValidator().validateMeta(configuration, meta);
        judgement.findings = findings->take();
        report->judgements.push_back(std::move(judgement));
    }
}

void append(const std::vector<Finding>& more, std::vector<Finding>* findings) {
    findings->insert(findings->end(), more.begin(), more.end());
}

// The program's own rules make a verdict of their own.
void addIntegrity(const std::vector<Finding>& findings, Judgement* judgement) {
    judgement->intact = std::none_of(findings.begin(), findings.end(),
                                     [](const Finding& finding) { return isGrave(finding); });
    judgement->passes = judgement->passes && judgement->intact;
    append(findings, &judgement->findings);
}

// What was found of the package, and behind it what depends on the profile.
void addIntegrity(const std::vector<Finding>& findings, const std::optional<IntegrityCheck>& check,
                  const std::vector<Configuration>& configurations, PackageReport* report) {
    for (std::size_t i = 0; i < configurations.size(); ++i) {
        std::vector<Finding> all = findings;
        if (check) {
            append(check->findingsOnPlaces({report->name, configurations[i].libexecDir(),
                                            configurations[i].pathsList()}),
                   &all);
        }
        addIntegrity(all, &report->judgements[i]);
    }
}

void judgeCopy(const Surroundings& surroundings, const std::vector<Configuration>& configurations,
               const IntegrityOptions& integrity, RpmSession* rpm, PackageReport* report) {
    FindingList findings;
    const FindingCapture capture(
        std::cerr, [&findings](const LogLine& line) { findings.add(identify(line)); });
    PackageCopy copy(surroundings.package, surroundings.copyPath, &report->sha256);
    surroundings.closePackage();
    const RpmMeta meta = readHeader(surroundings.copyPath, rpm);
    describe(meta, report);
    const PackageHeader header(surroundings.copyPath, rpm->transactions());
    // Before the check, which has the header to itself from then on.
    const SetIdModes setIdModes = readSetIdModes(header);
    std::optional<IntegrityCheck> check;
    if (integrity.enabled) {
        check.emplace(header, surroundings.copyPath, surroundings.tree, !integrity.keyring.empty(),
                      rpm);
    }
    ContentValidator* const content = unpack(surroundings, setIdModes);
    copy.finish();
    if (check) {
        check->awaitVerification();
    }
    std::vector<Finding> own;
    if (std::optional<Finding> irregularity =
            irregularityOf(surroundings, content->extracted(), rpm)) {
        own.push_back(std::move(*irregularity));
        judgeHeaderAlone(configurations, meta, &findings, report);
    } else {
        surroundings.closeAround();
        judgePayload(configurations, meta, content, check ? &*check : nullptr, &findings, report);
    }
    if (check) {
        append(check->findings(), &own);
    }
    addIntegrity(own, check, configurations, report);
}

}  // namespace

PackageReport judge(const Surroundings& surroundings,
                    const std::vector<Configuration>& configurations,
                    const IntegrityOptions& integrity, RpmSession* rpm) {
    PackageReport report;
    report.validationEnabled = configurations.front().validationEnabled();
    try {
        judgeCopy(surroundings, configurations, integrity, rpm, &report);
    } catch (const NotJudged& end) {
        report.setCause(end.cause);
    } catch (const std::bad_alloc&) {
        report.setCause({CauseCode::OutOfMemory, kOutOfMemory});
    } catch (const std::exception& error) {
        report.setCause({CauseCode::RuleFailed, std::string(kRuleFailed) + error.what()});
    }
    if (!report.judged()) {
        report.judgements.clear();
    }
    return report;
}

}  // namespace pkgvet::cli
