// Desktop files, and what else the rules on them need, without a package.
#pragma once

#include <string>

#include "pkgvet/desktop/desktop_entry.h"
#include "pkgvet/rules/configuration.h"

// A desktop file with this content.
DesktopEntry desktopEntry(const std::string& content);

// The name of the package that the tests below are about, where it does not matter.
inline constexpr const char* kPackage = "org.example.app";

// A desktop file for kPackage without a finding as far as its first group goes.
inline constexpr const char* kGoodEntry =
    "[Desktop Entry]\nType=Application\nName=App\nIcon=org.example.app\nExec=org.example.app\n"
    "X-Dorrit-Application-Type=ostrand-qt5\n";

// Its sandbox section.
inline constexpr const char* kGoodSection =
    "[X-Application]\nOrganizationName=org.example\nApplicationName=app\n";

// A rule set of this name that permits the permissions "Internet" and "Location".
const Configuration& rulesNamed(const std::string& name);
