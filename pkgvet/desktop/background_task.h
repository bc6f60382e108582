// What an application has the platform start without a user.
#pragma once

#include <string>
#include <vector>

#include "pkgvet/export.h"

// One group of a desktop file whose name begins with "X-Task " or "X-Service ". A key that is
// missing leaves its field empty.
struct BackgroundTask {
    std::string group;  // the full name of the group
    std::string type;
    std::string exec;
    std::vector<std::string> permissions;
    std::vector<std::string> conditions;
};

// All three log what they find as errors without a subject of their own, go on to the end whatever
// they found, and answer true when they found nothing. Files are not looked at. They throw
// std::regex_error when a text of many megabytes exhausts the engine.

// Judges a task of the package packageName: the group's name, the type, the program if there is
// one, the permissions against those of the application, and the conditions.
PKGVET_EXPORT bool validateBackgroundTask(const BackgroundTask& task,
                                          const std::string& packageName,
                                          const std::vector<std::string>& applicationPermissions);

// A task may have what the application has, except for the permissions that no task may have and
// the one that every task has anyway.
PKGVET_EXPORT bool validateTaskPermissions(const std::vector<std::string>& taskPermissions,
                                           const std::vector<std::string>& applicationPermissions);

// Judges conditions such as "charging" and "internet:wifi".
PKGVET_EXPORT bool validateTaskConditions(const std::vector<std::string>& conditions);
