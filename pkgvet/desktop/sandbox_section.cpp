// The rule on the sandbox section of the desktop file.
#include <algorithm>
#include <array>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "pkgvet/desktop/desktop_entry.h"
#include "pkgvet/desktop/desktop_facts.h"
#include "pkgvet/desktop/desktop_messages.h"
#include "pkgvet/desktop/desktop_rules.h"
#include "pkgvet/desktop/sandbox_services.h"
#include "pkgvet/desktop/vocabulary.h"
#include "pkgvet/pattern/regex.h"
#include "pkgvet/pattern/rule_pattern.h"
#include "pkgvet/report/findings.h"
#include "pkgvet/rules/configuration.h"

namespace pkgvet {

namespace {

// In the order of the search. The last one that is there is the one that is read.
constexpr std::array<std::string_view, 3> kSections = {kApplicationSection, kDeprecatedSection,
                                                       kDisallowedSection};

constexpr std::string_view kOrganizationNameKey = "OrganizationName";
constexpr std::string_view kApplicationNameKey = "ApplicationName";
constexpr std::string_view kIntentsKey = "Intents";
// The same for every profile. Of the exported interfaces only the key is known here: its value is
// not judged.
constexpr std::array<std::string_view, 6> kKeys = {kPermissionsKey,        kOrganizationNameKey,
                                                   kApplicationNameKey,    kExecDBusKey,
                                                   "ExportDBusInterfaces", kIntentsKey};
constexpr std::array<std::string_view, 4> kSystemServiceKeys = {
    kSystemServiceKey, kSystemServiceUserKey, kSystemServiceGroupKey, "ExecSystemServiceAutostart"};

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

// What is reported when a fact has this value.
struct Outcome {
    bool DesktopFacts::*fact;
    bool value;
    const Message* message;
};

// In the order of the report.
constexpr std::array<Outcome, 11> kViolations = {{
    {&DesktopFacts::pinfoldSection, true, &kSectionDisallowed},
    {&DesktopFacts::illegalCharacters, true, &kApplicationNameIllegal},
    {&DesktopFacts::correctOrgNameAppNamePair, false, &kNamePairWrong},
    {&DesktopFacts::correctOrgName, false, &kOrganizationNameIllegal},
    {&DesktopFacts::wrongLeadingOrgName, true, &kOrganizationNameLeadingDigit},
    {&DesktopFacts::orgDomainName, false, &kOrganizationNameNoDomain},
    {&DesktopFacts::correctDbus, false, &kDBusWrong},
    {&DesktopFacts::correctSystemService, false, &kSystemServiceWrong},
    {&DesktopFacts::incompleteSystemService, true, &kSystemServiceIncomplete},
    {&DesktopFacts::correctSystemServiceAccount, false, &kSystemServiceAccountWrong},
    {&DesktopFacts::dbusError, true, &kHyphenBreaksServices},
}};

// Whether there is a section to judge. Several are an error, but one of them is judged all the
// same.
bool chooseSection(const DesktopEntry& entry, DesktopFacts* facts, Findings* findings) {
    facts->pinfoldSection = entry.hasGroup(kDisallowedSection);
    std::vector<std::string_view> present;
    std::copy_if(kSections.begin(), kSections.end(), std::back_inserter(present),
                 [&entry](std::string_view section) { return entry.hasGroup(section); });
    if (present.size() > 1) {
        facts->multiplePinfoldSection = true;
        findings->violation(kMultipleSections);
    }
    if (present.empty()) {
        findings->violation(kSectionMissing);
        return false;
    }
    facts->pinfoldGroupName = present.back();
    if (present.back() == kDeprecatedSection) {
        facts->deprecatedPinfoldSection = true;
        findings->warning(kSectionDeprecated);
    }
    facts->isSandboxed = true;
    return true;
}

void judgeKeys(const DesktopEntry& entry, const std::string& section, bool mayHaveSystemService,
               Findings* findings) {
    for (const std::string& key : entry.keys(section)) {
        if (!contains(kKeys, key) && !(mayHaveSystemService && contains(kSystemServiceKeys, key))) {
            findings->violation(kSandboxKeyNotAllowed, {key});
        }
    }
}

// A missing name is an empty one, which is neither legal nor a domain.
void readOrganizationName(const DesktopEntry& entry, DesktopFacts* facts) {
    const std::string name = entry.string(facts->pinfoldGroupName, kOrganizationNameKey);
    facts->organizationName = name;
    facts->correctOrgName = isPatternFound(kLegalOrganizationName, name, kTextPattern);
    facts->wrongLeadingOrgName = isPatternFound(kLeadingDigit, name, kTextPattern);
    facts->orgDomainName = isPatternFound(kTwoComponents, name, kTextPattern);
}

void readApplicationName(const DesktopEntry& entry, DesktopFacts* facts) {
    const std::string name = entry.string(facts->pinfoldGroupName, kApplicationNameKey);
    facts->applicationName = name;
    facts->illegalCharacters = !isPatternFound(kLegalApplicationName, name, kTextPattern);
}

// Anywhere in the name, although the message calls the part a prefix.
void judgeReservedParts(const std::string& applicationName, Findings* findings) {
    for (const std::string_view part : kReservedParts) {
        if (applicationName.find(part) != std::string::npos) {
            findings->violation(kReservedPart, {part});
        }
    }
}

void compareWithPackageName(const std::string& packageName, DesktopFacts* facts) {
    facts->correctOrgNameAppNamePair =
        packageName == facts->organizationName + kNameSeparator + facts->applicationName;
}

void noteHyphen(DesktopFacts* facts) {
    if (facts->applicationName.find(kHyphen) != std::string::npos) {
        facts->dbusWarning = true;
    }
}

// A permission of the form name at name is accepted without being on the list.
void judgePermissions(const std::vector<std::string>& permissions, const WordSet& allowed,
                      Findings* findings) {
    const Regex nameAtName = textPattern(kNameAtName);
    for (const std::string& permission : permissions) {
        if (!nameAtName.match(permission) && allowed.count(permission) == 0) {
            findings->violation(kPermissionNotAllowed, {permission});
        }
    }
}

// The error on hyphens is worded like a warning, and the warning like an error. Users know the
// lines, so they stay.
void reportOutcome(const DesktopFacts& facts, Findings* findings) {
    for (const Outcome& outcome : kViolations) {
        if (facts.*outcome.fact == outcome.value) {
            findings->violation(*outcome.message);
        }
    }
    if (facts.dbusWarning && !facts.dbusError) {
        findings->warning(kHyphenNotRecommended);
    }
}

}  // namespace

// What concerns one key or permission is reported while the section is read, and what the section
// as a whole amounts to at the end.
void processPinfold(const std::string& packageName, const DesktopEntry& entry,
                    const Configuration& configuration, const std::string& tempDir,
                    DesktopFacts* facts, Findings* findings) {
    if (!chooseSection(entry, facts, findings)) {
        return;
    }
    const std::string& section = facts->pinfoldGroupName;
    const bool mayHaveSystemService = configuration.name() == kSystemServiceProfile;
    judgeKeys(entry, section, mayHaveSystemService, findings);
    readOrganizationName(entry, facts);
    readApplicationName(entry, facts);
    judgeReservedParts(facts->applicationName, findings);
    compareWithPackageName(packageName, facts);
    noteHyphen(facts);
    judgeDBusService(entry, packageName, tempDir, facts);
    if (mayHaveSystemService) {
        judgeSystemService(entry, packageName, facts);
    }
    judgePermissions(entry.stringList(section, kPermissionsKey), configuration.allowedPermissions(),
                     findings);
    checkIntents(entry.stringList(section, kIntentsKey), findings);
    reportOutcome(*facts, findings);
}

}  // namespace pkgvet
