// Removes extracted payloads, whatever permissions they came with.
#include "pkgvet/base/remove_tree.h"

#include <system_error>

namespace pkgvet {

namespace {

// A package may hold directories that their owner cannot write to. The superuser removes such a
// tree as it is, anybody else needs the permissions first.
void makeRemovable(const std::filesystem::path& root) {
    using std::filesystem::directory_options;
    using std::filesystem::perms;
    std::error_code error;
    std::filesystem::permissions(root, perms::owner_all, std::filesystem::perm_options::add, error);
    for (const auto& entry : std::filesystem::directory_iterator(
             root, directory_options::skip_permission_denied, error)) {
        if (entry.is_directory(error) && !entry.is_symlink(error)) {
            makeRemovable(entry.path());
        }
    }
}

}  // namespace

void removeTree(const std::filesystem::path& root) {
    std::error_code error;
    std::filesystem::remove_all(root, error);
    if (error) {
        makeRemovable(root);
        std::filesystem::remove_all(root);
    }
}

}  // namespace pkgvet
