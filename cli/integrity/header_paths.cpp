// The rules on the paths of the header.
#include <limits.h>
#include <sys/stat.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "cli/catalogue/integrity_messages.h"
#include "cli/integrity/header_rules.h"

namespace pkgvet::cli {

namespace {

// Of a path that is too long, as much as a reader needs to know it by.
constexpr std::size_t kShownBytes = 200;

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

// The paths in order, each with the file that has it first.
std::vector<const HeaderFile*> sortedFiles(const HeaderFiles& list) {
    std::vector<const HeaderFile*> files;
    files.reserve(list.files.size());
    for (const HeaderFile& file : list.files) {
        files.push_back(&file);
    }
    std::stable_sort(files.begin(), files.end(),
                     [](const HeaderFile* a, const HeaderFile* b) { return a->path < b->path; });
    return files;
}

// The first path below that of file, null when there is none. Paths that are below stand together
// in the order, so that a path is looked for once however many there are.
const HeaderFile* firstBelow(const HeaderFile& file, const std::vector<const HeaderFile*>& files) {
    const std::string directory = file.path + "/";
    const auto next = std::lower_bound(
        files.begin(), files.end(), directory,
        [](const HeaderFile* other, const std::string& path) { return other->path < path; });
    return next != files.end() && (*next)->path.starts_with(directory) ? *next : nullptr;
}

}  // namespace

void checkPaths(const HeaderFiles& list, IntegrityFindings* findings) {
    for (const HeaderFile& file : list.files) {
        if (file.path.size() >= PATH_MAX) {
            findings->add(kPathTooLong, {file.path.substr(0, kShownBytes)});
        } else if (!isNormal(file.path)) {
            findings->add(kPathNotNormal, {file.path});
        }
    }
}

// librpm takes a path apart again in some places, and uses its parts as they stand in others.
void checkPathParts(const PackageHeader& header, IntegrityFindings* findings) {
    for (const std::string& directory : header.texts(RPMTAG_DIRNAMES)) {
        if (!directory.ends_with('/')) {
            findings->add(kPathSplit, {directory});
        }
    }
    for (const std::string& name : header.texts(RPMTAG_BASENAMES)) {
        if (name.find('/') != std::string::npos) {
            findings->add(kPathSplit, {name});
        }
    }
}

void checkPathsAmongThemselves(const HeaderFiles& list, IntegrityFindings* findings) {
    const std::vector<const HeaderFile*> files = sortedFiles(list);
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (i > 0 && files[i]->path == files[i - 1]->path) {
            findings->add(kPathTwice, {files[i]->path});
        }
        if (!S_ISDIR(files[i]->mode) && files[i]->path.size() < PATH_MAX) {
            if (const HeaderFile* below = firstBelow(*files[i], files)) {
                findings->add(kPathBelowFile,
                              {below->path, kindOf(files[i]->mode), files[i]->path});
            }
        }
    }
}

}  // namespace pkgvet::cli
