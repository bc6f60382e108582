// Reads the configuration file and follows it to the list files.
#include "pkgvet/rules/configuration.h"

#include <json-glib/json-glib.h>

#include <array>
#include <string_view>
#include <utility>

#include "pkgvet/rules/configuration_private.h"
#include "pkgvet/rules/developer_mode.h"
#include "pkgvet/rules/rule_files.h"

namespace {

using pkgvet::mandatoryString;

// Indexed by the numeric Profiles value.
constexpr std::array<std::string_view, 6> kProfileNames = {"regular",   "extended", "mdm",
                                                           "antivirus", "auth",     "market"};
constexpr std::string_view kUnknownProfile = "<unknown>";

struct Parent {
    std::string_view name;
    guint index;
};

// The only profiles that can be parents.
constexpr std::array<Parent, 2> kParents = {{{"regular", 0}, {"extended", 1}}};

constexpr const char* kProfilesKey = "profiles";
constexpr const char* kDirsKey = "dirs";
constexpr const char* kIconSizesKey = "icon_sizes";
constexpr const char* kDisallowedComponentsKey = "disallowed_components";
constexpr const char* kInheritanceKey = "inheritance";
constexpr const char* kRequireDesktopKey = "require_desktop";
constexpr const char* kRequireIconsKey = "require_icons";

struct TextKey {
    const char* key;
    std::string ConfigurationPrivate::*field;
};

constexpr std::array<TextKey, 5> kDirectoryKeys = {{
    {"bin_dir", &ConfigurationPrivate::binDir},
    {"share_dir", &ConfigurationPrivate::shareDir},
    {"desktop_dir", &ConfigurationPrivate::desktopDir},
    {"icon_dir", &ConfigurationPrivate::iconDir},
    {"libexec_dir", &ConfigurationPrivate::libexecDir},
}};

constexpr std::array<TextKey, 3> kProfileKeys = {{
    {"name", &ConfigurationPrivate::name},
    {"provides", &ConfigurationPrivate::provides},
    {kInheritanceKey, &ConfigurationPrivate::inheritance},
}};

// The list files of a profile, in the order in which they are read.
constexpr std::array<const char*, 5> kListFileKeys = {
    "paths_list", "libraries_list", "requires_list", "qmlimports_list", "permissions_list"};
enum ListFile : std::size_t { Paths, Libraries, Requires, Qmlimports, Permissions };

using ListFiles = std::array<std::string, kListFileKeys.size()>;

void loadListFile(std::size_t kind, const std::string& path, ConfigurationPrivate* record) {
    switch (kind) {
        case Paths:
            return pkgvet::loadPathsFile(path, record);
        case Libraries:
            return pkgvet::loadTierFile(path, "libraries", record);
        case Requires:
            return pkgvet::loadTierFile(path, "requires", record);
        case Qmlimports:
            return pkgvet::loadTierFile(path, "qmlimports", record);
        default:
            return pkgvet::loadPermissionsFile(path, record);
    }
}

// An absent array of sizes is json-glib's complaint and an empty list.
void readIconSizes(JsonObject* root, ConfigurationPrivate* record) {
    JsonArray* sizes = json_object_get_array_member(root, kIconSizesKey);
    const guint length = sizes == nullptr ? 0 : json_array_get_length(sizes);
    for (guint i = 0; i < length; ++i) {
        record->iconSizes.push_back(static_cast<int>(json_array_get_int_element(sizes, i)));
    }
}

JsonObject* objectMember(JsonObject* object, const char* key) {
    JsonNode* node = json_object_get_member(object, key);
    return node != nullptr && JSON_NODE_HOLDS_OBJECT(node) ? json_node_get_object(node) : nullptr;
}

// Returns the path of the disallowed components file, which the record does not keep.
std::string readDirectories(JsonObject* root, const std::string& file,
                            ConfigurationPrivate* record) {
    JsonObject* dirs = objectMember(root, kDirsKey);
    if (dirs == nullptr) {
        pkgvet::refuse(file, kDirsKey, "is missing or no object");
    }
    for (const TextKey& text : kDirectoryKeys) {
        record->*text.field = mandatoryString(dirs, text.key, file);
    }
    return json_object_get_string_member(dirs, kDisallowedComponentsKey);
}

JsonArray* profilesOf(JsonObject* root, const std::string& file) {
    JsonNode* node = json_object_get_member(root, kProfilesKey);
    if (node == nullptr || !JSON_NODE_HOLDS_ARRAY(node)) {
        pkgvet::refuse(file, kProfilesKey, "is missing or no array");
    }
    return json_node_get_array(node);
}

// Null where the array has no object at index.
JsonObject* profileAt(JsonArray* profiles, guint index) {
    if (index >= json_array_get_length(profiles)) {
        return nullptr;
    }
    JsonNode* node = json_array_get_element(profiles, index);
    return JSON_NODE_HOLDS_OBJECT(node) ? json_node_get_object(node) : nullptr;
}

ListFiles readProfile(JsonObject* profile, const std::string& file, ConfigurationPrivate* record) {
    ListFiles lists;
    for (std::size_t i = 0; i < lists.size(); ++i) {
        lists[i] = mandatoryString(profile, kListFileKeys[i], file);
    }
    for (const TextKey& text : kProfileKeys) {
        record->*text.field = mandatoryString(profile, text.key, file);
    }
    record->desktopRequirement = json_object_get_boolean_member(profile, kRequireDesktopKey);
    record->iconRequirement = json_object_get_boolean_member(profile, kRequireIconsKey);
    return lists;
}

JsonObject* parentProfile(std::string_view name, JsonArray* profiles) {
    for (const Parent& parent : kParents) {
        if (parent.name == name) {
            return profileAt(profiles, parent.index);
        }
    }
    return nullptr;
}

// Since only two profiles can be parents, a third inherited level is one of them again.
void refuseCycle(std::string parent, JsonArray* profiles, const std::string& file) {
    for (std::size_t level = 0; level <= kParents.size(); ++level) {
        JsonObject* profile = parentProfile(parent, profiles);
        JsonNode* next =
            profile == nullptr ? nullptr : json_object_get_member(profile, kInheritanceKey);
        if (profile == nullptr || next == nullptr ||
            json_node_get_value_type(next) != G_TYPE_STRING) {
            return;
        }
        if (level == kParents.size()) {
            pkgvet::refuse(file, kInheritanceKey, "leads profiles back to themselves");
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
        pkgvet::refuse(path, kProfilesKey, "has no object for " + getProfileName(profile));
    }
    const ListFiles lists = readProfile(chosen, path, d_ptr.get());
    loadListFile(Paths, lists[Paths], d_ptr.get());
    pkgvet::loadDisallowedComponentsFile(disallowedComponents, d_ptr.get());
    for (std::size_t kind = Libraries; kind < lists.size(); ++kind) {
        loadListFile(kind, lists[kind], d_ptr.get());
    }
    refuseCycle(d_ptr->inheritance, profiles, path);
    applyInheritance(d_ptr->inheritance, profiles);
}

void Configuration::applyInheritance(const std::string& parent, JsonArray* profiles) {
    JsonObject* profile = parentProfile(parent, profiles);
    if (profile == nullptr) {
        return;
    }
    for (std::size_t kind = 0; kind < kListFileKeys.size(); ++kind) {
        loadListFile(kind, json_object_get_string_member(profile, kListFileKeys[kind]),
                     d_ptr.get());
    }
    applyInheritance(json_object_get_string_member(profile, kInheritanceKey), profiles);
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
    return std::string(index < kProfileNames.size() ? kProfileNames[index] : kUnknownProfile);
}
