// Packages that between them draw every finding that a package can draw.
#pragma once

#include <string>
#include <vector>

#include "pkgvet/rules/profiles.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/rules/rule_tree.h"

struct SamplePackage {
    std::string path;
    Profiles profile;  // to judge it under
};

// The rules that the samples break.
RuleTree sampleRules();

// Builds them all below directory, which takes some seconds.
std::vector<SamplePackage> buildSamples(const TemporaryDirectory& directory);
