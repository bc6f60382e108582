// The form of a rule tree: the keys of its files, the types of their values, and where a
// Configuration keeps each. Keys stand in the order in which they are read.
//
// A tree is a configuration file and the files that it names. Each of them is a JSON object, and
// all keys are mandatory.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "pkgvet/rules/configuration_private.h"

namespace pkgvet {

using TextField = std::string ConfigurationPrivate::*;
using FlagField = bool ConfigurationPrivate::*;
using ListField = std::vector<std::string> ConfigurationPrivate::*;

// A key with a string under it.
struct TextKey {
    const char* name;
    TextField field;
};

// A key with true or false under it.
struct FlagKey {
    const char* name;
    FlagField field;
};

// A key with an array of strings under it.
struct ListKey {
    const char* name;
    ListField field;
};

// The configuration file.
inline constexpr const char* kIconSizesKey = "icon_sizes";  // an array of integers
inline constexpr const char* kDirsKey = "dirs";             // an object
inline constexpr const char* kProfilesKey = "profiles";     // an array of objects, see Profiles

// The keys of "dirs": these, and then the path of the disallowed components file, a string.
inline constexpr std::array<TextKey, 5> kDirectoryKeys = {{
    {"bin_dir", &ConfigurationPrivate::binDir},
    {"share_dir", &ConfigurationPrivate::shareDir},
    {"desktop_dir", &ConfigurationPrivate::desktopDir},
    {"icon_dir", &ConfigurationPrivate::iconDir},
    {"libexec_dir", &ConfigurationPrivate::libexecDir},
}};
inline constexpr const char* kDisallowedComponentsKey = "disallowed_components";

// The keys of a profile: the paths of its list files, which are strings, then these.
inline constexpr const char* kInheritanceKey = "inheritance";
inline constexpr std::array<TextKey, 3> kProfileTextKeys = {{
    {"name", &ConfigurationPrivate::name},
    {"provides", &ConfigurationPrivate::provides},
    {kInheritanceKey, &ConfigurationPrivate::inheritance},
}};
inline constexpr std::array<FlagKey, 2> kProfileFlagKeys = {{
    {"require_desktop", &ConfigurationPrivate::desktopRequirement},
    {"require_icons", &ConfigurationPrivate::iconRequirement},
}};

// The keys of the disallowed components file.
inline constexpr ListKey kDisallowedHandlersKey = {"mimehandlers",
                                                   &ConfigurationPrivate::disallowedHandlers};
inline constexpr ListKey kDisallowedPatternsKey = {"patterns",
                                                   &ConfigurationPrivate::disallowedPatterns};

// What the one array in a list file holds.
enum class ListForm {
    Patterns,  // strings
    Tiers,     // objects, each with its name and a list of patterns
    Names,     // strings, which are compared as they stand
};

inline constexpr std::array<std::string_view, 3> kTierNames = {"allowed", "unstable", "deprecated"};
inline constexpr const char* kTierNameKey = "name";
inline constexpr const char* kTierListKey = "list";

inline constexpr const char* kPathsKey = "paths";
inline constexpr const char* kPermissionsKey = "permissions";

struct ListFile {
    const char* pathKey;     // in the profile
    const char* contentKey;  // in the file
    ListForm form;
    std::array<ListField, kTierNames.size()> tiers;  // in the order of kTierNames
};

inline constexpr std::array<ListFile, 5> kListFiles = {{
    {"paths_list", kPathsKey, ListForm::Patterns, {}},
    {"libraries_list",
     "libraries",
     ListForm::Tiers,
     {&ConfigurationPrivate::allowedLibraries, &ConfigurationPrivate::unstableLibraries,
      &ConfigurationPrivate::deprecatedLibraries}},
    {"requires_list",
     "requires",
     ListForm::Tiers,
     {&ConfigurationPrivate::allowedRequires, &ConfigurationPrivate::unstableRequires,
      &ConfigurationPrivate::deprecatedRequires}},
    {"qmlimports_list",
     "qmlimports",
     ListForm::Tiers,
     {&ConfigurationPrivate::allowedQmlimports, &ConfigurationPrivate::unstableQmlimports,
      &ConfigurationPrivate::deprecatedQmlimports}},
    {"permissions_list", kPermissionsKey, ListForm::Names, {}},
}};

// The only profiles that can be parents, and where they stand in the array of profiles.
struct Parent {
    std::string_view name;
    unsigned index;
};

inline constexpr std::array<Parent, 2> kParents = {{{"regular", 0}, {"extended", 1}}};

// Nothing for every other name, an empty one among them: such a profile inherits nothing.
constexpr std::optional<unsigned> parentIndex(std::string_view name) {
    for (const Parent& parent : kParents) {
        if (parent.name == name) {
            return parent.index;
        }
    }
    return std::nullopt;
}

}  // namespace pkgvet
