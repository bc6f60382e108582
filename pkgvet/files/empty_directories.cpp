// The rule on directories that may vanish at installation.
#include <filesystem>
#include <string>

#include "pkgvet/content/content_validator.h"
#include "pkgvet/content/content_validator_private.h"
#include "pkgvet/files/file_messages.h"
#include "pkgvet/package/rpm_meta.h"
#include "pkgvet/report/logger.h"

// It only warns. A directory that stands in the header alone is none on disk and passes; one that
// cannot be looked into is an exception.
void ContentValidator::checkEmptyDirectories(const RpmMeta& rpm) {
    for (const std::string& path : rpm.paths()) {
        const std::filesystem::path file = d_ptr->tempDir + path;
        if (std::filesystem::status(file).type() == std::filesystem::file_type::directory &&
            std::filesystem::is_empty(file)) {
            Logger::log(LogLevel::Warning, {"[", path, pkgvet::kEmptyDirectory});
        }
    }
}
