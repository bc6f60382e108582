#include "tests/support/base/extracted_trees.h"

#include <filesystem>
#include <system_error>

// Other tests run beside this one, so trees may go while they are looked at.
std::vector<std::string> extractedTreesWith(const std::string& path) {
    std::vector<std::string> trees;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/tmp", error)) {
        const std::string tree = entry.path();
        if (tree.starts_with("/tmp/dir.") && std::filesystem::exists(tree + path, error)) {
            trees.push_back(tree);
        }
    }
    return trees;
}
