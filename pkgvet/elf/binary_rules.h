// The rules on a package's binaries, and the two tests of a file that ContentValidator offers.
#pragma once

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

// A package as checkExecutables looks at it. It only refers to what it is made of.
struct PackageFiles {
    const std::string& packageName;
    const std::string& arch;
    const std::vector<std::string>& paths;  // as in the package
    const std::string& root;                // on disk: in front of a path it gives the file
    bool isQmlOnly;                         // a QML launcher starts it; it has no main binary
};

// In all rules, binary is the path of the main binary on disk. A file that is missing, or is not an
// ELF file, has no symbols, libraries or run path, and that alone is not a finding.

// Each executable must be a good ELF file in one of the places for executables, and the main binary
// must be among them unless the package is QML-only.
void checkExecutables(const Configuration& configuration, const PackageFiles& files,
                      BinaryFacts* facts, Findings* findings);

// Each library that the main binary needs must be listed by the rule set or, by its path, be among
// the package's own. Throws std::regex_error for a pattern that does not compile, and
// std::out_of_range for a name of less than three characters that is on no list.
void checkLibraries(const Configuration& configuration, const std::string& packageName,
                    const std::vector<std::string>& paths, const std::string& binary,
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
