// The rule on directories that may vanish at installation.
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "pkgvet/files/file_messages.h"
#include "pkgvet/files/file_rules.h"

namespace pkgvet {

namespace {

// A directory that stands in the header alone is absent on disk, which is not an error. Any other
// reason why it cannot be looked at is, and the second look throws.
bool isDirectory(const std::string& file, mode_t mode) {
    return mode == 0 ? std::filesystem::is_directory(std::filesystem::status(file)) : S_ISDIR(mode);
}

}  // namespace

void checkEmptyDirectories(const std::vector<std::string>& paths, const std::vector<mode_t>& modes,
                           const std::string& tempDir, Findings* findings) {
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const std::string file = tempDir + paths[i];
        if (isDirectory(file, modes[i]) && std::filesystem::is_empty(file)) {
            findings->warning(kEmptyDirectory, {paths[i]});
        }
    }
}

}  // namespace pkgvet
