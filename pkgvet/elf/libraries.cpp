// The rule on the libraries that the main binary links.
#include <algorithm>
#include <array>
#include <iterator>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "pkgvet/elf/binary_facts.h"
#include "pkgvet/elf/binary_messages.h"
#include "pkgvet/elf/binary_rules.h"
#include "pkgvet/elf/read_elf.h"
#include "pkgvet/pattern/pattern_list.h"
#include "pkgvet/report/findings.h"
#include "pkgvet/rules/configuration.h"

namespace pkgvet {

namespace {

constexpr const char* kLibraryDirectory = "/usr/lib/3rdparty/";

// The sizes of "lib", and of "lib" and ".so" together.
constexpr std::size_t kStemBegin = 3;
constexpr std::size_t kAroundStem = 6;

enum class LibraryProblem { UnstableOrDeprecated, NotAllowed };

struct LibraryFinding {
    std::string name;
    LibraryProblem kind;
};

// Tries a list of patterns on each name once, as a file may need one library a million times.
class NameList {
public:
    explicit NameList(const std::vector<std::string>& patterns) : patterns_(patterns) {}

    bool matches(const std::string& name) {
        const auto known = answers_.find(name);
        return known != answers_.end()
                   ? known->second
                   : answers_.emplace(name, patterns_.matches(name)).first->second;
    }

private:
    PatternList patterns_;
    std::unordered_map<std::string, bool> answers_;
};

// Elements keep their order and duplicates.
std::vector<std::string> notMatching(const std::vector<std::string>& names,
                                     const std::vector<std::string>& patterns) {
    NameList list(patterns);
    std::vector<std::string> result;
    std::remove_copy_if(names.begin(), names.end(), std::back_inserter(result),
                        [&list](const std::string& name) { return list.matches(name); });
    return result;
}

void appendTolerated(const std::vector<std::string>& suspects,
                     const std::vector<std::string>& patterns,
                     std::vector<LibraryFinding>* findings) {
    NameList list(patterns);
    for (const std::string& name : suspects) {
        if (list.matches(name)) {
            findings->push_back({name, LibraryProblem::UnstableOrDeprecated});
        }
    }
}

// One finding for each element that is on a list, and two if it is on both.
std::vector<LibraryFinding> toleratedLibraries(const std::vector<std::string>& suspects,
                                               const Configuration& configuration) {
    std::vector<LibraryFinding> findings;
    appendTolerated(suspects, configuration.unstableLibraries(), &findings);
    appendTolerated(suspects, configuration.deprecatedLibraries(), &findings);
    return findings;
}

// The suspects without findings, sorted and each once. A library has at least as many findings as
// it has elements, so that no element of it is left.
std::set<std::string> remaining(const std::vector<std::string>& suspects,
                                const std::vector<LibraryFinding>& findings) {
    std::set<std::string> rest(suspects.begin(), suspects.end());
    for (const LibraryFinding& finding : findings) {
        rest.erase(finding.name);
    }
    return rest;
}

// Cut by length alone, whatever stands there: "libfoo.so.1" has the stem "foo.s". A name of less
// than three characters throws.
std::string stemOf(const std::string& library) {
    return library.substr(kStemBegin, library.size() - kAroundStem);
}

// Whether a package keeps a library in one of the places for its own libraries. Its file list
// decides, not what was unpacked.
class OwnLibraries {
public:
    OwnLibraries(const std::string& packageName, const std::vector<std::string>& paths,
                 const Configuration& configuration)
        : shareRoot_(configuration.shareDir() + packageName + "/"),
          libRoot_(kLibraryDirectory + packageName + "/"),
          paths_(paths.begin(), paths.end()) {}

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

void report(const std::vector<LibraryFinding>& libraries, Findings* findings) {
    for (const LibraryFinding& library : libraries) {
        if (library.kind == LibraryProblem::UnstableOrDeprecated) {
            findings->warning(kLibraryUnstable, {library.name});
        } else {
            findings->violation(kLibraryNotAllowed, {library.name});
        }
    }
}

}  // namespace

// All names are tried before the first line is written, so that a pattern that does not compile, or
// a name that is too short, ends the rule without half of its findings.
void checkLibraries(const std::string& packageName, const std::vector<std::string>& paths,
                    const std::string& binary, const Configuration& configuration,
                    BinaryFacts* facts, Findings* findings) {
    const ElfReaderPrivate elf = readElf(binary, ignoreSymbol);
    const std::vector<std::string> suspects =
        notMatching(elf.libraries, configuration.allowedLibraries());
    if (suspects.empty()) {
        return;
    }
    std::vector<LibraryFinding> libraries = toleratedLibraries(suspects, configuration);
    const OwnLibraries ownLibraries(packageName, paths, configuration);
    for (const std::string& library : remaining(suspects, libraries)) {
        if (ownLibraries.contain(library)) {
            facts->linksPrivateLibrary = true;
        } else {
            libraries.push_back({library, LibraryProblem::NotAllowed});
        }
    }
    report(libraries, findings);
}

}  // namespace pkgvet
