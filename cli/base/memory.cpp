// Looks up limits on memory.
#include "cli/base/memory.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <limits>
#include <set>
#include <sstream>

namespace fs = std::filesystem;

namespace pkgvet::cli {

namespace {

constexpr const char* kOwnGroups = "/proc/self/cgroup";
constexpr const char* kGroupRoot = "/sys/fs/cgroup";
constexpr std::uint64_t kNone = std::numeric_limits<std::uint64_t>::max();

// Of version 2 of control groups and, below a directory of its own, of version 1.
constexpr std::array kLimitFiles = {"memory.max", "memory.limit_in_bytes"};
constexpr const char* kController = "memory";

// "max", which is not a number, stands for no limit at all.
std::uint64_t limitOf(const fs::path& group) {
    std::uint64_t least = kNone;
    for (const char* name : kLimitFiles) {
        std::ifstream stream(group / name);
        std::uint64_t limit = 0;
        if (stream >> limit) {
            least = std::min(least, limit);
        }
    }
    return least;
}

// The group and all groups around it, up to root.
void collectFrom(fs::path group, const fs::path& root, std::set<fs::path>* groups) {
    groups->insert(root);
    while (group != root && group.has_relative_path()) {
        groups->insert(group);
        group = group.parent_path();
    }
}

}  // namespace

// A line is "NUMBER:CONTROLLERS:/GROUP". Most of them lead to the same groups, of which each is
// looked at once.
std::uint64_t memoryLimit(const std::string& groups, const fs::path& root) {
    std::set<fs::path> all;
    std::istringstream stream(groups);
    for (std::string line; std::getline(stream, line);) {
        const fs::path group = fs::path(line.substr(line.rfind(':') + 1)).relative_path();
        for (const fs::path& mounted : {root, root / kController}) {
            collectFrom((mounted / group).lexically_normal(), mounted, &all);
        }
    }
    std::uint64_t least = kNone;
    for (const fs::path& group : all) {
        least = std::min(least, limitOf(group));
    }
    return least;
}

std::uint64_t availableMemory() {
    const auto pages = static_cast<std::uint64_t>(sysconf(_SC_PHYS_PAGES));
    const auto pageSize = static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
    std::ifstream stream(kOwnGroups);
    const std::string groups{std::istreambuf_iterator<char>(stream), {}};
    return std::min(pages * pageSize, memoryLimit(groups, kGroupRoot));
}

}  // namespace pkgvet::cli
