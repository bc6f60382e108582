// The rule on the libraries that the main binary links.
#include <algorithm>
#include <array>
#include <iterator>
#include <set>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "pkgvet/content/content_validator.h"
#include "pkgvet/content/content_validator_private.h"
#include "pkgvet/elf/elf_messages.h"
#include "pkgvet/elf/elf_reader.h"
#include "pkgvet/package/rpm_meta.h"
#include "pkgvet/pattern/pattern_list.h"
#include "pkgvet/report/logger.h"
#include "pkgvet/rules/configuration.h"

namespace {

using pkgvet::PatternList;

constexpr const char* kLibraryDirectory = "/usr/lib/3rdparty/";

// The sizes of "lib", and of "lib" and ".so" together.
constexpr std::size_t kStemBegin = 3;
constexpr std::size_t kAroundStem = 6;

enum class LibraryProblem { UnstableOrDeprecated, NotAllowed };

struct Finding {
    std::string name;
    LibraryProblem kind;
};

// Elements keep their order and duplicates.
std::vector<std::string> matching(const std::vector<std::string>& names,
                                  const std::vector<std::string>& patterns) {
    PatternList list(patterns);
    std::vector<std::string> result;
    std::copy_if(names.begin(), names.end(), std::back_inserter(result),
                 [&list](const std::string& name) { return list.matches(name); });
    return result;
}

std::vector<std::string> notMatching(const std::vector<std::string>& names,
                                     const std::vector<std::string>& patterns) {
    PatternList list(patterns);
    std::vector<std::string> result;
    std::remove_copy_if(names.begin(), names.end(), std::back_inserter(result),
                        [&list](const std::string& name) { return list.matches(name); });
    return result;
}

void append(std::vector<Finding>& findings, std::vector<std::string> names, LibraryProblem kind) {
    for (std::string& name : names) {
        findings.push_back({std::move(name), kind});
    }
}

// The suspects without findings, sorted and each once. A library has as many findings as it has
// elements, or twice as many if it is on both lists, so no element of it is left.
std::set<std::string> remaining(const std::vector<std::string>& suspects,
                                const std::vector<Finding>& findings) {
    std::set<std::string> rest(suspects.begin(), suspects.end());
    for (const Finding& finding : findings) {
        rest.erase(finding.name);
    }
    return rest;
}

// Cut by length alone, whatever stands there: "libfoo.so.1" has the stem "foo.s". A name of less
// than three characters throws.
std::string stemOf(const std::string& library) {
    return library.substr(kStemBegin, library.size() - kAroundStem);
}

// Whether a package keeps a library in one of the places for its own. Its file list decides, not
// what was unpacked.
class OwnLibraries {
public:
    OwnLibraries(const Configuration& configuration, const RpmMeta& rpm)
        : shareRoot_(configuration.shareDir() + rpm.name() + "/"),
          libRoot_(kLibraryDirectory + rpm.name() + "/"),
          paths_(rpm.paths().begin(), rpm.paths().end()) {}

    bool contain(const std::string& library) const {
        const std::string plugin = "qmlplugins/" + stemOf(library) + "/" + library;
        const std::array<std::string, 8> candidates = {
            shareRoot_ + "lib/" + library,
            shareRoot_ + "libs/" + library,
            shareRoot_ + "lib/" + plugin,
            shareRoot_ + "libs/" + plugin,
            libRoot_ + library,
            libRoot_ + "lib/" + library,
            libRoot_ + plugin,
            libRoot_ + "lib/" + plugin,
        };
        return std::any_of(candidates.begin(), candidates.end(),
                           [this](const std::string& path) { return paths_.contains(path); });
    }

private:
    std::string shareRoot_;
    std::string libRoot_;
    std::unordered_set<std::string_view> paths_;
};

}  // namespace

// All names are tried before the first line is written, so that a pattern that does not compile, or
// a name that is too short, ends the rule without half of its findings.
void ContentValidator::checkLibraries(const Configuration& configuration, const RpmMeta& rpm,
                                      const std::string& path) {
    const ElfReader reader(path.c_str());
    const std::vector<std::string> suspects =
        notMatching(reader.libraries(), configuration.allowedLibraries());
    if (suspects.empty()) {
        return;
    }
    std::vector<Finding> findings;
    append(findings, matching(suspects, configuration.unstableLibraries()),
           LibraryProblem::UnstableOrDeprecated);
    append(findings, matching(suspects, configuration.deprecatedLibraries()),
           LibraryProblem::UnstableOrDeprecated);

    const OwnLibraries ownLibraries(configuration, rpm);
    for (const std::string& library : remaining(suspects, findings)) {
        if (ownLibraries.contain(library)) {
            d_ptr->binaryFacts.linksPrivateLibrary = true;
        } else {
            findings.push_back({library, LibraryProblem::NotAllowed});
        }
    }

    for (const Finding& finding : findings) {
        if (finding.kind == LibraryProblem::UnstableOrDeprecated) {
            Logger::log(LogLevel::Warning, {"[", finding.name, pkgvet::kLibraryUnstable});
        } else {
            d_ptr->failures |= pkgvet::kViolation;
            Logger::log(LogLevel::Error, {"[", finding.name, pkgvet::kLibraryNotAllowed});
        }
    }
}
