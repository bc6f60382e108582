// Judges one background task.
#include "pkgvet/desktop/background_task.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "pkgvet/desktop/desktop_messages.h"
#include "pkgvet/desktop/desktop_rules.h"
#include "pkgvet/desktop/vocabulary.h"
#include "pkgvet/pattern/regex.h"
#include "pkgvet/pattern/rule_pattern.h"
#include "pkgvet/report/findings.h"

namespace pkgvet {

namespace {

// In all three grammars a word has at least two characters. There is no hyphen in the name of a
// task, although the suffix of its program may have one.
constexpr std::string_view kGroupName = "^(?:X-Task|X-Service) +([A-Za-z][A-Za-z0-9]+)$";
constexpr std::string_view kProgramSuffix = "^([A-Za-z][A-Za-z0-9-_]+)$";
constexpr std::string_view kCondition = "^([a-z][a-z0-9-]+)(?::([a-z][a-z0-9-]+))?$";
constexpr int kConditionGroup = 1;
constexpr int kSubtypeGroup = 2;

constexpr std::array<std::string_view, 4> kTypes = {"worker", "periodic", "scheduled",
                                                    "session-start"};

// No task may have them, not even if the application does.
constexpr std::array<std::string_view, 4> kForbiddenPermissions = {"Base", "Audio", "Camera",
                                                                   "Microphone"};
// Every task has it, so that none is to list it.
constexpr std::string_view kImplicitPermission = "BaseTask";

constexpr std::array<std::string_view, 4> kInternetSubtypes = {"wifi", "ethernet", "cellular",
                                                               "wifi-or-ethernet"};
struct Condition {
    std::string_view name;
    Vocabulary subtypes;
};
constexpr std::array<Condition, 4> kConditions = {
    {{"internet", kInternetSubtypes}, {"battery-not-low", {}}, {"charging", {}}, {"idle", {}}}};

constexpr char kSuffixSeparator = '.';

void checkGroup(const std::string& group, Findings* findings) {
    if (!plainPattern(kGroupName).match(group)) {
        findings->violation(kTaskInvalid, {group});
    }
}

// A missing type is reported as an empty one.
void checkType(const std::string& type, Findings* findings) {
    if (!contains(kTypes, type)) {
        findings->violation(kTaskTypeUnsupported, {type});
    }
}

// The main program, or one beside it that is called by its name, a dot and a word. Whether there is
// such a file is not looked at.
void checkProgram(const std::string& name, const std::string& packageName, Findings* findings) {
    for (const std::string& candidate :
         {packageName, std::string(kProgramDirectory) + packageName}) {
        if (name == candidate) {
            return;
        }
        if (name.starts_with(candidate + kSuffixSeparator)) {
            if (!plainPattern(kProgramSuffix).match(name.substr(candidate.size() + 1))) {
                findings->violation(kExecutableNameInvalid, {name});
            }
            return;
        }
    }
    findings->violation(kExecutableWrong, {name});
}

// A task without a program of its own is right.
void checkExec(const std::string& exec, const std::string& packageName, Findings* findings) {
    if (!exec.empty()) {
        checkProgram(exec.substr(0, exec.find(kBlank)), packageName, findings);
    }
}

void checkTaskPermission(const std::string& permission, const WordSet& applicationPermissions,
                         Findings* findings) {
    if (contains(kForbiddenPermissions, permission)) {
        findings->violation(kTaskPermissionNotAllowed, {permission});
    } else if (permission == kImplicitPermission) {
        findings->violation(kTaskPermissionImplicit);
    } else if (applicationPermissions.count(permission) == 0) {
        findings->violation(kTaskPermissionNotInApplication, {permission});
    }
}

// The form without a subtype is right for every condition.
void checkTaskCondition(const Regex& pattern, const std::string& condition, Findings* findings) {
    const std::optional<MatchInfo> parts = pattern.match(condition);
    if (!parts) {
        findings->violation(kConditionInvalid, {condition});
        return;
    }
    const std::string name = parts->fetch(kConditionGroup).value_or(std::string());
    const auto known =
        std::find_if(kConditions.begin(), kConditions.end(),
                     [&name](const Condition& candidate) { return candidate.name == name; });
    if (known == kConditions.end()) {
        findings->violation(kConditionUnknown, {name});
        return;
    }
    const std::optional<std::string> subtype = parts->fetch(kSubtypeGroup);
    if (subtype && !contains(known->subtypes, *subtype)) {
        findings->violation(kSubtypeUnknown, {name, *subtype});
    }
}

WordSet setOf(const std::vector<std::string>& permissions) {
    return {permissions.begin(), permissions.end()};
}

}  // namespace

// Every part is judged, whatever was wrong with those ahead of it.
void checkBackgroundTask(const BackgroundTask& task, const std::string& packageName,
                         const WordSet& applicationPermissions, Findings* findings) {
    checkGroup(task.group, findings);
    checkType(task.type, findings);
    checkExec(task.exec, packageName, findings);
    checkTaskPermissions(task.permissions, applicationPermissions, findings);
    checkTaskConditions(task.conditions, findings);
}

void checkTaskPermissions(const std::vector<std::string>& taskPermissions,
                          const WordSet& applicationPermissions, Findings* findings) {
    for (const std::string& permission : taskPermissions) {
        checkTaskPermission(permission, applicationPermissions, findings);
    }
}

// Most tasks have no conditions, and need no pattern compiled.
void checkTaskConditions(const std::vector<std::string>& conditions, Findings* findings) {
    if (conditions.empty()) {
        return;
    }
    const Regex pattern = plainPattern(kCondition);
    for (const std::string& condition : conditions) {
        checkTaskCondition(pattern, condition, findings);
    }
}

}  // namespace pkgvet

bool validateBackgroundTask(const BackgroundTask& task, const std::string& packageName,
                            const std::vector<std::string>& applicationPermissions) {
    pkgvet::Findings findings;
    pkgvet::checkBackgroundTask(task, packageName, pkgvet::setOf(applicationPermissions),
                                &findings);
    return findings.failures() == 0;
}

bool validateTaskPermissions(const std::vector<std::string>& taskPermissions,
                             const std::vector<std::string>& applicationPermissions) {
    pkgvet::Findings findings;
    pkgvet::checkTaskPermissions(taskPermissions, pkgvet::setOf(applicationPermissions), &findings);
    return findings.failures() == 0;
}

bool validateTaskConditions(const std::vector<std::string>& conditions) {
    pkgvet::Findings findings;
    pkgvet::checkTaskConditions(conditions, &findings);
    return findings.failures() == 0;
}
