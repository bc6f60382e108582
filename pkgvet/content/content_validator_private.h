// The record behind ContentValidator: what its rules found and what they pass on to each other.
#pragma once

#include <sys/types.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "pkgvet/desktop/desktop_facts.h"
#include "pkgvet/elf/binary_facts.h"
#include "pkgvet/files/file_facts.h"
#include "pkgvet/qml/qml_facts.h"
#include "pkgvet/report/findings.h"

// What rules ask of the files of a package whatever the configuration.
struct PayloadFacts {
    std::vector<std::string> paths;
    std::vector<mode_t> modes;
    // Whether the file of each path holds a hard-coded path, as far as the caller knew.
    std::vector<std::optional<bool>> knownTexts;
    // Once a rule has asked:
    std::optional<std::vector<std::string>> hardcodedPaths;
    std::optional<pkgvet::QmlImports> qmlImports;
    std::vector<std::optional<bool>> goodFormats;  // of the files of all paths
};

struct ContentValidatorPrivate {
    pkgvet::DesktopFacts desktopFacts;
    pkgvet::QmlFacts qmlFacts;
    pkgvet::BinaryFacts binaryFacts;
    pkgvet::FileFacts fileFacts;
    pkgvet::Findings findings;
    // While all rules run, and nothing changes the files.
    std::shared_ptr<PayloadFacts> facts;
    // What copies share, if they were told to.
    std::shared_ptr<PayloadFacts> rememberedFacts;
    std::string tempDir;  // without a trailing "/", empty unless the payload was unpacked
};
