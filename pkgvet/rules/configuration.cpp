// Reads the configuration file and follows it to the list files.
#include "pkgvet/rules/configuration.h"

#include <json-glib/json-glib.h>

#include <array>
#include <optional>
#include <string_view>

#include "pkgvet/rules/configuration_private.h"
#include "pkgvet/rules/developer_mode.h"
#include "pkgvet/rules/profile_names.h"
#include "pkgvet/rules/rule_files.h"
#include "pkgvet/rules/rule_tree_format.h"

namespace {

using pkgvet::mandatoryString;

constexpr std::string_view kUnknownProfile = "<unknown>";

// In the order of kListFiles.
using ListPaths = std::array<std::string, pkgvet::kListFiles.size()>;

// Of a missing array json-glib complains itself, and the list stays empty.
void readIconSizes(JsonObject* root, ConfigurationPrivate* record) {
    JsonArray* sizes = json_object_get_array_member(root, pkgvet::kIconSizesKey);
    const guint length = sizes == nullptr ? 0 : json_array_get_length(sizes);
    for (guint i = 0; i < length; ++i) {
        record->iconSizes.push_back(static_cast<int>(json_array_get_int_element(sizes, i)));
    }
}

// Returns the path of the disallowed components file, which the record does not keep. Where it is
// missing, json-glib gives null, which std::string refuses with std::logic_error: callers know this
// fault of a rule tree by that type.
std::string readDirectories(JsonObject* root, const std::string& file,
                            ConfigurationPrivate* record) {
    JsonObject* dirs = pkgvet::objectOf(json_object_get_member(root, pkgvet::kDirsKey));
    if (dirs == nullptr) {
        pkgvet::refuse(file, pkgvet::kDirsKey, "is missing or not an object");
    }
    for (const pkgvet::TextKey& key : pkgvet::kDirectoryKeys) {
        record->*key.field = mandatoryString(dirs, key.name, file);
    }
    return json_object_get_string_member(dirs, pkgvet::kDisallowedComponentsKey);
}

JsonArray* profilesOf(JsonObject* root, const std::string& file) {
    JsonNode* node = json_object_get_member(root, pkgvet::kProfilesKey);
    if (node == nullptr || !JSON_NODE_HOLDS_ARRAY(node)) {
        pkgvet::refuse(file, pkgvet::kProfilesKey, "is missing or not an array");
    }
    return json_node_get_array(node);
}

// Null where the array has no object at index.
JsonObject* profileAt(JsonArray* profiles, guint index) {
    const bool exists = index < json_array_get_length(profiles);
    return exists ? pkgvet::objectOf(json_array_get_element(profiles, index)) : nullptr;
}

ListPaths readProfile(JsonObject* profile, const std::string& file, ConfigurationPrivate* record) {
    ListPaths paths;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        paths[i] = mandatoryString(profile, pkgvet::kListFiles[i].pathKey, file);
    }
    for (const pkgvet::TextKey& key : pkgvet::kProfileTextKeys) {
        record->*key.field = mandatoryString(profile, key.name, file);
    }
    for (const pkgvet::FlagKey& key : pkgvet::kProfileFlagKeys) {
        record->*key.field = json_object_get_boolean_member(profile, key.name);
    }
    return paths;
}

// The disallowed components come between the profile's paths and its other lists.
void loadLists(const ListPaths& paths, const std::string& disallowedComponents,
               ConfigurationPrivate* record) {
    pkgvet::loadListFile(pkgvet::kListFiles.front(), paths.front(), record);
    pkgvet::loadDisallowedComponentsFile(disallowedComponents, record);
    for (std::size_t i = 1; i < paths.size(); ++i) {
        pkgvet::loadListFile(pkgvet::kListFiles[i], paths[i], record);
    }
}

// Since only two profiles can be parents, a third inherited level is one of them again.
void refuseCycle(std::string parent, JsonArray* profiles, const std::string& file) {
    for (std::size_t level = 0; level <= pkgvet::kParents.size(); ++level) {
        const std::optional<unsigned> index = pkgvet::parentIndex(parent);
        JsonObject* profile = index ? profileAt(profiles, *index) : nullptr;
        JsonNode* next =
            profile == nullptr ? nullptr : json_object_get_member(profile, pkgvet::kInheritanceKey);
        if (next == nullptr || json_node_get_value_type(next) != G_TYPE_STRING) {
            return;
        }
        if (level == pkgvet::kParents.size()) {
            pkgvet::refuse(file, pkgvet::kInheritanceKey, "leads profiles back to themselves");
        }
        parent = json_node_get_string(next);
    }
}

}  // namespace

Configuration::Configuration(const std::string& path, Profiles profile)
    : d_ptr(std::make_unique<ConfigurationPrivate>()) {
    d_ptr->validationEnabled = pkgvet::readValidationEnabled(pkgvet::kDeveloperModeFile);
    const pkgvet::JsonFile file = pkgvet::loadRuleFile(path);
    if (file.root == nullptr) {
        return;
    }
    readIconSizes(file.root, d_ptr.get());
    const std::string disallowedComponents = readDirectories(file.root, path, d_ptr.get());
    JsonArray* profiles = profilesOf(file.root, path);
    JsonObject* chosen = profileAt(profiles, static_cast<guint>(profile));
    if (chosen == nullptr) {
        pkgvet::refuse(path, pkgvet::kProfilesKey, "has no object for " + getProfileName(profile));
    }
    loadLists(readProfile(chosen, path, d_ptr.get()), disallowedComponents, d_ptr.get());
    refuseCycle(d_ptr->inheritance, profiles, path);
    applyInheritance(d_ptr->inheritance, profiles);
}

// A list file that profile and parent share is read twice, so that its elements occur twice.
void Configuration::applyInheritance(const std::string& parent, JsonArray* profiles) {
    const std::optional<unsigned> index = pkgvet::parentIndex(parent);
    // json-glib complains of a parent that is not there, and the walk ends.
    JsonObject* profile = index ? json_array_get_object_element(profiles, *index) : nullptr;
    if (profile == nullptr) {
        return;
    }
    for (const pkgvet::ListFile& list : pkgvet::kListFiles) {
        pkgvet::loadListFile(list, json_object_get_string_member(profile, list.pathKey),
                             d_ptr.get());
    }
    applyInheritance(json_object_get_string_member(profile, pkgvet::kInheritanceKey), profiles);
}

Configuration::Configuration(const Configuration& other)
    : d_ptr(std::make_unique<ConfigurationPrivate>(*other.d_ptr)) {}

Configuration& Configuration::operator=(Configuration&& other) noexcept {
    d_ptr.swap(other.d_ptr);
    return *this;
}

Configuration::~Configuration() = default;

bool Configuration::validationEnabled() const {
    return d_ptr->validationEnabled;
}

void Configuration::setValidationEnabled(bool enabled) const {
    d_ptr->validationEnabled = enabled;
}

std::string Configuration::getProfileName(Profiles profile) {
    const auto index = static_cast<unsigned>(profile);
    return std::string(index < pkgvet::kProfileNames.size() ? pkgvet::kProfileNames[index]
                                                            : kUnknownProfile);
}
