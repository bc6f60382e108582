#include "tests/support/rule_lines.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/captured_log.h"

std::vector<std::string> linesOf(const std::function<void(pkgvet::Findings*)>& rule) {
    pkgvet::Findings findings;
    const CapturedLog log;
    rule(&findings);
    std::vector<std::string> lines = log.lines();
    const bool isRejected = std::any_of(lines.begin(), lines.end(), [](const std::string& line) {
        return line.starts_with(errorLine(""));
    });
    EXPECT_EQ(findings.failures(), isRejected ? pkgvet::kViolation : 0U);
    return lines;
}
