// What Configuration tells of its record.
#include "pkgvet/rules/configuration.h"
#include "pkgvet/rules/configuration_private.h"

bool Configuration::desktopRequirement() const {
    return d_ptr->desktopRequirement;
}

bool Configuration::iconRequirement() const {
    return d_ptr->iconRequirement;
}

const std::string& Configuration::binDir() const {
    return d_ptr->binDir;
}

const std::string& Configuration::shareDir() const {
    return d_ptr->shareDir;
}

const std::string& Configuration::desktopDir() const {
    return d_ptr->desktopDir;
}

const std::string& Configuration::iconDir() const {
    return d_ptr->iconDir;
}

const std::string& Configuration::libexecDir() const {
    return d_ptr->libexecDir;
}

const std::string& Configuration::name() const {
    return d_ptr->name;
}

const std::string& Configuration::provides() const {
    return d_ptr->provides;
}

const std::string& Configuration::inheritance() const {
    return d_ptr->inheritance;
}

const std::vector<int>& Configuration::iconSizes() const {
    return d_ptr->iconSizes;
}

const std::vector<std::string>& Configuration::pathsList() const {
    return d_ptr->pathsList;
}

const std::vector<std::string>& Configuration::allowedLibraries() const {
    return d_ptr->allowedLibraries;
}

const std::vector<std::string>& Configuration::unstableLibraries() const {
    return d_ptr->unstableLibraries;
}

const std::vector<std::string>& Configuration::deprecatedLibraries() const {
    return d_ptr->deprecatedLibraries;
}

const std::vector<std::string>& Configuration::allowedRequires() const {
    return d_ptr->allowedRequires;
}

const std::vector<std::string>& Configuration::unstableRequires() const {
    return d_ptr->unstableRequires;
}

const std::vector<std::string>& Configuration::deprecatedRequires() const {
    return d_ptr->deprecatedRequires;
}

const std::vector<std::string>& Configuration::allowedQmlimports() const {
    return d_ptr->allowedQmlimports;
}

const std::vector<std::string>& Configuration::unstableQmlimports() const {
    return d_ptr->unstableQmlimports;
}

const std::vector<std::string>& Configuration::deprecatedQmlimports() const {
    return d_ptr->deprecatedQmlimports;
}

const std::vector<std::string>& Configuration::disallowedPatterns() const {
    return d_ptr->disallowedPatterns;
}

const std::vector<std::string>& Configuration::disallowedHandlers() const {
    return d_ptr->disallowedHandlers;
}

const std::unordered_set<std::string>& Configuration::allowedPermissions() const {
    return d_ptr->allowedPermissions;
}
