// The rule on what may be executable in a package, and where.
#include <sys/stat.h>

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "pkgvet/base/regular_file.h"
#include "pkgvet/elf/binary_facts.h"
#include "pkgvet/elf/binary_messages.h"
#include "pkgvet/elf/binary_rules.h"
#include "pkgvet/elf/executable_format.h"
#include "pkgvet/pattern/regex.h"
#include "pkgvet/pattern/rule_pattern.h"
#include "pkgvet/report/findings.h"
#include "pkgvet/rules/configuration.h"

namespace pkgvet {

namespace {

// Around the names that the patterns are built from.
constexpr const char* kBelow = "/.*";
constexpr const char* kShareDirectory = "/usr/share/";
constexpr const char* kSharedObjectInLib = R"(/lib/.*\.so.*)";
constexpr std::string_view kSharedObject = R"(.*\.so.*)";

enum class Place { MainBinary, Libexec, PrivateLibrary, SharedObject, Wrong };

// Where an executable stands. Nothing here is anchored at the package's root: the main binary's
// path counts wherever it occurs in a path, as the patterns do. So a path that merely begins with
// it is good as well, and so is one with ".so" in the name of a directory. Anchoring them would
// reject packages that are accepted.
class PlaceFinder {
public:
    PlaceFinder(const Configuration& configuration, const std::string& packageName)
        : mainBinary_(configuration.binDir() + packageName),
          libexec_(rulePattern(Regex::escape(configuration.libexecDir()) +
                               Regex::escape(packageName) + kBelow)),
          shareLibrary_(
              rulePattern(kShareDirectory + Regex::escape(packageName) + kSharedObjectInLib)),
          sharedObject_(rulePattern(kSharedObject)) {}

    Place find(const std::string& path) const {
        // An empty path of the main binary occurs in every path.
        if (path.find(mainBinary_) != std::string::npos) {
            return Place::MainBinary;
        }
        if (libexec_.match(path)) {
            return Place::Libexec;
        }
        if (shareLibrary_.match(path)) {
            return Place::PrivateLibrary;
        }
        return sharedObject_.match(path) ? Place::SharedObject : Place::Wrong;
    }

private:
    std::string mainBinary_;
    Regex libexec_;
    Regex shareLibrary_;
    Regex sharedObject_;
};

// Two bits and not a comparison of the whole type: a socket, whose type shares the bit of a regular
// file, counts as well.
bool isExecutableMode(mode_t mode) {
    constexpr mode_t kWanted = S_IFREG | S_IXUSR;
    return (mode & kWanted) == kWanted;
}

// Judges the format of each file once, whatever the number of its paths.
class FormatJudge {
public:
    bool isGood(const std::string& file) {
        const std::optional<FileIdentity> identity = identityOf(file);
        if (!identity) {
            return false;
        }
        const auto [answer, isNew] = answers_.try_emplace(*identity, false);
        if (isNew) {
            answer->second = hasGoodFormat(file, &allowance_);
        }
        return answer->second;
    }

private:
    std::map<FileIdentity, bool> answers_;
    ElfAllowance allowance_;
};

// Judges the format of all executables, and returns the paths of the good ones.
std::vector<std::string> checkFormats(const PackageFiles& files, BinaryFacts* facts,
                                      Findings* findings, std::vector<std::optional<bool>>* known) {
    std::vector<std::string> goodPaths;
    FormatJudge formats;
    known->resize(files.paths.size());
    for (std::size_t i = 0; i < files.paths.size(); ++i) {
        const std::string& path = files.paths[i];
        if (!isExecutableMode(files.modes[i])) {
            continue;
        }
        std::optional<bool>& isGood = (*known)[i];
        if (!isGood) {
            isGood = formats.isGood(files.root + path);
        }
        if (!*isGood) {
            findings->violation(kExecutableBadFormat, {path});
            continue;
        }
        facts->archSpecificContent = true;
        if (files.arch == kNoArch) {
            findings->warning(kShouldNotBeNoarch);
        }
        goodPaths.push_back(path);
    }
    return goodPaths;
}

void checkPlaces(const PlaceFinder& places, const std::string& root,
                 const std::vector<std::string>& paths, BinaryFacts* facts, Findings* findings) {
    for (const std::string& path : paths) {
        const Place place = places.find(root + path);
        facts->mainBinExec |= place == Place::MainBinary;
        facts->privateSharedObject |= place == Place::PrivateLibrary;
        if (place == Place::Wrong) {
            findings->violation(kExecutableBadLocation, {path});
        }
    }
}

}  // namespace

bool isExecutable(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && isExecutableMode(status.st_mode);
}

// All formats are judged before the first place, so that findings come in two groups, each in the
// order of the package.
void checkExecutables(const PackageFiles& files, const Configuration& configuration,
                      BinaryFacts* facts, Findings* findings,
                      std::vector<std::optional<bool>>* known) {
    std::vector<std::optional<bool>> own;
    const std::vector<std::string> goodPaths =
        checkFormats(files, facts, findings, known == nullptr ? &own : known);
    checkPlaces(PlaceFinder(configuration, files.packageName), files.root, goodPaths, facts,
                findings);
    if (!files.isQmlOnly && !facts->mainBinExec) {
        findings->violation(kMainBinaryMustBeExecutable);
    }
}

}  // namespace pkgvet
