// Reads the list files of a rule tree.
#include "pkgvet/rules/rule_files.h"

#include <array>
#include <stdexcept>
#include <string_view>

namespace pkgvet {

namespace {

using StringList = std::vector<std::string> ConfigurationPrivate::*;

struct Tier {
    std::string_view name;
    StringList list;
};

struct TierFile {
    std::string_view key;
    std::array<Tier, 3> tiers;
};

constexpr std::array<TierFile, 3> kTierFiles = {{
    {"libraries",
     {{{"allowed", &ConfigurationPrivate::allowedLibraries},
       {"unstable", &ConfigurationPrivate::unstableLibraries},
       {"deprecated", &ConfigurationPrivate::deprecatedLibraries}}}},
    {"requires",
     {{{"allowed", &ConfigurationPrivate::allowedRequires},
       {"unstable", &ConfigurationPrivate::unstableRequires},
       {"deprecated", &ConfigurationPrivate::deprecatedRequires}}}},
    {"qmlimports",
     {{{"allowed", &ConfigurationPrivate::allowedQmlimports},
       {"unstable", &ConfigurationPrivate::unstableQmlimports},
       {"deprecated", &ConfigurationPrivate::deprecatedQmlimports}}}},
}};

struct ComponentList {
    const char* key;
    StringList list;
};

constexpr std::array<ComponentList, 2> kComponentLists = {{
    {"mimehandlers", &ConfigurationPrivate::disallowedHandlers},
    {"patterns", &ConfigurationPrivate::disallowedPatterns},
}};

constexpr const char* kPathsKey = "paths";
constexpr const char* kPermissionsKey = "permissions";
constexpr const char* kTierListKey = "list";
constexpr const char* kTierNameKey = "name";

// The strings of the array that object has under key. json-glib itself complains of an absent one,
// and of a file whose root is not an object.
std::vector<std::string> stringsOf(JsonObject* object, const char* key) {
    std::vector<std::string> strings;
    JsonArray* array = json_object_get_array_member(object, key);
    if (array == nullptr) {
        return strings;
    }
    const guint length = json_array_get_length(array);
    for (guint i = 0; i < length; ++i) {
        strings.emplace_back(json_array_get_string_element(array, i));
    }
    return strings;
}

void append(const std::vector<std::string>& strings, std::vector<std::string>* list) {
    list->insert(list->end(), strings.begin(), strings.end());
}

JsonObject* objectAt(JsonArray* array, guint index) {
    JsonNode* node = json_array_get_element(array, index);
    return JSON_NODE_HOLDS_OBJECT(node) ? json_node_get_object(node) : nullptr;
}

// A tier of another name is read and dropped, and so is every tier of an unknown kind of file.
void addTier(std::string_view key, const std::string& name, const std::vector<std::string>& strings,
             ConfigurationPrivate* record) {
    for (const TierFile& file : kTierFiles) {
        for (const Tier& tier : file.tiers) {
            if (file.key == key && tier.name == name) {
                append(strings, &(record->*tier.list));
            }
        }
    }
}

}  // namespace

// One that nests too deeply to be parsed may be a valid file all the same, and going on without it
// would judge packages by rules that nobody wrote.
JsonFile loadRuleFile(const std::string& path) {
    JsonFile file = loadJsonFile(path);
    if (file.outcome == JsonOutcome::TooDeep) {
        throw std::invalid_argument(path + ": is nested too deeply to be read");
    }
    return file;
}

void loadPathsFile(const std::string& path, ConfigurationPrivate* record) {
    const JsonFile file = loadRuleFile(path);
    if (file.outcome == JsonOutcome::Loaded) {
        append(stringsOf(json_node_get_object(file.node), kPathsKey), &record->pathsList);
    }
}

void loadPermissionsFile(const std::string& path, ConfigurationPrivate* record) {
    const JsonFile file = loadRuleFile(path);
    if (file.outcome == JsonOutcome::Loaded) {
        const std::vector<std::string> permissions =
            stringsOf(json_node_get_object(file.node), kPermissionsKey);
        record->allowedPermissions.insert(permissions.begin(), permissions.end());
    }
}

void loadDisallowedComponentsFile(const std::string& path, ConfigurationPrivate* record) {
    const JsonFile file = loadRuleFile(path);
    if (file.outcome != JsonOutcome::Loaded) {
        return;
    }
    JsonObject* root = json_node_get_object(file.node);
    for (const ComponentList& component : kComponentLists) {
        append(stringsOf(root, component.key), &(record->*component.list));
    }
}

void loadTierFile(const std::string& path, const std::string& key, ConfigurationPrivate* record) {
    const JsonFile file = loadRuleFile(path);
    if (file.outcome != JsonOutcome::Loaded) {
        return;
    }
    JsonArray* tiers = json_object_get_array_member(json_node_get_object(file.node), key.c_str());
    const guint length = tiers == nullptr ? 0 : json_array_get_length(tiers);
    for (guint i = 0; i < length; ++i) {
        JsonObject* tier = objectAt(tiers, i);
        if (tier == nullptr) {
            refuse(path, key + "[" + std::to_string(i) + "]", "is no object");
        }
        const std::vector<std::string> strings = stringsOf(tier, kTierListKey);
        addTier(key, mandatoryString(tier, kTierNameKey, path), strings, record);
    }
}

std::string mandatoryString(JsonObject* object, const char* key, const std::string& file) {
    JsonNode* node = object == nullptr ? nullptr : json_object_get_member(object, key);
    if (node == nullptr || json_node_get_value_type(node) != G_TYPE_STRING) {
        refuse(file, key, "is missing or no string");
    }
    return json_node_get_string(node);
}

void refuse(const std::string& file, const std::string& key, const std::string& cause) {
    throw std::invalid_argument(file + ": \"" + key + "\" " + cause);
}

}  // namespace pkgvet
