// The rule on files that mention the home directory of the platform's default user.
#include <string>

#include "pkgvet/content/content_validator.h"
#include "pkgvet/content/content_validator_private.h"
#include "pkgvet/files/file_messages.h"
#include "pkgvet/files/hardcoded_path_search.h"
#include "pkgvet/package/rpm_meta.h"
#include "pkgvet/report/logger.h"

// Every file of whatever type, binaries included. What is no regular file behind its links has no
// text: directories, and what would block a reader or never end.
void ContentValidator::checkSandboxing(const RpmMeta& rpm, const std::string& tempDir) {
    std::string buffer;
    for (const std::string& path : rpm.paths()) {
        if (pkgvet::holdsHardcodedPath(tempDir + path, &buffer)) {
            d_ptr->failures |= pkgvet::kViolation;
            Logger::log(LogLevel::Error, {"[", path, pkgvet::kHardcodedPath});
        }
    }
}
