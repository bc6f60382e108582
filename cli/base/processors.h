// How many processors there are for this process.
#pragma once

#include <filesystem>
#include <string>

namespace pkgvet::cli {

// At least 1: the processors that the process may run on, or fewer where its control group may not
// use all of their time.
unsigned availableProcessors();

// The processors that a control group may keep busy, rounded up: the least that the group or one of
// the groups around it allows; 0 when there is no limit. groups is the content of
// /proc/self/cgroup, root the directory where control groups are mounted. Both versions count.
unsigned processorQuota(const std::string& groups, const std::filesystem::path& root);

}  // namespace pkgvet::cli
