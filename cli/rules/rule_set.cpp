// Reads a rule tree and keeps in mind where everything stands.
#include "cli/rules/rule_set.h"

#include <json-glib/json-glib.h>

#include <algorithm>
#include <array>
#include <functional>
#include <optional>

#include "pkgvet/base/json_file.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kDirs = "dirs";
constexpr const char* kIconSizes = "icon_sizes";
constexpr const char* kComponents = "disallowed_components";
constexpr const char* kInheritance = "inheritance";
constexpr const char* kTierName = "name";
constexpr const char* kTierList = "list";

constexpr std::array<const char*, 5> kDirectoryKeys = {"bin_dir", "share_dir", "desktop_dir",
                                                       "icon_dir", "libexec_dir"};
constexpr std::array<const char*, 5> kProfileKeys = {"name", "provides", kInheritance,
                                                     "require_desktop", "require_icons"};
constexpr std::array<const char*, 3> kTiers = {"allowed", "unstable", "deprecated"};
constexpr std::array<const char*, 2> kComponentLists = {"patterns", "mimehandlers"};
constexpr std::array<const char*, 2> kParents = {"regular", "extended"};  // at these places

struct ListFile {
    const char* pathKey;
    const char* contentKey;
    bool hasTiers;
};

constexpr std::array<ListFile, 5> kListFiles = {{
    {"paths_list", "paths", false},
    {"libraries_list", "libraries", true},
    {"requires_list", "requires", true},
    {"qmlimports_list", "qmlimports", true},
    {"permissions_list", "permissions", false},
}};

std::string element(const std::string& key, guint index) {
    return key + "[" + std::to_string(index) + "]";
}

// The following read what is there and well-formed, and nothing else.

JsonObject* objectOf(JsonNode* node) {
    return node != nullptr && JSON_NODE_HOLDS_OBJECT(node) ? json_node_get_object(node) : nullptr;
}

JsonNode* memberOf(JsonObject* object, const char* name) {
    return object == nullptr ? nullptr : json_object_get_member(object, name);
}

// With each element and its place.
void forEachIn(JsonObject* object, const std::string& key, const char* name,
               const std::function<void(JsonNode*, const std::string&)>& visit) {
    JsonNode* node = memberOf(object, name);
    JsonArray* array =
        node != nullptr && JSON_NODE_HOLDS_ARRAY(node) ? json_node_get_array(node) : nullptr;
    const guint length = array == nullptr ? 0 : json_array_get_length(array);
    for (guint i = 0; i < length; ++i) {
        visit(json_array_get_element(array, i), element(key, i));
    }
}

// A string, an integer or a truth value as text.
std::optional<std::string> textOf(JsonNode* node) {
    const GType type = node == nullptr ? G_TYPE_INVALID : json_node_get_value_type(node);
    if (type == G_TYPE_STRING) {
        return json_node_get_string(node);
    }
    if (type == G_TYPE_INT64) {
        return std::to_string(json_node_get_int(node));
    }
    if (type == G_TYPE_BOOLEAN) {
        return json_node_get_boolean(node) ? "true" : "false";
    }
    return std::nullopt;
}

// Fills a RuleSet file by file.
class Loader {
public:
    explicit Loader(const std::string& path) : path_(path) { nameLists(); }

    RuleSet load(guint profile) {
        const JsonFile file = open(path_);
        JsonObject* dirs = objectOf(memberOf(file.root, kDirs));
        appendStrings(path_, file.root, kIconSizes, kIconSizes, kIconSizes);
        addScalars(dirs, kDirs, kDirectoryKeys);
        if (const auto components = textOf(memberOf(dirs, kComponents))) {
            loadComponents(*components);
        }
        std::vector<JsonObject*> profiles;
        forEachIn(file.root, "profiles", "profiles",
                  [&](JsonNode* node, const std::string&) { profiles.push_back(objectOf(node)); });
        loadProfiles(profiles, profile);
        return std::move(set_);
    }

private:
    JsonFile open(const std::string& path) {
        JsonFile file = loadJsonFile(path);
        if (file.root != nullptr) {
            set_.files.push_back(path);
        }
        return file;
    }

    void nameLists() {
        for (const ListFile& kind : kListFiles) {
            for (const char* tier : kTiers) {
                set_.lists.push_back({listName(kind, tier), {}});
                if (!kind.hasTiers) {
                    break;
                }
            }
        }
        for (const char* name : kComponentLists) {
            set_.lists.push_back({name, {}});
        }
        set_.lists.push_back({kIconSizes, {}});
    }

    static std::string listName(const ListFile& kind, const std::string& tier) {
        return kind.hasTiers ? kind.contentKey + ("." + tier) : kind.contentKey;
    }

    // Null for a tier of an unknown name.
    std::vector<RuleElement>* list(const std::string& name) {
        const auto found =
            std::find_if(set_.lists.begin(), set_.lists.end(),
                         [&name](const RuleList& known) { return known.name == name; });
        return found == set_.lists.end() ? nullptr : &found->elements;
    }

    template <std::size_t size>
    void addScalars(JsonObject* object, const std::string& key,
                    const std::array<const char*, size>& names) {
        for (const char* name : names) {
            if (const auto text = textOf(memberOf(object, name))) {
                set_.scalars.push_back({name, *text, key + "." + name});
            }
        }
    }

    void appendStrings(const std::string& file, JsonObject* object, const std::string& key,
                       const char* name, const std::string& listName) {
        std::vector<RuleElement>* elements = list(listName);
        forEachIn(object, key, name, [&](JsonNode* node, const std::string& place) {
            const auto text = textOf(node);
            if (text && elements != nullptr) {
                elements->push_back({*text, file, place});
            }
        });
    }

    void loadComponents(const std::string& path) {
        const JsonFile file = open(path);
        for (const char* name : kComponentLists) {
            appendStrings(path, file.root, name, name, name);
        }
    }

    // The chosen profile, then its parent, then its parent's parent.
    void loadProfiles(const std::vector<JsonObject*>& profiles, guint index) {
        std::set<guint> walked;
        while (index < profiles.size() && walked.insert(index).second) {
            const std::string key = element("profiles", index);
            if (walked.size() == 1) {
                addScalars(profiles[index], key, kProfileKeys);
            }
            for (const ListFile& kind : kListFiles) {
                if (const auto path = textOf(memberOf(profiles[index], kind.pathKey))) {
                    loadListFile(*path, kind);
                }
            }
            const auto parent = textOf(memberOf(profiles[index], kInheritance));
            if (!parent || parent->empty()) {
                return;
            }
            const auto* place = std::find(kParents.begin(), kParents.end(), *parent);
            if (place == kParents.end()) {
                drop(path_, key + "." + kInheritance, *parent,
                     "can be no parent, so nothing is inherited");
            }
            index = static_cast<guint>(place == kParents.end() ? profiles.size()
                                                               : place - kParents.begin());
        }
    }

    void loadListFile(const std::string& path, const ListFile& kind) {
        const JsonFile file = open(path);
        if (!kind.hasTiers) {
            appendStrings(path, file.root, kind.contentKey, kind.contentKey, kind.contentKey);
            return;
        }
        forEachIn(file.root, kind.contentKey, kind.contentKey,
                  [&](JsonNode* node, const std::string& key) { loadTier(path, node, key, kind); });
    }

    void loadTier(const std::string& path, JsonNode* node, const std::string& key,
                  const ListFile& kind) {
        JsonObject* tier = objectOf(node);
        const auto name = textOf(memberOf(tier, kTierName));
        if (!name) {
            return;
        }
        if (list(listName(kind, *name)) == nullptr) {
            drop(path, key + "." + kTierName, *name, "is no tier, so its list is dropped");
        }
        appendStrings(path, tier, key + "." + kTierList, kTierList, listName(kind, *name));
    }

    void drop(const std::string& file, const std::string& key, const std::string& name,
              const std::string& consequence) {
        set_.dropped.push_back({file, key, "\"" + name + "\" " + consequence});
    }

    std::string path_;
    RuleSet set_;
};

}  // namespace

RuleSet loadRuleSet(const std::string& path, Profiles profile) {
    return Loader(path).load(static_cast<guint>(profile));
}

std::vector<RuleElement> withoutRepeats(const RuleList& list) {
    std::set<std::string> seen;
    std::vector<RuleElement> unique;
    for (const RuleElement& element : list.elements) {
        if (seen.insert(element.text).second) {
            unique.push_back(element);
        }
    }
    return unique;
}

}  // namespace pkgvet::cli
