// What a worker tells the process that started it.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/model/model.h"

namespace pkgvet::cli {

// A worker judges a package that may have got the better of it, so nothing it says is believed
// unchecked: whatever is not exactly what a sound worker of this version writes is no report.

// The most that a report may take.
inline constexpr std::size_t kMaxReportSize = std::size_t{64} << 20U;
// The most that a worker may say in all.
inline constexpr std::size_t kMaxAnswerSize = kMaxReportSize + (std::size_t{1} << 16U);

// A message with a directory that the worker is about to make.
std::string directoryMessage(std::string_view directory);

// A message with what the worker found out. The path, the names of the profiles and what the policy
// made of the findings are not in it: the receiver knows them better. A report above the bound
// becomes one of a package that could not be judged.
std::string reportMessage(const PackageReport& report);

struct Answer {
    // Directories that are to be gone when the worker is: none but those that the program or its
    // library makes.
    std::vector<std::string> directories;
    std::optional<PackageReport> report;
};

// Reads all that a worker said. Each judgement gets the name of the profile at its place; a report
// with another number of judgements is none. Directories count up to the first nonsense.
Answer decodeAnswer(std::string_view bytes, const std::vector<std::string>& profiles);

}  // namespace pkgvet::cli
