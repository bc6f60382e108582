#include "tests/support/rules/rule_run.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/base/captured_log.h"

RuleRun runRule(const std::function<void(pkgvet::Findings*)>& rule) {
    const CapturedLog log;
    pkgvet::Findings findings;
    rule(&findings);
    return {log.lines(), findings.failures()};
}

std::vector<std::string> linesOf(const std::function<void(pkgvet::Findings*)>& rule) {
    const RuleRun run = runRule(rule);
    const bool isRejected =
        std::any_of(run.lines.begin(), run.lines.end(),
                    [](const std::string& line) { return line.starts_with(errorLine("")); });
    EXPECT_EQ(run.failures, isRejected ? pkgvet::kViolation : 0U);
    return run.lines;
}
