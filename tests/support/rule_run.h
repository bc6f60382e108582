// One rule at a time, on packages made for it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "pkgvet/content/content_validator.h"
#include "pkgvet/package/rpm_meta.h"
#include "tests/support/package_builder.h"
#include "tests/support/temporary_directory.h"

// The header of the package that builder builds.
RpmMeta metaOf(const PackageBuilder& builder);

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

enum class Verdict {
    Accepted,
    Rejected,          // while validation is enabled
    RejectedAnywhere,  // with validation switched off as well
};

// What a rule said, and the verdict on a package with nothing but its findings.
struct RuleRun {
    std::vector<std::string> lines;
    Verdict verdict;
};

// A validator without a payload; rules that take a directory need none.
class LoneValidator {
public:
    LoneValidator();

    ContentValidator& operator*() { return validator_; }
    ContentValidator* operator->() { return &validator_; }

private:
    ContentValidator validator_;
};

// Runs rule, which calls members of validator, and captures what they log.
RuleRun runRule(ContentValidator& validator, const std::function<void()>& rule);
