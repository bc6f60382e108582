// The rules on a package's desktop file.
#pragma once

#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

class Configuration;
class DesktopEntry;
struct BackgroundTask;

namespace pkgvet {

class Findings;
struct DesktopFacts;

// The four rules, in the order in which they run. Each has the name of the member of
// ContentValidator that runs it. All of them go on to their end whatever they find, and pass on
// what they find out to later rules in facts, which belong to one package.

// Whether desktopPath is among the paths of the package. If it is not, no other rule here runs.
void checkDesktop(const std::vector<std::string>& paths, const std::string& desktopPath,
                  const Configuration& configuration, DesktopFacts* facts, Findings* findings);

// The groups of the file, the keys of its first group and the two groups of the platform.
void processDesktopFile(const std::string& packageName, const DesktopEntry& entry,
                        DesktopFacts* facts, Findings* findings);

// The sandbox section. Programs are looked up below tempDir, the extraction directory.
void processPinfold(const std::string& packageName, const DesktopEntry& entry,
                    const Configuration& configuration, const std::string& tempDir,
                    DesktopFacts* facts, Findings* findings);

// The background tasks that processDesktopFile noted, with the permissions of the section that
// processPinfold chose.
void processBackgroundTasks(const std::string& packageName, const DesktopEntry& entry,
                            const DesktopFacts& facts, Findings* findings);

// The rules on single fields, which processDesktopFile applies to the groups of the platform.

using WordSet = std::unordered_set<std::string>;
// Names of fields, and what each of these fields may hold.
using FieldRow = std::pair<WordSet, WordSet>;

// Each element of the list in group/field must be one of values. An empty list has no finding.
void validateDesktopEntryFieldStringValues(const std::string& group, const std::string& field,
                                           const WordSet& values, const DesktopEntry& entry,
                                           Findings* findings);

// Each key of group must stand in a row, of which the first counts, and hold what the row permits.
void validateDesktopEntryGroupStringFields(const std::string& group,
                                           const std::vector<FieldRow>& rows,
                                           const DesktopEntry& entry, Findings* findings);

// The value of group/field must be a colour such as "#A1B2C3" or "#FFF". A missing value is not.
void validateDesktopEntryFieldColorValue(const std::string& group, const std::string& field,
                                         const DesktopEntry& entry, Findings* findings);

// Each key of group must be one of fields, and a colour.
void validateDesktopEntryGroupColorFields(const std::string& group, const WordSet& fields,
                                          const DesktopEntry& entry, Findings* findings);

// What the public functions of intents.h and background_task.h judge, for the rules here. The
// permissions of the application come as a set, which is made once for all tasks: otherwise the
// time would grow with the product of tasks and permissions.

void checkIntents(const std::vector<std::string>& specifications, Findings* findings);
void checkBackgroundTask(const BackgroundTask& task, const std::string& packageName,
                         const WordSet& applicationPermissions, Findings* findings);
void checkTaskPermissions(const std::vector<std::string>& taskPermissions,
                          const WordSet& applicationPermissions, Findings* findings);
void checkTaskConditions(const std::vector<std::string>& conditions, Findings* findings);

}  // namespace pkgvet
