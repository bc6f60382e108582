// The rule set that a package is held against.
#pragma once

#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "pkgvet/export.h"
#include "pkgvet/rules/profiles.h"

using JsonArray = struct _JsonArray;
struct ConfigurationPrivate;

// Everything that the rules need to know and that is not fixed in the code, read whole by the
// constructor from a tree of JSON files: one configuration file and the list files that it names.
//
// Nothing is logged, and files that cannot be read add nothing: a configuration made from a bad
// path stands with empty lists and says so in no way. Callers that want to know check the tree
// beforehand. Apart from setValidationEnabled the record never changes; copies are independent.
//
// Lists keep the order of their files and their duplicates. Those of the chosen profile come first,
// then those of its parent, then of its parent's parent.
//
// There is no move constructor, which would leave an object without its record: rvalues are copied.
// NOLINTNEXTLINE(cppcoreguidelines-special-member-functions)
class PKGVET_EXPORT Configuration {
public:
    // path is the configuration file, a path on disk; the paths in it are taken as they stand, so
    // relative ones start at the working directory. profile chooses by position in the file.
    //
    // Throws std::logic_error ("basic_string: construction from null is not valid") where
    // "disallowed_components" is missing, where an element of a list is not a string and where a
    // parent lacks a key; std::invalid_argument, with file and key in its text, for any other
    // mandatory key that is missing, for a profile that the file does not hold, for profiles that
    // inherit in a circle, and with the file for one that nests too deeply to be parsed.
    Configuration(const std::string& path, Profiles profile);
    Configuration(const Configuration& other);
    Configuration& operator=(const Configuration&) = delete;
    // Exchanges the two records: other holds this one's former record afterwards.
    Configuration& operator=(Configuration&& other) noexcept;
    ~Configuration();

    // Whether rule violations reject a package. From the state of the developer mode; true unless
    // that says otherwise.
    bool validationEnabled() const;
    // Overrules the developer mode. Const, as the validators hold a const reference; it must come
    // before they run.
    void setValidationEnabled(bool enabled) const;

    bool desktopRequirement() const;
    bool iconRequirement() const;

    // Directories in the package, with their trailing "/" as the rule files write them.
    const std::string& binDir() const;
    const std::string& shareDir() const;
    const std::string& desktopDir() const;
    const std::string& iconDir() const;
    const std::string& libexecDir() const;

    // The rule set's own name, the name that packages must provide (empty: none), and the name of
    // its direct parent. None of them is inherited.
    const std::string& name() const;
    const std::string& provides() const;
    const std::string& inheritance() const;

    const std::vector<int>& iconSizes() const;

    // Patterns, each for the whole of a text, as matchesAnyPattern takes them.
    const std::vector<std::string>& pathsList() const;
    const std::vector<std::string>& allowedLibraries() const;
    const std::vector<std::string>& unstableLibraries() const;
    const std::vector<std::string>& deprecatedLibraries() const;
    const std::vector<std::string>& allowedRequires() const;
    const std::vector<std::string>& unstableRequires() const;
    const std::vector<std::string>& deprecatedRequires() const;
    const std::vector<std::string>& allowedQmlimports() const;
    const std::vector<std::string>& unstableQmlimports() const;
    const std::vector<std::string>& deprecatedQmlimports() const;
    const std::vector<std::string>& disallowedPatterns() const;
    const std::vector<std::string>& disallowedHandlers() const;

    // Literal names.
    const std::unordered_set<std::string>& allowedPermissions() const;

    // "regular" to "market", and "<unknown>" for a value outside the enumeration.
    static std::string getProfileName(Profiles profile);

private:
    // Adds the lists of the profile called parent, and of its parents. Only "regular" and
    // "extended" can be parents; any other name ends the walk.
    void applyInheritance(const std::string& parent, JsonArray* profiles);

    std::unique_ptr<ConfigurationPrivate> d_ptr;
};
