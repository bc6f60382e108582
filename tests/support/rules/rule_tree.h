// Rule trees for tests.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "pkgvet/rules/configuration.h"
#include "tests/support/base/temporary_directory.h"

struct TierLists {
    std::vector<std::string> allowed;
    std::vector<std::string> unstable;
    std::vector<std::string> deprecated;
};

struct ProfileRules {
    std::string name;
    std::string provides;
    std::string inheritance;
    bool requireDesktop = false;
    bool requireIcons = false;
    std::vector<std::string> paths;
    TierLists libraries;
    TierLists requires_;
    TierLists qmlimports;
    std::vector<std::string> permissions;
};

// A tree that permits nothing until a test fills it in. Profiles stand in the order of the
// enumeration and bear its names.
struct RuleTree {
    RuleTree();

    std::vector<int> iconSizes;
    std::string binDir = "/usr/bin/";
    std::string shareDir = "/usr/share/";
    std::string desktopDir = "/usr/share/applications/";
    std::string iconDir = "/usr/share/icons/hicolor/";
    std::string libexecDir = "/usr/libexec/";
    std::vector<std::string> disallowedPatterns;
    std::vector<std::string> disallowedHandlers;
    std::array<ProfileRules, 6> profiles;

    ProfileRules& regular() { return profiles[0]; }

    // Writes all files below directory and returns the path of the configuration file.
    std::string write(const TemporaryDirectory& directory) const;
};

// What tree says for profile, with validation enabled whatever this machine's developer mode is.
Configuration load(const RuleTree& tree, Profiles profile = Profiles::Regular);
