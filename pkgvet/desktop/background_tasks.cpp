// The rule on the background tasks of an application.
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "pkgvet/desktop/background_task.h"
#include "pkgvet/desktop/desktop_entry.h"
#include "pkgvet/desktop/desktop_facts.h"
#include "pkgvet/desktop/desktop_messages.h"
#include "pkgvet/desktop/desktop_rules.h"
#include "pkgvet/desktop/vocabulary.h"
#include "pkgvet/report/findings.h"

namespace pkgvet {

namespace {

constexpr std::string_view kConditionsKey = "Conditions";
constexpr std::array<std::string_view, 4> kTaskKeys = {kTypeKey, kExecKey, kPermissionsKey,
                                                       kConditionsKey};

// A key that does not belong here does not keep the group from being judged.
void judgeKeys(const DesktopEntry& entry, const std::string& group, Findings* findings) {
    for (const std::string& key : entry.keys(group)) {
        if (!contains(kTaskKeys, key)) {
            findings->violation(kTaskKeyDisallowed, {key});
        }
    }
}

BackgroundTask readTask(const DesktopEntry& entry, const std::string& group) {
    return {group, entry.string(group, kTypeKey), entry.string(group, kExecKey),
            entry.stringList(group, kPermissionsKey), entry.stringList(group, kConditionsKey)};
}

}  // namespace

// Without a sandbox section the name of the section is empty. So are the application's permissions
// then, and every permission of a task is reported.
void processBackgroundTasks(const std::string& packageName, const DesktopEntry& entry,
                            const DesktopFacts& facts, Findings* findings) {
    const std::vector<std::string> permissions =
        entry.stringList(facts.pinfoldGroupName, kPermissionsKey);
    const WordSet applicationPermissions(permissions.begin(), permissions.end());
    for (const std::string& group : facts.backgroundTaskGroups) {
        judgeKeys(entry, group, findings);
        checkBackgroundTask(readTask(entry, group), packageName, applicationPermissions, findings);
    }
}

}  // namespace pkgvet
