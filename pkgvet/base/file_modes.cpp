// Looks at files without opening them.
#include "pkgvet/base/file_modes.h"

#include <sys/stat.h>

namespace pkgvet {

std::vector<mode_t> readModes(const std::string& root, const std::vector<std::string>& paths) {
    std::vector<mode_t> modes;
    modes.reserve(paths.size());
    std::string file;
    for (const std::string& path : paths) {
        file.assign(root).append(path);
        struct stat status {};
        modes.push_back(stat(file.c_str(), &status) == 0 ? status.st_mode : 0);
    }
    return modes;
}

}  // namespace pkgvet
