// Reads the list files of a rule tree.
#include "pkgvet/rules/rule_files.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace pkgvet {

namespace {

// The mime handlers come first, before the patterns.
constexpr std::array<ListKey, 2> kComponentLists = {kDisallowedHandlersKey, kDisallowedPatternsKey};

// json-glib itself complains of a root that is not an object, and again when the null that it gives
// for one is asked for a key.
JsonObject* rootOf(const JsonFile& file) {
    return json_node_get_object(file.node);
}

// A null array is empty.
guint lengthOf(JsonArray* array) {
    return array == nullptr ? 0 : json_array_get_length(array);
}

// json-glib itself complains of an array that is not there. An element that is not a string comes
// as null, which std::string refuses with std::logic_error.
std::vector<std::string> stringsOf(JsonObject* object, const char* key) {
    std::vector<std::string> strings;
    JsonArray* array = json_object_get_array_member(object, key);
    for (guint i = 0; i < lengthOf(array); ++i) {
        strings.emplace_back(json_array_get_string_element(array, i));
    }
    return strings;
}

void append(const std::vector<std::string>& strings, std::vector<std::string>* list) {
    list->insert(list->end(), strings.begin(), strings.end());
}

// Null for a key that no tier file has.
const ListFile* tierFileOf(std::string_view key) {
    const auto* found = std::find_if(kListFiles.begin(), kListFiles.end(), [key](const auto& file) {
        return file.form == ListForm::Tiers && file.contentKey == key;
    });
    return found == kListFiles.end() ? nullptr : found;
}

// A tier of another name is read and dropped.
void addTier(const ListFile* file, std::string_view name, const std::vector<std::string>& strings,
             ConfigurationPrivate* record) {
    for (std::size_t i = 0; file != nullptr && i < kTierNames.size(); ++i) {
        if (kTierNames[i] == name) {
            append(strings, &(record->*file->tiers[i]));
        }
    }
}

}  // namespace

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
        append(stringsOf(rootOf(file), kPathsKey), &record->pathsList);
    }
}

void loadPermissionsFile(const std::string& path, ConfigurationPrivate* record) {
    const JsonFile file = loadRuleFile(path);
    if (file.outcome == JsonOutcome::Loaded) {
        const std::vector<std::string> permissions = stringsOf(rootOf(file), kPermissionsKey);
        record->allowedPermissions.insert(permissions.begin(), permissions.end());
    }
}

void loadDisallowedComponentsFile(const std::string& path, ConfigurationPrivate* record) {
    const JsonFile file = loadRuleFile(path);
    if (file.outcome != JsonOutcome::Loaded) {
        return;
    }
    JsonObject* root = rootOf(file);
    for (const ListKey& list : kComponentLists) {
        append(stringsOf(root, list.name), &(record->*list.field));
    }
}

void loadTierFile(const std::string& path, const std::string& key, ConfigurationPrivate* record) {
    const JsonFile file = loadRuleFile(path);
    if (file.outcome != JsonOutcome::Loaded) {
        return;
    }
    JsonArray* tiers = json_object_get_array_member(rootOf(file), key.c_str());
    for (guint i = 0; i < lengthOf(tiers); ++i) {
        JsonObject* tier = objectOf(json_array_get_element(tiers, i));
        if (tier == nullptr) {
            refuse(path, key + "[" + std::to_string(i) + "]", "is not an object");
        }
        const std::vector<std::string> strings = stringsOf(tier, kTierListKey);
        addTier(tierFileOf(key), mandatoryString(tier, kTierNameKey, path), strings, record);
    }
}

void loadListFile(const ListFile& list, const std::string& path, ConfigurationPrivate* record) {
    switch (list.form) {
        case ListForm::Patterns:
            return loadPathsFile(path, record);
        case ListForm::Tiers:
            return loadTierFile(path, list.contentKey, record);
        case ListForm::Names:
            return loadPermissionsFile(path, record);
    }
}

JsonObject* objectOf(JsonNode* node) {
    return node != nullptr && JSON_NODE_HOLDS_OBJECT(node) ? json_node_get_object(node) : nullptr;
}

std::string mandatoryString(JsonObject* object, const char* key, const std::string& file) {
    JsonNode* node = object == nullptr ? nullptr : json_object_get_member(object, key);
    if (node == nullptr || json_node_get_value_type(node) != G_TYPE_STRING) {
        refuse(file, key, "is missing or not a string");
    }
    return json_node_get_string(node);
}

void refuse(const std::string& file, const std::string& key, const std::string& cause) {
    throw std::invalid_argument(file + ": \"" + key + "\" " + cause);
}

}  // namespace pkgvet
