// The file of a project, ".pkgvet.json": what `pkgvet check` is to go by in its directories.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cli/base/fault.h"
#include "cli/model/model.h"
#include "pkgvet/rules/profiles.h"

namespace pkgvet::cli {

// What it says; whatever it leaves out is empty.
struct ProjectFile {
    std::vector<Profiles> profiles;
    std::string rules;
    std::vector<std::string> waivers;
    std::string baseline;
    std::optional<Severity> failOn;
    std::map<std::string, Position> positions;  // of the values, by their keys
};

struct FoundProjectFile {
    std::string path;     // empty when there is none
    std::string refusal;  // why it must not be used; empty when it may
};

// The project file in directory, or the nearest one in the directories above it that lie on the
// same file system. It may be used when it and its directory belong to the user and nobody else may
// write to them: it decides which findings count. One that may not be used still ends the search.
FoundProjectFile findProjectFile(const std::string& directory);

// The project file at path, with its paths, which start at its directory, made absolute. Everything
// that is wrong with it goes to faults; the result is of use only when nothing was.
ProjectFile readProjectFile(const std::string& path, std::vector<Fault>* faults);

}  // namespace pkgvet::cli
