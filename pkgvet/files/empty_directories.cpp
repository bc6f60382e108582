// The rule on directories that may vanish at installation.
#include <filesystem>
#include <string>

#include "pkgvet/files/file_messages.h"
#include "pkgvet/files/file_rules.h"

namespace pkgvet {

// A directory that stands in the header alone is absent on disk, which is not an error.
void checkEmptyDirectories(const std::vector<std::string>& paths, const std::string& tempDir,
                           Findings* findings) {
    for (const std::string& path : paths) {
        const std::filesystem::path file = tempDir + path;
        if (std::filesystem::status(file).type() == std::filesystem::file_type::directory &&
            std::filesystem::is_empty(file)) {
            findings->warning(kEmptyDirectory, {path});
        }
    }
}

}  // namespace pkgvet
