// The rules on the paths of the header.
#include <string_view>

#include "cli/catalogue/integrity_messages.h"
#include "cli/integrity/header_rules.h"

namespace pkgvet::cli {

namespace {

// Whether the path begins with a slash, and what is between slashes is a name.
bool isNormal(std::string_view path) {
    if (!path.starts_with('/')) {
        return false;
    }
    while (!path.empty()) {
        path.remove_prefix(1);
        const std::string_view name = path.substr(0, path.find('/'));
        if (name.empty() || name == "." || name == "..") {
            return false;
        }
        path.remove_prefix(name.size());
    }
    return true;
}

}  // namespace

void checkPaths(const HeaderFiles& files, IntegrityFindings* findings) {
    for (const HeaderFile& file : files) {
        if (!isNormal(file.path)) {
            findings->add(kPathNotNormal, {file.path});
        }
    }
}

}  // namespace pkgvet::cli
