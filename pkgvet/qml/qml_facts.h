// What the rule on QML imports finds out.
#pragma once

#include <cstddef>
#include <set>
#include <string>

namespace pkgvet {

// Written by checkQmlImports.
struct QmlFacts {
    bool ostrandImport = false;       // read by the rule on the symbols of the main binary
    bool xmlListModelImport = false;  // nothing reads it
};

// What the QML files of a package import, whatever the configuration.
struct QmlImports {
    std::set<std::string> texts;     // in byte order, each once
    std::size_t ostrandImports = 0;  // in all files together
    QmlFacts facts = {};
};

}  // namespace pkgvet
