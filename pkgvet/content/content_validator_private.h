// The record behind ContentValidator: what its rules found and what they pass on to each other.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

#include "pkgvet/desktop/desktop_facts.h"
#include "pkgvet/elf/binary_facts.h"
#include "pkgvet/files/file_facts.h"
#include "pkgvet/qml/qml_facts.h"
#include "pkgvet/report/findings.h"

struct ContentValidatorPrivate {
    pkgvet::DesktopFacts desktopFacts;
    pkgvet::QmlFacts qmlFacts;
    pkgvet::BinaryFacts binaryFacts;
    pkgvet::FileFacts fileFacts;
    pkgvet::Findings findings;
    // Of the files of the package while all rules run, and nothing changes them.
    std::optional<std::vector<mode_t>> modes;
    std::string tempDir;  // without a trailing "/", empty unless the payload was unpacked
};
