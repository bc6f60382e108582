// What the rules on the desktop file find out.
#pragma once

#include <string>
#include <vector>

namespace pkgvet {

// The comments say which rule writes a fact, and which rules read it. Where none is named, only the
// accessor of ContentValidator does. Without a desktop file all keep their initial values.
struct DesktopFacts {
    // Whether the package lists its desktop file. Written by checkDesktop; the other rules on the
    // file run only if it does.
    bool desktop = false;

    // Written by processDesktopFile.
    bool desktopName = false;
    bool desktopNameIllegal = false;
    bool desktopIcon = false;
    bool desktopExec = false;
    bool desktopType = false;
    // A QML launcher starts the application, which has no binary of its own. Read by the rules on
    // binaries and on paths.
    bool qmlOnly = false;
    bool ostrandQt5Application = false;  // read by the rule on QML imports
    bool knownApplicationType = false;
    std::vector<std::string> backgroundTaskGroups;  // read by processBackgroundTasks

    // Written by processPinfold.
    bool pinfoldSection = false;
    bool multiplePinfoldSection = false;
    bool deprecatedPinfoldSection = false;  // nothing reads it
    bool isSandboxed = false;
    bool illegalCharacters = false;
    bool correctOrgNameAppNamePair = true;
    bool correctOrgName = true;
    bool wrongLeadingOrgName = false;
    bool orgDomainName = false;
    bool correctDbus = true;
    bool correctSystemService = true;
    bool incompleteSystemService = false;
    bool correctSystemServiceAccount = true;
    bool dbusError = false;
    bool dbusWarning = false;
    std::string organizationName;  // read by the rule on paths, as is the next
    std::string applicationName;
    std::string pinfoldGroupName;  // the group of the sandbox keys; read by processBackgroundTasks
};

}  // namespace pkgvet
