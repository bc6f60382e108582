// The rules on a package's binaries, and the two tests of a file that ContentValidator offers.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

class Configuration;
class ElfReader;

namespace pkgvet {

class Findings;
struct BinaryFacts;

// The architecture of a package that can be installed on all devices.
inline constexpr std::string_view kNoArch = "noarch";

// In all rules, paths are paths of the package, and binary is the path of its main binary on disk.
// A main binary that is missing, or is not an ELF file, has no symbols, libraries or run path. A
// package is QML-only if a QML launcher starts it, so that it has no main binary.

// A package as checkExecutables looks at it. It only refers to what it is made of, and is meant for
// the length of a call.
struct PackageFiles {
    const std::string& packageName;
    const std::string& arch;
    const std::vector<std::string>& paths;
    const std::vector<mode_t>& modes;  // of the files at paths, from readModes()
    const std::string& root;           // the directory on disk that the package was unpacked into
    bool isQmlOnly;
};

// Each executable must be a good ELF file in one of the places for executables, and the main binary
// must be among them unless the package is QML-only. A file is read unless known, which has a place
// for each path, says whether it is a good ELF file, and that stands there afterwards; null for
// nowhere.
void checkExecutables(const PackageFiles& files, const Configuration& configuration,
                      BinaryFacts* facts, Findings* findings,
                      std::vector<std::optional<bool>>* known = nullptr);

// Each library that the main binary needs must be listed by the rule set or, by its path, be among
// the package's own. Throws std::regex_error for a pattern that does not compile, and
// std::out_of_range for a name of less than three characters that is on no list.
void checkLibraries(const std::string& packageName, const std::vector<std::string>& paths,
                    const std::string& binary, const Configuration& configuration,
                    BinaryFacts* facts, Findings* findings);

// The run path of the main binary must lead to the package's own directories or the system's, and
// must be there if facts say that the main binary needs one of the package's own libraries.
// Nothing is reported on a QML-only package.
void checkRpath(const std::string& packageName, const std::string& binary, bool isQmlOnly,
                BinaryFacts* facts, Findings* findings);

// A QML-only package without machine code should be noarch.
void checkArch(const std::string& arch, bool isQmlOnly, const BinaryFacts& facts,
               Findings* findings);

// A QML-only package must require the launcher, and any other package must not.
void processLiblumbraapp(const std::vector<std::string>& requireNames, bool isQmlOnly,
                         BinaryFacts* facts, Findings* findings);

// The main binary must have the symbols that the launcher needs. The facts are written in any case,
// but nothing is reported unless the package installs a main binary. importsToolkit: a QML file of
// the package imports the toolkit, so that the launcher is sure to be used.
void processElfTabs(const std::string& binary, bool isInstalled, bool importsToolkit,
                    BinaryFacts* facts, Findings* findings);

// Whether path, on disk, leads to a regular file that its owner may execute.
bool isExecutable(const std::string& path);

// Whether the file has no DT_RPATH.
bool isRpathEmpty(const ElfReader& reader);

}  // namespace pkgvet
