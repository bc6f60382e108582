// One rule at a time.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "pkgvet/content/content_validator.h"
#include "pkgvet/package/rpm_meta.h"
#include "pkgvet/report/failures.h"
#include "pkgvet/report/findings.h"
#include "tests/support/package_builder.h"
#include "tests/support/temporary_directory.h"

// A package with its payload, unpacked into a directory of the test's own.
class UnpackedPackage {
public:
    explicit UnpackedPackage(const PackageBuilder& builder);

    const RpmMeta& meta() const { return meta_; }
    const TemporaryDirectory& tree() const { return tree_; }
    std::string root() const { return tree_.path(); }

private:
    TemporaryDirectory directory_;
    TemporaryDirectory tree_;
    std::string file_;
    RpmMeta meta_;
};

// What one rule said, and the bits that it left behind.
struct RuleRun {
    std::vector<std::string> lines;
    std::uint32_t failures;
};

// Runs rule on findings of its own, and captures what it reports.
RuleRun runRule(const std::function<void(pkgvet::Findings*)>& rule);

// Runs rule, which calls members of validator, and captures what they log.
RuleRun runRule(ContentValidator& validator, const std::function<void()>& rule);
