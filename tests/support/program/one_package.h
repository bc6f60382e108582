// A package, and rules that it is judged by.
#pragma once

#include <string>

#include "tests/support/base/temporary_directory.h"
#include "tests/support/package/package_builder.h"
#include "tests/support/rules/rule_tree.h"

// Made once for a suite, since building takes time.
struct OnePackage {
    TemporaryDirectory directory;
    std::string rules = RuleTree().write(directory);
    std::string path = PackageBuilder("org.example.app")
                           .file("/usr/share/org.example.app/x", "x")
                           .build(directory);
};
