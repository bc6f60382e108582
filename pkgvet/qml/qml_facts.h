// What the rule on QML imports finds out.
#pragma once

namespace pkgvet {

// Written by checkQmlImports.
struct QmlFacts {
    bool ostrandImport = false;       // read by the rule on the symbols of the main binary
    bool xmlListModelImport = false;  // nothing reads it
};

}  // namespace pkgvet
