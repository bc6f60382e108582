// One rule at a time.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "pkgvet/report/findings.h"

// What one rule said, and the bits that it left behind.
struct RuleRun {
    std::vector<std::string> lines;
    std::uint32_t failures;
};

// Runs rule on findings of its own, and captures what it reports.
RuleRun runRule(const std::function<void(pkgvet::Findings*)>& rule);

// The same for a rule without grave findings: the lines that it wrote. A violation is expected to
// have been noted exactly if one of the lines is an error.
std::vector<std::string> linesOf(const std::function<void(pkgvet::Findings*)>& rule);
