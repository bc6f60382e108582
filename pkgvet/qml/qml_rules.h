// The rule on a package's QML files.
#pragma once

#include <string>
#include <vector>

class Configuration;

namespace pkgvet {

class Findings;
struct QmlFacts;

// Judges what the QML files among the paths of a package import. They are read as plain text below
// root, the extraction directory. isOstrandQt5Application is what the rule on the desktop file
// found out, so that this rule runs after it.
//
// Throws std::regex_error for a pattern that does not compile, which may come out of the package,
// and for a line beyond the bound of LineReader.
void checkQmlImports(const std::string& packageName, const std::vector<std::string>& paths,
                     bool isOstrandQt5Application, const Configuration& configuration,
                     const std::string& root, QmlFacts* facts, Findings* findings);

}  // namespace pkgvet
