// The rules on the desktop file as a whole: that it is there, its groups, and the keys of its first
// group.
#include <algorithm>
#include <array>
#include <initializer_list>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "pkgvet/content/content_validator.h"
#include "pkgvet/content/content_validator_private.h"
#include "pkgvet/desktop/desktop_entry.h"
#include "pkgvet/desktop/desktop_messages.h"
#include "pkgvet/desktop/violation.h"
#include "pkgvet/desktop/vocabulary.h"
#include "pkgvet/package/rpm_meta.h"
#include "pkgvet/pattern/regex.h"
#include "pkgvet/pattern/rule_pattern.h"
#include "pkgvet/report/logger.h"
#include "pkgvet/rules/configuration.h"

namespace {

using pkgvet::kRulePattern;
using pkgvet::reportViolation;

const std::string kApplicationGroup = "X-Tessara-Application";
const std::string kSplashScreenGroup = "X-Tessara-SplashScreen";

// The blank belongs to each of them.
constexpr std::string_view kShareMethodPrefix = "X-Share Method ";
constexpr std::array<std::string_view, 2> kBackgroundTaskPrefixes = {"X-Task ", "X-Service "};

constexpr std::string_view kShareMethodsKey = "X-Share-Methods";
constexpr std::string_view kApplicationTypeKey = "X-Dorrit-Application-Type";

// Not anchored: one printable character among any others is enough, so that a name with accents
// passes.
constexpr std::string_view kPrintable = "[ -~]*";

constexpr std::string_view kApplicationType = "Application";
constexpr std::string_view kRecommendedType = "ostrand-qt5";
constexpr std::array<std::string_view, 4> kKnownTypes = {"no-invoker", "generic", "qtquick2",
                                                         "qt5"};

constexpr std::array<std::string_view, 2> kQmlLaunchers = {"lumbra-qml ", "tessara-qml "};

using Words = std::unordered_set<std::string>;
using Rows = std::vector<std::pair<Words, Words>>;

Rows applicationFields() {
    return {{{"Orientation", "SmallScreenOrientation", "MediumScreenOrientation",
              "LargeScreenOrientation", "ExtraLargeScreenOrientation"},
             {"None", "All", "PortraitMask", "LandscapeMask", "Portrait", "Landscape",
              "PortraitInverted", "LandscapeInverted"}},
            {{"IconMode"}, {"Scale", "Crop"}}};
}

Words splashScreenFields() {
    return {"GradientStartColor", "GradientEndColor"};
}

bool startsWithAny(const std::string& text, pkgvet::Vocabulary prefixes) {
    return std::any_of(prefixes.begin(), prefixes.end(),
                       [&text](std::string_view prefix) { return text.starts_with(prefix); });
}

Words permittedGroups(const DesktopEntry& entry) {
    Words groups = {std::string(pkgvet::kDesktopEntryGroup),
                    std::string(pkgvet::kApplicationSection),
                    std::string(pkgvet::kDeprecatedSection),
                    std::string(pkgvet::kDisallowedSection),
                    kApplicationGroup,
                    kSplashScreenGroup};
    for (const std::string& method :
         entry.stringList(pkgvet::kDesktopEntryGroup, kShareMethodsKey)) {
        groups.insert(std::string(kShareMethodPrefix) + method);
    }
    return groups;
}

// A bare prefix counts as a background task too.
void judgeGroups(const DesktopEntry& entry, ContentValidatorPrivate* record) {
    const Words permitted = permittedGroups(entry);
    for (const std::string& group : entry.groups()) {
        if (permitted.count(group) != 0) {
            continue;
        }
        if (startsWithAny(group, kBackgroundTaskPrefixes)) {
            record->desktopFacts.backgroundTaskGroups.push_back(group);
        } else {
            reportViolation(record, {pkgvet::kGroupBegin, group, pkgvet::kGroupDisallowed});
        }
    }
}

void readName(const std::string& name, ContentValidatorPrivate* record) {
    record->desktopFacts.desktopName = !name.empty();
    const bool printable =
        Regex::matchSimple(kPrintable, name, kRulePattern.compile, kRulePattern.match);
    if (record->desktopFacts.desktopName) {
        record->desktopFacts.desktopNameIllegal = !printable;
    }
}

// A program in one of its forms, alone or with arguments behind a blank.
bool isAcceptedExec(const std::string& exec, const std::string& packageName) {
    const std::array<std::string, 4> candidates = {
        packageName, std::string(pkgvet::kProgramDirectory) + packageName,
        std::string(kQmlLaunchers[0]) + packageName, std::string(kQmlLaunchers[1]) + packageName};
    return std::any_of(candidates.begin(), candidates.end(), [&exec](const std::string& candidate) {
        return exec == candidate || exec.starts_with(candidate + pkgvet::kBlank);
    });
}

void readExec(const std::string& exec, const std::string& packageName,
              ContentValidatorPrivate* record) {
    if (!isAcceptedExec(exec, packageName)) {
        return;
    }
    record->desktopFacts.desktopExec = true;
    if (startsWithAny(exec, kQmlLaunchers)) {
        record->desktopFacts.qmlOnly = true;
        Logger::log(LogLevel::Info, {pkgvet::kIsQmlOnly});
    }
}

void judgeApplicationType(const std::string& type, ContentValidatorPrivate* record) {
    record->desktopFacts.ostrandQt5Application = type == kRecommendedType;
    record->desktopFacts.knownApplicationType = pkgvet::contains(kKnownTypes, type);
    if (record->desktopFacts.ostrandQt5Application) {
        return;
    }
    if (record->desktopFacts.qmlOnly) {
        reportViolation(record, {pkgvet::kQmlOnlyTypeWrong});
    } else if (record->desktopFacts.knownApplicationType) {
        Logger::log(LogLevel::Warning, {pkgvet::kTypeNotRecommended});
    } else {
        reportViolation(record, {pkgvet::kTypeNotDeclared});
    }
}

void reportKeys(const std::string& packageName, ContentValidatorPrivate* record) {
    const auto demand = [record](bool met, std::initializer_list<std::string_view> pieces) {
        if (!met) {
            reportViolation(record, pieces);
        }
    };
    demand(record->desktopFacts.desktopName, {pkgvet::kNameMissing});
    demand(!record->desktopFacts.desktopNameIllegal, {pkgvet::kNameIllegal});
    demand(record->desktopFacts.desktopIcon, {pkgvet::kIconMissing, packageName});
    demand(record->desktopFacts.desktopExec, {pkgvet::kExecMissing});
    demand(record->desktopFacts.desktopType, {pkgvet::kTypeMissing});
}

}  // namespace

void ContentValidator::checkDesktop(const Configuration& configuration, const RpmMeta& meta,
                                    const std::string& desktopPath) {
    const std::vector<std::string>& paths = meta.paths();
    d_ptr->desktopFacts.desktop = std::find(paths.begin(), paths.end(), desktopPath) != paths.end();
    if (d_ptr->desktopFacts.desktop) {
        return;
    }
    if (configuration.desktopRequirement()) {
        reportViolation(d_ptr.get(), {pkgvet::kDesktopFileMissing});
    } else {
        Logger::log(LogLevel::Warning, {pkgvet::kDesktopFileMissingIsTolerated});
    }
}

void ContentValidator::processDesktopFile(const RpmMeta& meta, const DesktopEntry& entry) {
    judgeGroups(entry, d_ptr.get());
    readName(entry.name(), d_ptr.get());
    d_ptr->desktopFacts.desktopIcon = entry.icon() == meta.name();
    d_ptr->desktopFacts.desktopType = entry.type() == kApplicationType;
    readExec(entry.exec(), meta.name(), d_ptr.get());
    judgeApplicationType(entry.desktopEntryString(kApplicationTypeKey), d_ptr.get());
    reportKeys(meta.name(), d_ptr.get());
    if (entry.hasGroup(kSplashScreenGroup)) {
        validateDesktopEntryGroupColorFields(kSplashScreenGroup, splashScreenFields(), entry);
    }
    if (entry.hasGroup(kApplicationGroup)) {
        validateDesktopEntryGroupStringFields(kApplicationGroup, applicationFields(), entry);
    }
}
