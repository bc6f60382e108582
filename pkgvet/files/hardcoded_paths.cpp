// The rule on files that mention the home directory of the platform's default user.
#include <string>

#include "pkgvet/files/file_messages.h"
#include "pkgvet/files/file_rules.h"
#include "pkgvet/files/hardcoded_path_search.h"

namespace pkgvet {

// Files of any type are searched, binaries included, as a path may be compiled in. What is not a
// regular file behind its links has no text: directories, and what would block a reader or never
// end.
void checkSandboxing(const std::vector<std::string>& paths, const std::string& tempDir,
                     Findings* findings) {
    std::string buffer;
    for (const std::string& path : paths) {
        if (holdsHardcodedPath(tempDir + path, &buffer)) {
            findings->violation(kHardcodedPath, {path});
        }
    }
}

}  // namespace pkgvet
