// The rule on what may be executable in a package, and where.
#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "pkgvet/content/content_validator.h"
#include "pkgvet/content/content_validator_private.h"
#include "pkgvet/elf/elf_messages.h"
#include "pkgvet/elf/elf_reader.h"
#include "pkgvet/package/rpm_meta.h"
#include "pkgvet/pattern/regex.h"
#include "pkgvet/pattern/rule_pattern.h"
#include "pkgvet/report/logger.h"
#include "pkgvet/rules/configuration.h"

namespace {

constexpr std::string_view kNoArch = "noarch";

// Around the names that the patterns are built from.
constexpr const char* kBelow = "/.*";
constexpr const char* kShareDirectory = "/usr/share/";
constexpr const char* kSharedObjectInLib = R"(/lib/.*\.so.*)";
constexpr std::string_view kSharedObject = R"(.*\.so.*)";

Regex rulePattern(std::string_view text) {
    return Regex(text, pkgvet::kRulePattern.compile, pkgvet::kRulePattern.match);
}

bool hasGoodFormat(const ElfReader& reader) {
    const bool isLoaded =
        reader.elfClass() == ElfClass::Elf32 || reader.elfClass() == ElfClass::Elf64;
    return isLoaded && reader.encoding() == ElfEncoding::LittleEndian;
}

enum class Place { MainBinary, Libexec, PrivateLibrary, SharedObject, Wrong };

// Where an executable stands. Nothing here is anchored at the package's root: the main binary's
// path counts wherever it occurs in a path, as the patterns do, so that a path that merely begins
// with it, or has ".so" in the name of a directory, is good as well.
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

// Paths on disk of the files of the package that their owner may execute.
std::vector<std::string> executablesBelow(const std::string& root, const RpmMeta& rpm,
                                          const ContentValidator& validator) {
    std::vector<std::string> executables;
    for (const std::string& path : rpm.paths()) {
        if (validator.isExecutable(root + path)) {
            executables.push_back(root + path);
        }
    }
    return executables;
}

}  // namespace

void ContentValidator::checkExecutables(const Configuration& configuration, const RpmMeta& rpm,
                                        const std::string& root) {
    const auto report = [this, &root](const std::string& path, std::string_view finding) {
        d_ptr->failures |= pkgvet::kViolation;
        Logger::log(LogLevel::Error, {"[", std::string_view(path).substr(root.size()), finding});
    };

    std::vector<std::string> elfExecutables;
    for (const std::string& path : executablesBelow(root, rpm, *this)) {
        if (!hasGoodFormat(ElfReader(path.c_str()))) {
            report(path, pkgvet::kExecutableBadFormat);
            continue;
        }
        d_ptr->binaryFacts.archSpecificContent = true;
        if (rpm.arch() == kNoArch) {
            Logger::log(LogLevel::Warning, {pkgvet::kShouldNotBeNoarch});
        }
        elfExecutables.push_back(path);
    }

    const PlaceFinder places(configuration, rpm.name());
    for (const std::string& path : elfExecutables) {
        const Place place = places.find(path);
        d_ptr->binaryFacts.mainBinExec |= place == Place::MainBinary;
        d_ptr->binaryFacts.privateSharedObject |= place == Place::PrivateLibrary;
        if (place == Place::Wrong) {
            report(path, pkgvet::kExecutableBadLocation);
        }
    }

    if (!d_ptr->desktopFacts.qmlOnly && !d_ptr->binaryFacts.mainBinExec) {
        d_ptr->failures |= pkgvet::kViolation;
        Logger::log(LogLevel::Error, {pkgvet::kMainBinaryMustBeExecutable});
    }
}
