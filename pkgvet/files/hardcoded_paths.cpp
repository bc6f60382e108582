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
void checkSandboxing(const std::vector<std::string>& paths, const std::vector<mode_t>& modes,
                     const std::string& tempDir, Findings* findings) {
    HardcodedPathFinder finder;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        if (S_ISREG(modes[i]) && finder.isIn(tempDir + paths[i])) {
            findings->violation(kHardcodedPath, {paths[i]});
        }
    }
}

}  // namespace pkgvet
