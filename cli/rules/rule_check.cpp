// Walks a rule tree as the library will and reports what that would swallow.
#include "cli/rules/rule_check.h"

#include <json-glib/json-glib.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>
#include <string_view>
#include <utility>

#include "cli/base/strict_json.h"
#include "pkgvet/base/json_file.h"
#include "pkgvet/pattern/pattern_list.h"

namespace pkgvet::cli {

namespace {

constexpr std::array<const char*, 5> kDirectoryKeys = {"bin_dir", "share_dir", "desktop_dir",
                                                       "icon_dir", "libexec_dir"};
constexpr const char* kComponentsKey = "disallowed_components";
constexpr std::array<const char*, 3> kTextKeys = {"name", "provides", "inheritance"};
constexpr std::array<const char*, 2> kFlagKeys = {"require_desktop", "require_icons"};
constexpr const char* kInheritanceKey = "inheritance";
constexpr std::array<const char*, 2> kComponentListKeys = {"patterns", "mimehandlers"};
constexpr const char* kTierListKey = "list";
constexpr const char* kTierNameKey = "name";

struct ListFile {
    const char* pathKey;
    const char* contentKey;
    bool hasTiers;
    bool hasPatterns;
};

constexpr std::array<ListFile, 5> kListFiles = {{
    {"paths_list", "paths", false, true},
    {"libraries_list", "libraries", true, true},
    {"requires_list", "requires", true, true},
    {"qmlimports_list", "qmlimports", true, true},
    {"permissions_list", "permissions", false, false},
}};

struct Parent {
    std::string_view name;
    guint index;
};

constexpr std::array<Parent, 2> kParents = {{{"regular", 0}, {"extended", 1}}};

constexpr const char* kMissing = "is missing";
constexpr const char* kNoObject = "is no object";
constexpr const char* kNoArray = "is no array";
constexpr const char* kNoString = "is no string";
constexpr const char* kNoBoolean = "is neither true nor false";
constexpr const char* kNoInteger = "is no integer";
constexpr const char* kCycle = "leads the profile back to itself";

std::string element(const std::string& key, guint index) {
    return key + "[" + std::to_string(index) + "]";
}

std::string member(const std::string& key, const char* name) {
    return key.empty() ? name : key + "." + name;
}

// Why the library takes nothing from the file at path. The other reader gives reasons, and is not
// impressed by depth.
std::string causeOfFailure(const std::string& path) {
    std::error_code error;
    if (std::filesystem::exists(path, error) && !std::filesystem::is_regular_file(path, error)) {
        return "is no regular file";
    }
    std::vector<Fault> faults;
    static_cast<void>(JsonReader(path, &faults).load());
    return faults.empty() ? "is too large or too deep to be read" : faults.front().cause;
}

// One file of the tree, whose faults it adds to those of the tree.
class File {
public:
    File(const std::string& path, std::vector<Fault>* faults)
        : path_(path), faults_(faults), file_(loadJsonFile(path)) {}

    void report(const std::string& key, const std::string& cause) const {
        faults_->push_back({path_, key, cause});
    }

    // The root object, or null once the fault is reported.
    JsonObject* load() const {
        if (file_.root == nullptr) {
            report(std::string(), causeOfFailure(path_));
        }
        return file_.root;
    }

    JsonArray* array(JsonObject* object, const std::string& prefix, const char* name) const {
        JsonNode* node = find(object, prefix, name);
        if (node != nullptr && !JSON_NODE_HOLDS_ARRAY(node)) {
            report(member(prefix, name), kNoArray);
            return nullptr;
        }
        return node == nullptr ? nullptr : json_node_get_array(node);
    }

    JsonObject* object(JsonNode* node, const std::string& key) const {
        if (!JSON_NODE_HOLDS_OBJECT(node)) {
            report(key, kNoObject);
            return nullptr;
        }
        return json_node_get_object(node);
    }

    // Null once the fault is reported.
    const char* text(JsonObject* object, const std::string& prefix, const char* name) const {
        JsonNode* node = find(object, prefix, name);
        return node == nullptr ? nullptr : text(node, member(prefix, name));
    }

    const char* text(JsonNode* node, const std::string& key) const {
        if (json_node_get_value_type(node) != G_TYPE_STRING) {
            report(key, kNoString);
            return nullptr;
        }
        return json_node_get_string(node);
    }

    JsonNode* find(JsonObject* object, const std::string& prefix, const char* name) const {
        JsonNode* node = json_object_get_member(object, name);
        if (node == nullptr) {
            report(member(prefix, name), kMissing);
        }
        return node;
    }

private:
    std::string path_;
    std::vector<Fault>* faults_;
    JsonFile file_;
};

void checkPattern(const File& file, const std::string& key, const std::string& pattern) {
    try {
        WholePattern(pattern).matches(std::string());
    } catch (const std::regex_error& error) {
        file.report(key, "is no regular expression: " + std::string(error.what()));
    }
}

void checkStrings(const File& file, JsonObject* object, const std::string& prefix, const char* name,
                  bool arePatterns) {
    JsonArray* array = file.array(object, prefix, name);
    const guint length = array == nullptr ? 0 : json_array_get_length(array);
    for (guint i = 0; i < length; ++i) {
        const std::string key = element(member(prefix, name), i);
        const char* text = file.text(json_array_get_element(array, i), key);
        if (text != nullptr && arePatterns) {
            checkPattern(file, key, text);
        }
    }
}

void checkTiers(const File& file, JsonObject* root, const ListFile& kind) {
    JsonArray* tiers = file.array(root, std::string(), kind.contentKey);
    const guint length = tiers == nullptr ? 0 : json_array_get_length(tiers);
    for (guint i = 0; i < length; ++i) {
        const std::string key = element(kind.contentKey, i);
        JsonObject* tier = file.object(json_array_get_element(tiers, i), key);
        if (tier != nullptr) {
            file.text(tier, key, kTierNameKey);
            checkStrings(file, tier, key, kTierListKey, kind.hasPatterns);
        }
    }
}

// Checks the files that a tree consists of, each of them once.
class TreeCheck {
public:
    explicit TreeCheck(const std::string& path) : path_(path), configuration_(path, &faults_) {}

    std::vector<Fault> run(const std::vector<Profiles>& chosen) {
        JsonObject* root = configuration_.load();
        if (root != nullptr) {
            checkIconSizes(root);
            checkDirectories(root);
            if (JsonArray* profiles = configuration_.array(root, std::string(), "profiles")) {
                for (const Profiles profile : chosen) {
                    checkProfiles(profiles, static_cast<guint>(profile));
                }
            }
        }
        return eachOnce(faults_);  // profiles that share a parent share its faults
    }

private:
    void checkIconSizes(JsonObject* root) {
        JsonArray* sizes = configuration_.array(root, std::string(), "icon_sizes");
        const guint length = sizes == nullptr ? 0 : json_array_get_length(sizes);
        for (guint i = 0; i < length; ++i) {
            if (json_node_get_value_type(json_array_get_element(sizes, i)) != G_TYPE_INT64) {
                configuration_.report(element("icon_sizes", i), kNoInteger);
            }
        }
    }

    void checkDirectories(JsonObject* root) {
        JsonNode* node = configuration_.find(root, std::string(), "dirs");
        JsonObject* dirs = node == nullptr ? nullptr : configuration_.object(node, "dirs");
        if (dirs == nullptr) {
            return;
        }
        for (const char* key : kDirectoryKeys) {
            configuration_.text(dirs, "dirs", key);
        }
        if (const char* components = configuration_.text(dirs, "dirs", kComponentsKey)) {
            checkComponents(components);
        }
    }

    void checkComponents(const std::string& path) {
        const File file(path, &faults_);
        JsonObject* root = file.load();
        for (const char* key : kComponentListKeys) {
            if (root != nullptr) {
                checkStrings(file, root, std::string(), key, true);
            }
        }
    }

    // The chosen profile, then its parent, then its parent's parent, as the library walks them.
    void checkProfiles(JsonArray* profiles, guint index) {
        std::set<guint> walked;
        for (;;) {
            const std::string key = element("profiles", index);
            if (index >= json_array_get_length(profiles)) {
                configuration_.report(key, kMissing);
                return;
            }
            JsonObject* profile =
                configuration_.object(json_array_get_element(profiles, index), key);
            walked.insert(index);
            const char* parent = profile == nullptr ? nullptr : checkProfile(profile, key);
            const auto* found =
                std::find_if(kParents.begin(), kParents.end(), [parent](const Parent& known) {
                    return parent != nullptr && known.name == parent;
                });
            if (found == kParents.end()) {
                return;
            }
            if (walked.count(found->index) != 0) {
                configuration_.report(member(key, kInheritanceKey), kCycle);
                return;
            }
            index = found->index;
        }
    }

    // The name of the parent, or null.
    const char* checkProfile(JsonObject* profile, const std::string& key) {
        for (const ListFile& kind : kListFiles) {
            if (const char* path = configuration_.text(profile, key, kind.pathKey)) {
                checkListFile(path, kind);
            }
        }
        for (const char* name : kTextKeys) {
            configuration_.text(profile, key, name);
        }
        for (const char* name : kFlagKeys) {
            JsonNode* node = configuration_.find(profile, key, name);
            if (node != nullptr && json_node_get_value_type(node) != G_TYPE_BOOLEAN) {
                configuration_.report(member(key, name), kNoBoolean);
            }
        }
        JsonNode* parent = json_object_get_member(profile, kInheritanceKey);
        const bool isText = parent != nullptr && json_node_get_value_type(parent) == G_TYPE_STRING;
        return isText ? json_node_get_string(parent) : nullptr;
    }

    void checkListFile(const std::string& path, const ListFile& kind) {
        if (!checked_.emplace(path, kind.contentKey).second) {
            return;
        }
        const File file(path, &faults_);
        JsonObject* root = file.load();
        if (root == nullptr) {
            return;
        }
        if (kind.hasTiers) {
            checkTiers(file, root, kind);
        } else {
            checkStrings(file, root, std::string(), kind.contentKey, kind.hasPatterns);
        }
    }

    std::string path_;
    std::vector<Fault> faults_;
    File configuration_;
    std::set<std::pair<std::string, std::string>> checked_;  // file and what it is to hold
};

}  // namespace

std::vector<Fault> checkRuleTree(const std::string& path, const std::vector<Profiles>& profiles) {
    return TreeCheck(path).run(profiles);
}

}  // namespace pkgvet::cli
