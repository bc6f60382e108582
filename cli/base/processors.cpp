// Counts processors.
#include "cli/base/processors.h"

#include <sched.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>

namespace fs = std::filesystem;

namespace pkgvet::cli {

namespace {

constexpr const char* kOwnGroups = "/proc/self/cgroup";
constexpr const char* kGroupRoot = "/sys/fs/cgroup";
constexpr const char* kController = "cpu";

std::string contentOf(const fs::path& path) {
    std::ifstream stream(path);
    return std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
}

unsigned rounded(double quota, double period) {
    constexpr double kMost = 65536;  // more than any machine has, and fits the result
    if (!(quota > 0) || !(period > 0)) {
        return 0;
    }
    const double processors = std::clamp(quota / period, 0.0, kMost);
    const auto whole = static_cast<unsigned>(processors);
    return processors > whole ? whole + 1 : whole;
}

// Of a text "QUOTA PERIOD". What is not two numbers is not a limit.
unsigned quotaIn(const std::string& text) {
    std::istringstream stream(text);
    double quota = 0;
    double period = 0;
    stream >> quota >> period;
    return stream ? rounded(quota, period) : 0;
}

// Both in one file, with "max" for no limit.
unsigned quotaOfVersion2(const fs::path& group) {
    return quotaIn(contentOf(group / "cpu.max"));
}

// A file each, with -1 for no limit.
unsigned quotaOfVersion1(const fs::path& group) {
    return quotaIn(contentOf(group / "cpu.cfs_quota_us") + " " +
                   contentOf(group / "cpu.cfs_period_us"));
}

// 0 is no limit, and so never the lesser one.
unsigned least(unsigned one, unsigned other) {
    return one == 0 || other == 0 ? std::max(one, other) : std::min(one, other);
}

// The limits of group and of all groups around it, up to root. In a container the name of the group
// can be that of the host and lead nowhere, while the root is the container's own.
unsigned quotaFrom(fs::path group, const fs::path& root, unsigned (*quotaOf)(const fs::path&)) {
    unsigned quota = quotaOf(root);
    while (group != root && group.has_relative_path()) {
        quota = least(quota, quotaOf(group));
        group = group.parent_path();
    }
    return quota;
}

bool isListed(const std::string& controllers) {
    std::istringstream stream(controllers);
    for (std::string controller; std::getline(stream, controller, ',');) {
        if (controller == kController) {
            return true;
        }
    }
    return false;
}

// Of a line "NUMBER:CONTROLLERS:/GROUP".
unsigned quotaOfLine(const std::string& line, const fs::path& root) {
    const std::size_t first = line.find(':');
    const std::size_t second = line.find(':', first == std::string::npos ? first : first + 1);
    if (second == std::string::npos) {
        return 0;
    }
    const std::string controllers = line.substr(first + 1, second - first - 1);
    const fs::path group = fs::path(line.substr(second + 1)).relative_path();
    if (controllers.empty()) {
        return quotaFrom((root / group).lexically_normal(), root, quotaOfVersion2);
    }
    const fs::path mounted = root / kController;
    return isListed(controllers)
               ? quotaFrom((mounted / group).lexically_normal(), mounted, quotaOfVersion1)
               : 0;
}

unsigned affinity() {
    cpu_set_t processors;
    CPU_ZERO(&processors);
    const bool known = sched_getaffinity(0, sizeof processors, &processors) == 0;
    return known ? static_cast<unsigned>(std::max(1, CPU_COUNT(&processors))) : 1;
}

}  // namespace

unsigned processorQuota(const std::string& groups, const fs::path& root) {
    unsigned quota = 0;
    std::istringstream stream(groups);
    for (std::string line; std::getline(stream, line);) {
        quota = least(quota, quotaOfLine(line, root));
    }
    return quota;
}

unsigned availableProcessors() {
    return least(affinity(), processorQuota(contentOf(kOwnGroups), kGroupRoot));
}

}  // namespace pkgvet::cli
