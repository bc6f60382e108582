// The rule on the sandbox section of the desktop file.
#include <algorithm>
#include <array>
#include <iterator>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "pkgvet/content/content_validator.h"
#include "pkgvet/content/content_validator_private.h"
#include "pkgvet/desktop/desktop_entry.h"
#include "pkgvet/desktop/desktop_messages.h"
#include "pkgvet/desktop/intents.h"
#include "pkgvet/desktop/sandbox_services.h"
#include "pkgvet/desktop/violation.h"
#include "pkgvet/desktop/vocabulary.h"
#include "pkgvet/package/rpm_meta.h"
#include "pkgvet/pattern/regex.h"
#include "pkgvet/pattern/rule_pattern.h"
#include "pkgvet/report/logger.h"
#include "pkgvet/rules/configuration.h"

namespace {

using pkgvet::kTextPattern;
using pkgvet::reportViolation;

// In the order of the search, of which the last hit counts.
constexpr std::array<std::string_view, 3> kSections = {
    pkgvet::kApplicationSection, pkgvet::kDeprecatedSection, pkgvet::kDisallowedSection};

constexpr std::string_view kOrganizationNameKey = "OrganizationName";
constexpr std::string_view kApplicationNameKey = "ApplicationName";
constexpr std::string_view kIntentsKey = "Intents";
constexpr std::array<std::string_view, 6> kKeys = {pkgvet::kPermissionsKey, kOrganizationNameKey,
                                                   kApplicationNameKey,     pkgvet::kExecDBusKey,
                                                   "ExportDBusInterfaces",  kIntentsKey};
constexpr std::array<std::string_view, 4> kSystemServiceKeys = {
    pkgvet::kSystemServiceKey, pkgvet::kSystemServiceUserKey, pkgvet::kSystemServiceGroupKey,
    "ExecSystemServiceAutostart"};

// The one profile whose applications may bring a system service.
constexpr std::string_view kSystemServiceProfile = "mdm";

constexpr std::string_view kLegalOrganizationName = "^[0-9a-z._-]+$";
constexpr std::string_view kLeadingDigit = "(^|[.])[0-9].*";
constexpr std::string_view kTwoComponents = R"([^.]+\..+)";
constexpr std::string_view kLegalApplicationName = "^[A-Za-z_-][A-Z0-9a-z_.-]*$";
constexpr std::string_view kNameAtName = "^[^@]+@[^@]+$";

constexpr std::array<std::string_view, 4> kReservedParts = {".instance_", ".task_", ".tessara_",
                                                            ".service_"};
constexpr char kHyphen = '-';
constexpr char kNameSeparator = '.';

using Record = ContentValidatorPrivate;

struct Outcome {
    bool (*applies)(const Record& record);
    LogLevel level;
    std::string_view text;
};

// In the order of the report. The words of the last two are the reverse of their gravity.
constexpr std::array<Outcome, 12> kOutcomes = {{
    {[](const Record& r) { return r.desktopFacts.pinfoldSection; }, LogLevel::Error,
     pkgvet::kSectionDisallowed},
    {[](const Record& r) { return r.desktopFacts.illegalCharacters; }, LogLevel::Error,
     pkgvet::kApplicationNameIllegal},
    {[](const Record& r) { return !r.desktopFacts.correctOrgNameAppNamePair; }, LogLevel::Error,
     pkgvet::kNamePairWrong},
    {[](const Record& r) { return !r.desktopFacts.correctOrgName; }, LogLevel::Error,
     pkgvet::kOrganizationNameIllegal},
    {[](const Record& r) { return r.desktopFacts.wrongLeadingOrgName; }, LogLevel::Error,
     pkgvet::kOrganizationNameLeadingDigit},
    {[](const Record& r) { return !r.desktopFacts.orgDomainName; }, LogLevel::Error,
     pkgvet::kOrganizationNameNoDomain},
    {[](const Record& r) { return !r.desktopFacts.correctDbus; }, LogLevel::Error,
     pkgvet::kDBusWrong},
    {[](const Record& r) { return !r.desktopFacts.correctSystemService; }, LogLevel::Error,
     pkgvet::kSystemServiceWrong},
    {[](const Record& r) { return r.desktopFacts.incompleteSystemService; }, LogLevel::Error,
     pkgvet::kSystemServiceIncomplete},
    {[](const Record& r) { return !r.desktopFacts.correctSystemServiceAccount; }, LogLevel::Error,
     pkgvet::kSystemServiceAccountWrong},
    {[](const Record& r) { return r.desktopFacts.dbusError; }, LogLevel::Error,
     pkgvet::kHyphenBreaksServices},
    {[](const Record& r) { return !r.desktopFacts.dbusError && r.desktopFacts.dbusWarning; },
     LogLevel::Warning, pkgvet::kHyphenNotRecommended},
}};

bool isFound(std::string_view pattern, const std::string& text) {
    return Regex::matchSimple(pattern, text, kTextPattern.compile, kTextPattern.match);
}

// False when there is no section to judge.
bool chooseSection(const DesktopEntry& entry, Record* record) {
    record->desktopFacts.pinfoldSection = entry.hasGroup(pkgvet::kDisallowedSection);
    std::vector<std::string_view> present;
    std::copy_if(kSections.begin(), kSections.end(), std::back_inserter(present),
                 [&entry](std::string_view section) { return entry.hasGroup(section); });
    if (present.size() > 1) {
        record->desktopFacts.multiplePinfoldSection = true;
        reportViolation(record, {pkgvet::kMultipleSections});
    }
    if (present.empty()) {
        reportViolation(record, {pkgvet::kSectionMissing});
        return false;
    }
    record->desktopFacts.pinfoldGroupName = present.back();
    if (present.back() == pkgvet::kDeprecatedSection) {
        record->desktopFacts.deprecatedPinfoldSection = true;
        Logger::log(LogLevel::Warning, {pkgvet::kSectionDeprecated});
    }
    record->desktopFacts.isSandboxed = true;
    return true;
}

void judgeKeys(const DesktopEntry& entry, bool mayHaveSystemService, Record* record) {
    for (const std::string& key : entry.keys(record->desktopFacts.pinfoldGroupName)) {
        if (!pkgvet::contains(kKeys, key) &&
            !(mayHaveSystemService && pkgvet::contains(kSystemServiceKeys, key))) {
            reportViolation(record, {"[", key, pkgvet::kSandboxKeyNotAllowed});
        }
    }
}

void readOrganizationName(const DesktopEntry& entry, Record* record) {
    const std::string name =
        entry.string(record->desktopFacts.pinfoldGroupName, kOrganizationNameKey);
    record->desktopFacts.organizationName = name;
    record->desktopFacts.correctOrgName = isFound(kLegalOrganizationName, name);
    record->desktopFacts.wrongLeadingOrgName = isFound(kLeadingDigit, name);
    record->desktopFacts.orgDomainName = isFound(kTwoComponents, name);
}

void readApplicationName(const DesktopEntry& entry, Record* record) {
    const std::string name =
        entry.string(record->desktopFacts.pinfoldGroupName, kApplicationNameKey);
    record->desktopFacts.applicationName = name;
    record->desktopFacts.illegalCharacters = !isFound(kLegalApplicationName, name);
}

// Anywhere in the name, although the message calls it a prefix.
void judgeReservedParts(Record* record) {
    for (const std::string_view part : kReservedParts) {
        if (record->desktopFacts.applicationName.find(part) != std::string::npos) {
            reportViolation(record, {pkgvet::kReservedPart, part});
        }
    }
}

void compareWithPackageName(const std::string& packageName, Record* record) {
    record->desktopFacts.correctOrgNameAppNamePair =
        packageName == record->desktopFacts.organizationName + kNameSeparator +
                           record->desktopFacts.applicationName;
}

void noteHyphen(Record* record) {
    if (record->desktopFacts.applicationName.find(kHyphen) != std::string::npos) {
        record->desktopFacts.dbusWarning = true;
    }
}

// A permission of the form name at name belongs to another application and stands on no list.
void judgePermissions(const DesktopEntry& entry, const std::unordered_set<std::string>& allowed,
                      Record* record) {
    const Regex nameAtName(kNameAtName, kTextPattern.compile, kTextPattern.match);
    for (const std::string& permission :
         entry.stringList(record->desktopFacts.pinfoldGroupName, pkgvet::kPermissionsKey)) {
        if (!nameAtName.match(permission) && allowed.count(permission) == 0) {
            reportViolation(record, {"[", permission, pkgvet::kPermissionNotAllowed});
        }
    }
}

void judgeIntents(const DesktopEntry& entry, Record* record) {
    if (!validateIntents(entry.stringList(record->desktopFacts.pinfoldGroupName, kIntentsKey))) {
        record->failures |= pkgvet::kViolation;
    }
}

void reportOutcome(Record* record) {
    for (const Outcome& outcome : kOutcomes) {
        if (!outcome.applies(*record)) {
            continue;
        }
        if (outcome.level == LogLevel::Error) {
            record->failures |= pkgvet::kViolation;
        }
        Logger::log(outcome.level, {outcome.text});
    }
}

}  // namespace

// What concerns one key or permission is logged while the section is read, and what the section as
// a whole amounts to at the end.
void ContentValidator::processPinfold(const Configuration& configuration, const RpmMeta& meta,
                                      const DesktopEntry& entry, const std::string& tempDir) {
    if (!chooseSection(entry, d_ptr.get())) {
        return;
    }
    const bool mayHaveSystemService = configuration.name() == kSystemServiceProfile;
    judgeKeys(entry, mayHaveSystemService, d_ptr.get());
    readOrganizationName(entry, d_ptr.get());
    readApplicationName(entry, d_ptr.get());
    judgeReservedParts(d_ptr.get());
    compareWithPackageName(meta.name(), d_ptr.get());
    noteHyphen(d_ptr.get());
    pkgvet::judgeDBusService(entry, meta.name(), tempDir, d_ptr.get());
    if (mayHaveSystemService) {
        pkgvet::judgeSystemService(entry, meta.name(), d_ptr.get());
    }
    judgePermissions(entry, configuration.allowedPermissions(), d_ptr.get());
    judgeIntents(entry, d_ptr.get());
    reportOutcome(d_ptr.get());
}
