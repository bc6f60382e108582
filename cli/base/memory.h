// How much memory there is for this process.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace pkgvet::cli {

// In bytes: that of the machine, or less where a control group sets a limit.
std::uint64_t availableMemory();

// The least limit of the control groups that groups, in the form of /proc/self/cgroup, names, and
// of those around them, as the files below root say. The largest number when none sets a limit.
std::uint64_t memoryLimit(const std::string& groups, const std::filesystem::path& root);

}  // namespace pkgvet::cli
