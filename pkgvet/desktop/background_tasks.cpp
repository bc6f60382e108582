// The rule on the background tasks of an application.
#include <array>
#include <string_view>

#include "pkgvet/content/content_validator.h"
#include "pkgvet/content/content_validator_private.h"
#include "pkgvet/desktop/background_task.h"
#include "pkgvet/desktop/background_task_private.h"
#include "pkgvet/desktop/desktop_entry.h"
#include "pkgvet/desktop/desktop_messages.h"
#include "pkgvet/desktop/violation.h"
#include "pkgvet/desktop/vocabulary.h"
#include "pkgvet/package/rpm_meta.h"

namespace {

constexpr std::string_view kConditionsKey = "Conditions";
constexpr std::array<std::string_view, 4> kTaskKeys = {pkgvet::kTypeKey, pkgvet::kExecKey,
                                                       pkgvet::kPermissionsKey, kConditionsKey};

void judgeKeys(const DesktopEntry& entry, const std::string& group,
               ContentValidatorPrivate* record) {
    for (const std::string& key : entry.keys(group)) {
        if (!pkgvet::contains(kTaskKeys, key)) {
            pkgvet::reportViolation(record,
                                    {pkgvet::kTaskKeyBegin, key, pkgvet::kTaskKeyDisallowed});
        }
    }
}

BackgroundTask readTask(const DesktopEntry& entry, const std::string& group) {
    return {group, entry.string(group, pkgvet::kTypeKey), entry.string(group, pkgvet::kExecKey),
            entry.stringList(group, pkgvet::kPermissionsKey),
            entry.stringList(group, kConditionsKey)};
}

}  // namespace

// Without a sandbox section its name is empty, and so are the application's permissions.
void ContentValidator::processBackgroundTasks(const RpmMeta& meta, const DesktopEntry& entry) {
    const std::vector<std::string> permissions =
        entry.stringList(d_ptr->desktopFacts.pinfoldGroupName, pkgvet::kPermissionsKey);
    const pkgvet::PermissionSet applicationPermissions(permissions.begin(), permissions.end());
    for (const std::string& group : d_ptr->desktopFacts.backgroundTaskGroups) {
        judgeKeys(entry, group, d_ptr.get());
        if (!pkgvet::judgeBackgroundTask(readTask(entry, group), meta.name(),
                                         applicationPermissions)) {
            d_ptr->failures |= pkgvet::kViolation;
        }
    }
}
