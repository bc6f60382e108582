// Packages that say one thing and do another, each in one way.
#pragma once

#include <string>
#include <vector>

#include "tests/support/package/crafted_package.h"

// What becomes of acceptedPackage(), in which all else stays right.
struct Lie {
    const char* name;  // what the package does
    void (*tell)(CraftedPackage* package);
    // Ids of all findings of the program's own, in alphabetical order and each once; none where the
    // package cannot be judged.
    std::vector<std::string> findings;
    // A line of treeBelow() that shows what rpm would install; empty where the lie is not in the
    // tree, or rpm refuses the package.
    std::string installed = {};
};

// In the header: paths, modes, types, and the lists that describe files.
std::vector<Lie> liesOfTheHeader();
// In the header: scripts, triggers and all that rpm would do beside installing files.
std::vector<Lie> liesInTags();
// Between the header and the payload.
std::vector<Lie> liesAboutFiles();
// In the form of the archive.
std::vector<Lie> liesOfTheArchive();
// In digests and sizes of the whole.
std::vector<Lie> liesInDigests();

std::vector<Lie> allLies();
