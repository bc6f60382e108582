// The judgement of background tasks for a rule that has many of them.
#pragma once

#include <string>
#include <unordered_set>
#include <vector>

struct BackgroundTask;

namespace pkgvet {

// As the functions of background_task.h, but with the application's permissions as a set: made once
// for all tasks, it keeps the time from growing with the product of tasks and permissions.
using PermissionSet = std::unordered_set<std::string>;

bool judgeBackgroundTask(const BackgroundTask& task, const std::string& packageName,
                         const PermissionSet& applicationPermissions);
bool judgeTaskPermissions(const std::vector<std::string>& taskPermissions,
                          const PermissionSet& applicationPermissions);

}  // namespace pkgvet
