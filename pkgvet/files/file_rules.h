// The rules on the files of a package as such.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

#include "pkgvet/files/file_facts.h"
#include "pkgvet/report/findings.h"

class Configuration;

namespace pkgvet {

// All rules look at paths, the package's list of files, in its order. modes go with paths element
// by element and come from readModes(). tempDir is the directory that holds the unpacked payload,
// without a trailing "/": the file at a path stands on disk at tempDir and the path.

// What the desktop file says of the application, as far as the rule on places needs it. All of it
// stays empty without a desktop file.
struct Application {
    bool isQmlOnly = false;
    std::string organizationName;
    std::string applicationName;
};

// Each size of the rule set needs an icon, where the rule set requires icons at all. Throws
// std::regex_error for a path that does not compile as a pattern.
void checkIcons(const std::string& packageName, const std::vector<std::string>& paths,
                const Configuration& configuration, const std::string& tempDir, Findings* findings);

// Which of paths are files that hold the home directory of the platform's default user. No rule of
// a tree bears on that. known says of each path whether its file does, as far as that is known; an
// empty list says nothing.
std::vector<std::string> findHardcodedPaths(const std::vector<std::string>& paths,
                                            const std::vector<mode_t>& modes,
                                            const std::string& tempDir,
                                            const std::vector<std::optional<bool>>& known = {});

// No file may hold that directory, as those that were found do.
void checkSandboxing(const std::vector<std::string>& hardcodedPaths, Findings* findings);

// Files may be installed in certain places only, and the main binary has to be there unless the
// application is written in QML alone. Throws std::regex_error for a pattern of the rule set that
// does not compile, and what checkSealwatchdFile throws.
void checkExcludedPaths(const std::string& packageName, const std::vector<std::string>& paths,
                        const Application& application, const Configuration& configuration,
                        const std::string& tempDir, FileFacts* facts, Findings* findings);

// Whether path ends in a suffix that version control and editors leave behind.
bool isBlacklistedExtension(const std::string& path);

// Whether the package needs a main binary that checkExcludedPaths has not seen.
bool isBinaryRequired(bool isQmlOnly, const FileFacts& facts);

// Warns of directories that may vanish at installation. Throws std::filesystem::filesystem_error
// for one that cannot be looked into.
void checkEmptyDirectories(const std::vector<std::string>& paths, const std::vector<mode_t>& modes,
                           const std::string& tempDir, Findings* findings);

// The file of managed configuration has to be valid, if there is one. Throws
// std::filesystem::filesystem_error when that cannot be told.
void checkConfigurationParameterFile(const std::string& packageName, const std::string& tempDir,
                                     Findings* findings);

// Files belong to root, are written to by nobody else, and are executable in certain places only.
// users and groups go with paths element by element; std::out_of_range when one is shorter. Throws
// std::regex_error for a path that does not compile as a pattern where a link needs it.
void processPermissions(const std::string& packageName, const std::vector<std::string>& paths,
                        const std::vector<mode_t>& modes, const std::vector<std::string>& users,
                        const std::vector<std::string>& groups, const Configuration& configuration,
                        const std::string& tempDir, Findings* findings);

}  // namespace pkgvet
