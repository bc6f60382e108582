// The rule on files that mention the home directory of the platform's default user.
#include <sys/stat.h>

#include <string>

#include "pkgvet/files/file_messages.h"
#include "pkgvet/files/file_rules.h"
#include "pkgvet/files/hardcoded_path_search.h"

namespace pkgvet {

// Files of any type are searched, binaries included, as a path may be compiled in. What is not a
// regular file behind its links has no text: directories, and what would block a reader or never
// end.
std::vector<std::string> findHardcodedPaths(const std::vector<std::string>& paths,
                                            const std::vector<mode_t>& modes,
                                            const std::string& tempDir,
                                            const std::vector<std::optional<bool>>& known) {
    std::vector<bool> isHit(paths.size());
    std::vector<std::size_t> unknown;
    std::vector<std::string> files;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        if (!S_ISREG(modes[i])) {
            continue;
        }
        if (i < known.size() && known[i]) {
            isHit[i] = *known[i];
        } else {
            unknown.push_back(i);
            files.push_back(tempDir + paths[i]);
        }
    }
    const std::vector<bool> answers = HardcodedPathFinder().find(files);
    for (std::size_t i = 0; i < unknown.size(); ++i) {
        isHit[unknown[i]] = answers[i];
    }
    std::vector<std::string> found;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        if (isHit[i]) {
            found.push_back(paths[i]);
        }
    }
    return found;
}

void checkSandboxing(const std::vector<std::string>& hardcodedPaths, Findings* findings) {
    for (const std::string& path : hardcodedPaths) {
        findings->violation(kHardcodedPath, {path});
    }
}

}  // namespace pkgvet
