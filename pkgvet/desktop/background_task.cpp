// Judges one background task.
#include "pkgvet/desktop/background_task.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <optional>
#include <string_view>

#include "pkgvet/desktop/background_task_private.h"
#include "pkgvet/desktop/desktop_messages.h"
#include "pkgvet/desktop/vocabulary.h"
#include "pkgvet/pattern/regex.h"
#include "pkgvet/pattern/rule_pattern.h"
#include "pkgvet/report/logger.h"

namespace {

constexpr std::string_view kGroupName = "^(?:X-Task|X-Service) +([A-Za-z][A-Za-z0-9]+)$";
constexpr std::string_view kProgramSuffix = "^([A-Za-z][A-Za-z0-9-_]+)$";
constexpr std::string_view kCondition = "^([a-z][a-z0-9-]+)(?::([a-z][a-z0-9-]+))?$";
constexpr int kConditionGroup = 1;
constexpr int kSubtypeGroup = 2;

constexpr std::array<std::string_view, 4> kTypes = {"worker", "periodic", "scheduled",
                                                    "session-start"};

constexpr std::array<std::string_view, 4> kForbiddenPermissions = {"Base", "Audio", "Camera",
                                                                   "Microphone"};
constexpr std::string_view kImplicitPermission = "BaseTask";

constexpr std::array<std::string_view, 4> kInternetSubtypes = {"wifi", "ethernet", "cellular",
                                                               "wifi-or-ethernet"};
struct Condition {
    std::string_view name;
    pkgvet::Vocabulary subtypes;
};
constexpr std::array<Condition, 4> kConditions = {
    {{"internet", kInternetSubtypes}, {"battery-not-low", {}}, {"charging", {}}, {"idle", {}}}};

constexpr char kSuffixSeparator = '.';

Regex plainPattern(std::string_view pattern) {
    return Regex(pattern, pkgvet::kPlainPattern.compile, pkgvet::kPlainPattern.match);
}

bool reject(std::initializer_list<std::string_view> pieces) {
    Logger::log(LogLevel::Error, pieces);
    return false;
}

bool validateGroup(const std::string& group) {
    return plainPattern(kGroupName).match(group).has_value() ||
           reject({pkgvet::kTaskInvalid, group});
}

bool validateType(const std::string& type) {
    return pkgvet::contains(kTypes, type) || reject({pkgvet::kTaskTypeUnsupported, type});
}

// The main program, or one beside it that is called by its name, a dot and a word.
bool validateProgram(const std::string& name, const std::string& packageName) {
    for (const std::string& candidate :
         {packageName, std::string(pkgvet::kProgramDirectory) + packageName}) {
        if (name == candidate) {
            return true;
        }
        if (name.starts_with(candidate + kSuffixSeparator)) {
            return plainPattern(kProgramSuffix).match(name.substr(candidate.size() + 1)) ||
                   reject({pkgvet::kExecutableNameInvalid, name});
        }
    }
    return reject({pkgvet::kExecutableWrong, name});
}

bool validateExec(const std::string& exec, const std::string& packageName) {
    return exec.empty() || validateProgram(exec.substr(0, exec.find(pkgvet::kBlank)), packageName);
}

bool validatePermission(const std::string& permission,
                        const pkgvet::PermissionSet& applicationPermissions) {
    if (pkgvet::contains(kForbiddenPermissions, permission)) {
        return reject({pkgvet::kTaskPermissionNotAllowed, permission});
    }
    if (permission == kImplicitPermission) {
        return reject({pkgvet::kTaskPermissionImplicit});
    }
    return applicationPermissions.count(permission) != 0 ||
           reject({pkgvet::kTaskPermissionNotInApplication, permission});
}

// The form without a subtype is right for every condition.
bool validateCondition(const Regex& pattern, const std::string& condition) {
    const std::optional<MatchInfo> parts = pattern.match(condition);
    if (!parts) {
        return reject({pkgvet::kConditionInvalid, condition});
    }
    const std::string name = parts->fetch(kConditionGroup).value_or(std::string());
    const auto known =
        std::find_if(kConditions.begin(), kConditions.end(),
                     [&name](const Condition& candidate) { return candidate.name == name; });
    if (known == kConditions.end()) {
        return reject({pkgvet::kConditionUnknown, name});
    }
    const std::optional<std::string> subtype = parts->fetch(kSubtypeGroup);
    return !subtype || pkgvet::contains(known->subtypes, *subtype) ||
           reject({pkgvet::kSubtypeUnknownBegin, name, pkgvet::kSubtypeUnknown, *subtype});
}

pkgvet::PermissionSet setOf(const std::vector<std::string>& permissions) {
    return {permissions.begin(), permissions.end()};
}

}  // namespace

namespace pkgvet {

bool judgeBackgroundTask(const BackgroundTask& task, const std::string& packageName,
                         const PermissionSet& applicationPermissions) {
    bool valid = validateGroup(task.group);
    valid = validateType(task.type) && valid;
    valid = validateExec(task.exec, packageName) && valid;
    valid = judgeTaskPermissions(task.permissions, applicationPermissions) && valid;
    return validateTaskConditions(task.conditions) && valid;
}

bool judgeTaskPermissions(const std::vector<std::string>& taskPermissions,
                          const PermissionSet& applicationPermissions) {
    bool valid = true;
    for (const std::string& permission : taskPermissions) {
        valid = validatePermission(permission, applicationPermissions) && valid;
    }
    return valid;
}

}  // namespace pkgvet

bool validateBackgroundTask(const BackgroundTask& task, const std::string& packageName,
                            const std::vector<std::string>& applicationPermissions) {
    return pkgvet::judgeBackgroundTask(task, packageName, setOf(applicationPermissions));
}

bool validateTaskPermissions(const std::vector<std::string>& taskPermissions,
                             const std::vector<std::string>& applicationPermissions) {
    return pkgvet::judgeTaskPermissions(taskPermissions, setOf(applicationPermissions));
}

bool validateTaskConditions(const std::vector<std::string>& conditions) {
    if (conditions.empty()) {
        return true;
    }
    const Regex pattern = plainPattern(kCondition);
    bool valid = true;
    for (const std::string& condition : conditions) {
        valid = validateCondition(pattern, condition) && valid;
    }
    return valid;
}
