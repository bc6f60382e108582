// The rules on the desktop file as a whole: that it is there, its groups, and the keys of its first
// group.
#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "pkgvet/desktop/desktop_entry.h"
#include "pkgvet/desktop/desktop_facts.h"
#include "pkgvet/desktop/desktop_messages.h"
#include "pkgvet/desktop/desktop_rules.h"
#include "pkgvet/desktop/vocabulary.h"
#include "pkgvet/pattern/rule_pattern.h"
#include "pkgvet/report/findings.h"
#include "pkgvet/rules/configuration.h"

namespace pkgvet {

namespace {

const std::string kApplicationGroup = "X-Tessara-Application";
const std::string kSplashScreenGroup = "X-Tessara-SplashScreen";

// The blank belongs to each of them: "X-Task" alone is a group like any other.
constexpr std::string_view kShareMethodPrefix = "X-Share Method ";
constexpr std::array<std::string_view, 2> kBackgroundTaskPrefixes = {"X-Task ", "X-Service "};

constexpr std::string_view kShareMethodsKey = "X-Share-Methods";
constexpr std::string_view kApplicationTypeKey = "X-Dorrit-Application-Type";

// Not anchored: one printable ASCII character among any others is enough, so that a name with
// accents passes.
constexpr std::string_view kPrintable = "[ -~]*";

constexpr std::string_view kApplicationType = "Application";
// The recommended type is not one of the known types.
constexpr std::string_view kRecommendedType = "ostrand-qt5";
constexpr std::array<std::string_view, 4> kKnownTypes = {"no-invoker", "generic", "qtquick2",
                                                         "qt5"};

// With the blank that divides a launcher from the name of the application.
constexpr std::array<std::string_view, 2> kQmlLaunchers = {"lumbra-qml ", "tessara-qml "};

std::vector<FieldRow> applicationFields() {
    return {{{"Orientation", "SmallScreenOrientation", "MediumScreenOrientation",
              "LargeScreenOrientation", "ExtraLargeScreenOrientation"},
             {"None", "All", "PortraitMask", "LandscapeMask", "Portrait", "Landscape",
              "PortraitInverted", "LandscapeInverted"}},
            {{"IconMode"}, {"Scale", "Crop"}}};
}

WordSet splashScreenFields() {
    return {"GradientStartColor", "GradientEndColor"};
}

bool startsWithAny(const std::string& text, Vocabulary prefixes) {
    return std::any_of(prefixes.begin(), prefixes.end(),
                       [&text](std::string_view prefix) { return text.starts_with(prefix); });
}

// The sections that the rule on the sandbox warns of or rejects are permitted here.
WordSet permittedGroups(const DesktopEntry& entry) {
    WordSet groups = {std::string(kDesktopEntryGroup),
                      std::string(kApplicationSection),
                      std::string(kDeprecatedSection),
                      std::string(kDisallowedSection),
                      kApplicationGroup,
                      kSplashScreenGroup};
    for (const std::string& method : entry.stringList(kDesktopEntryGroup, kShareMethodsKey)) {
        groups.insert(std::string(kShareMethodPrefix) + method);
    }
    return groups;
}

// A bare prefix counts as a background task too: the rule on those reports its name.
void judgeGroups(const DesktopEntry& entry, DesktopFacts* facts, Findings* findings) {
    const WordSet permitted = permittedGroups(entry);
    for (const std::string& group : entry.groups()) {
        if (permitted.count(group) != 0) {
            continue;
        }
        if (startsWithAny(group, kBackgroundTaskPrefixes)) {
            facts->backgroundTaskGroups.push_back(group);
        } else {
            findings->violation(kGroupDisallowed, {group});
        }
    }
}

// An empty name is reported as missing, and not for its characters too.
void readName(const std::string& name, DesktopFacts* facts) {
    facts->desktopName = !name.empty();
    if (facts->desktopName) {
        facts->desktopNameIllegal = !isPatternFound(kPrintable, name, kRulePattern);
    }
}

// A program in one of its forms, alone or with arguments behind a blank. The arguments are not
// judged.
bool isAcceptedExec(const std::string& exec, const std::string& packageName) {
    const std::array<std::string, 4> candidates = {
        packageName, std::string(kProgramDirectory) + packageName,
        std::string(kQmlLaunchers[0]) + packageName, std::string(kQmlLaunchers[1]) + packageName};
    return std::any_of(candidates.begin(), candidates.end(), [&exec](const std::string& candidate) {
        return exec == candidate || exec.starts_with(candidate + kBlank);
    });
}

void readExec(const std::string& exec, const std::string& packageName, DesktopFacts* facts,
              Findings* findings) {
    if (!isAcceptedExec(exec, packageName)) {
        return;
    }
    facts->desktopExec = true;
    if (startsWithAny(exec, kQmlLaunchers)) {
        facts->qmlOnly = true;
        findings->info(kIsQmlOnly);
    }
}

// For a QML-only application every other type is an error, also one that is tolerated elsewhere.
void judgeApplicationType(const std::string& type, DesktopFacts* facts, Findings* findings) {
    facts->ostrandQt5Application = type == kRecommendedType;
    facts->knownApplicationType = contains(kKnownTypes, type);
    if (facts->ostrandQt5Application) {
        return;
    }
    if (facts->qmlOnly) {
        findings->violation(kQmlOnlyTypeWrong);
    } else if (facts->knownApplicationType) {
        findings->warning(kTypeNotRecommended);
    } else {
        findings->violation(kTypeNotDeclared);
    }
}

// These lines follow that on the type, although the keys were read ahead of it.
void reportKeys(const std::string& packageName, const DesktopFacts& facts, Findings* findings) {
    if (!facts.desktopName) {
        findings->violation(kNameMissing);
    }
    if (facts.desktopNameIllegal) {
        findings->violation(kNameIllegal);
    }
    if (!facts.desktopIcon) {
        findings->violation(kIconMissing, {packageName});
    }
    if (!facts.desktopExec) {
        findings->violation(kExecMissing);
    }
    if (!facts.desktopType) {
        findings->violation(kTypeMissing);
    }
}

}  // namespace

void checkDesktop(const std::vector<std::string>& paths, const std::string& desktopPath,
                  const Configuration& configuration, DesktopFacts* facts, Findings* findings) {
    facts->desktop = std::find(paths.begin(), paths.end(), desktopPath) != paths.end();
    if (facts->desktop) {
        return;
    }
    if (configuration.desktopRequirement()) {
        findings->violation(kDesktopFileMissing);
    } else {
        findings->warning(kDesktopFileMissingIsTolerated);
    }
}

// A file that cannot be read is like an empty one: all of its keys are reported as missing.
void processDesktopFile(const std::string& packageName, const DesktopEntry& entry,
                        DesktopFacts* facts, Findings* findings) {
    judgeGroups(entry, facts, findings);
    readName(entry.name(), facts);
    facts->desktopIcon = entry.icon() == packageName;
    facts->desktopType = entry.type() == kApplicationType;
    readExec(entry.exec(), packageName, facts, findings);
    judgeApplicationType(entry.desktopEntryString(kApplicationTypeKey), facts, findings);
    reportKeys(packageName, *facts, findings);
    if (entry.hasGroup(kSplashScreenGroup)) {
        validateDesktopEntryGroupColorFields(kSplashScreenGroup, splashScreenFields(), entry,
                                             findings);
    }
    if (entry.hasGroup(kApplicationGroup)) {
        validateDesktopEntryGroupStringFields(kApplicationGroup, applicationFields(), entry,
                                              findings);
    }
}

}  // namespace pkgvet
