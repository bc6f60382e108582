// The end of an extracted payload.
#pragma once

#include <filesystem>

namespace pkgvet {

// Removes root and all below it; links are not followed. Also a tree with directories that their
// owner cannot write to. Nothing at root is fine. Throws std::filesystem::filesystem_error when
// something remains.
void removeTree(const std::filesystem::path& root);

}  // namespace pkgvet
