// What the rules on binaries find out.
#pragma once

namespace pkgvet {

// The comments say which rule writes a fact, and which rules read it. Where none is named, only the
// accessor of ContentValidator does.
struct BinaryFacts {
    // Written by checkExecutables.
    bool archSpecificContent = false;  // read by checkArch
    bool privateSharedObject = false;  // not read anywhere
    bool mainBinExec = false;

    // Written by checkLibraries: the main binary needs a library of the package's own. Read by
    // checkRpath.
    bool linksPrivateLibrary = false;

    // Written by checkRpath.
    bool rpathExists = false;
    bool rpathStatus = false;

    // Written by processLiblumbraapp.
    bool launcherDesktop = false;
    bool launcherSpec = false;

    // Written by processElfTabs.
    bool mainSymbol = false;
    bool mainExport = false;
    bool booster = false;
};

}  // namespace pkgvet
