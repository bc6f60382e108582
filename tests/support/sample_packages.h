// Packages that between them draw every finding that a package can draw.
#pragma once

#include <string>
#include <vector>

#include "pkgvet/rules/profiles.h"
#include "tests/support/rule_tree.h"
#include "tests/support/temporary_directory.h"

struct SamplePackage {
    std::string path;
    Profiles profile;  // to judge it under
};

// The rules that the samples break.
RuleTree sampleRules();

// Builds them all below directory, which takes some seconds.
std::vector<SamplePackage> buildSamples(const TemporaryDirectory& directory);
