// The end of an extracted payload.
#pragma once

#include <filesystem>
#include <string_view>

namespace pkgvet {

// Removes root and all below it; links are not followed. Also a tree with directories that their
// owner cannot write to. Nothing at root is fine. The entry of root that is named last, if there is
// one, goes after all others. Throws std::filesystem::filesystem_error when something remains.
void removeTree(const std::filesystem::path& root, std::string_view last = {});

}  // namespace pkgvet
