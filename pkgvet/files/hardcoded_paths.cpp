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
    HardcodedPathFinder finder;
    std::vector<std::string> found;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const bool isKnown = i < known.size() && known[i];
        if (S_ISREG(modes[i]) && (isKnown ? *known[i] : finder.isIn(tempDir + paths[i]))) {
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
