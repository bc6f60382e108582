// A package that no rule has anything to say about.
#pragma once

#include <string>

#include "tests/support/package/crafted_package.h"
#include "tests/support/rules/rule_tree.h"

inline const std::string kAcceptedName = "org.example.app";
// Directories of the package.
inline const std::string kAcceptedData = "/usr/share/org.example.app";
inline const std::string kAcceptedQml = kAcceptedData + "/qml";
// Files of the package: text in /data, a link to it in /link.
inline const std::string kAcceptedDesktopFile = "/usr/share/applications/org.example.app.desktop";
inline const std::string kAcceptedPage = kAcceptedQml + "/main.qml";
inline const std::string kAcceptedText = kAcceptedData + "/data";
inline const std::string kAcceptedLink = kAcceptedData + "/link";

// The rules under which it is accepted.
RuleTree acceptingRules();

CraftedPackage acceptedPackage();
std::string acceptedDesktopText();
