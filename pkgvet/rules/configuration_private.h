// The record behind Configuration.
#pragma once

#include <string>
#include <unordered_set>
#include <vector>

struct ConfigurationPrivate {
    bool validationEnabled = true;
    bool desktopRequirement = false;
    bool iconRequirement = false;
    std::string binDir;
    std::string shareDir;
    std::string desktopDir;
    std::string iconDir;
    std::string libexecDir;
    std::string name;
    std::string provides;
    std::string inheritance;
    std::vector<int> iconSizes;
    std::vector<std::string> pathsList;
    std::vector<std::string> allowedLibraries;
    std::vector<std::string> unstableLibraries;
    std::vector<std::string> deprecatedLibraries;
    std::vector<std::string> allowedRequires;
    std::vector<std::string> unstableRequires;
    std::vector<std::string> deprecatedRequires;
    std::vector<std::string> allowedQmlimports;
    std::vector<std::string> unstableQmlimports;
    std::vector<std::string> deprecatedQmlimports;
    std::vector<std::string> disallowedPatterns;
    std::vector<std::string> disallowedHandlers;
    std::unordered_set<std::string> allowedPermissions;
};
