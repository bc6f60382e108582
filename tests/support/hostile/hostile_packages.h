// Packages that try to reach out of the place where they are unpacked, or to use the machine up.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/support/package/crafted_package.h"

// What a package aims at.
struct Target {
    std::string token;    // part of each name that it would make
    std::string outside;  // a directory that holds the file "canary"
};

// What becomes of a package. Where the machine's files or a decompressor decide, it is not stated.
enum class Outcome { Accepted, Rejected, NotJudged, NotAccepted, NotStated };

struct HostilePackage {
    const char* name;  // what the package does
    // What becomes of acceptedPackage().
    std::function<void(CraftedPackage* package, const Target& target)> arm;
    Outcome outcome;
    // Part of what the report says: the id of a finding, or of the cause.
    std::string says = {};
};

// In names, types and modes of entries.
std::vector<HostilePackage> packagesThatReachOut();
// In streams that are cut, damaged, joined or large.
std::vector<HostilePackage> packagesWithBadStreams();
// In the header.
std::vector<HostilePackage> packagesWithBadHeaders();
// In what the header says of the payload, and each in its own form.
std::vector<HostilePackage> packagesThatLie();
// In sizes that are as large as they say.
std::vector<HostilePackage> packagesOfRealSizes();
// In files that go as far as their readers do, or beyond. acceptedPackage() is to have this icon,
// of 86 pixels.
inline const std::string kHostileIcon = "/usr/share/icons/hicolor/86x86/apps/org.example.app.png";
std::vector<HostilePackage> packagesAtTheLimits();
// In what makes a mark as soon as anything runs or believes it.
std::vector<HostilePackage> packagesThatWantToBeRun();
