// The record behind ContentValidator: what its rules found and what they hand on to each other.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "pkgvet/report/failures.h"

struct ContentValidatorPrivate {
    std::uint32_t failures = 0;

    bool desktop = false;
    bool desktopName = false;
    bool desktopNameIllegal = false;
    bool desktopIcon = false;
    bool desktopExec = false;
    bool qmlOnly = false;  // the application is started by a QML launcher and has no binary
    bool desktopType = false;
    bool ostrandQt5Application = false;
    bool knownApplicationType = false;
    bool ostrandImport = false;
    bool xmlListModelImport = false;
    bool archSpecificContent = false;
    bool privateSharedObject = false;
    bool linksPrivateLibrary = false;  // the main binary needs a library of the package's own
    bool rpathExists = false;
    bool rpathStatus = false;
    bool mainSymbol = false;
    bool mainExport = false;
    bool booster = false;
    bool arch = false;
    bool launcherDesktop = false;
    bool launcherSpec = false;
    bool debugDir = false;
    bool unwantedBinExists = false;  // the main binary is there, whether wanted or not
    bool mainBinExec = false;
    bool pinfoldSection = false;
    bool multiplePinfoldSection = false;
    bool illegalCharacters = false;
    bool correctOrgNameAppNamePair = true;
    bool correctOrgName = true;
    bool wrongLeadingOrgName = false;
    bool orgDomainName = false;
    bool disallowedOrgName = false;
    bool correctDbus = true;
    bool correctSystemService = true;
    bool incompleteSystemService = false;
    bool correctSystemServiceAccount = true;
    bool dbusError = false;
    bool dbusWarning = false;
    bool isSandboxed = false;
    bool deprecatedPinfoldSection = false;
    bool correctSealwatchd = true;
    bool binDirOwned = false;

    std::string organizationName;
    std::string applicationName;
    std::string tempDir;           // without a trailing "/", empty unless the payload was unpacked
    std::string pinfoldGroupName;  // the desktop group that holds the sandbox keys
    std::vector<std::string> backgroundTaskGroups;
};
