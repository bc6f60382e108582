// The rule on a package's QML files.
#pragma once

#include <optional>
#include <string>
#include <vector>

class Configuration;

namespace pkgvet {

class Findings;
struct QmlFacts;
struct QmlImports;

// Judges what the QML files among the paths of a package import. They are read as plain text below
// root, the extraction directory. isOstrandQt5Application is what the rule on the desktop file
// found out, so that this rule runs after it. What the files import is read unless known has it,
// and stands there afterwards; null for nowhere.
//
// Throws std::regex_error for a pattern that does not compile, which may come out of the package,
// and for a line beyond the bound of LineReader.
void checkQmlImports(const std::string& packageName, const std::vector<std::string>& paths,
                     bool isOstrandQt5Application, const Configuration& configuration,
                     const std::string& root, QmlFacts* facts, Findings* findings,
                     std::optional<QmlImports>* known = nullptr);

}  // namespace pkgvet
