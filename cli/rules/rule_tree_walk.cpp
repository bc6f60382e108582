// Walks a rule tree as the library does and tells a visitor what it meets.
#include "cli/rules/rule_tree_walk.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <set>

#include "cli/base/json_place.h"
#include "cli/rules/rule_file.h"
#include "pkgvet/rules/rule_tree_format.h"

namespace pkgvet::cli {

namespace {

// Unlike the library, users are told of the patterns first.
constexpr std::array<ListKey, 2> kComponentLists = {kDisallowedPatternsKey, kDisallowedHandlersKey};

constexpr const char* kCycle = "leads the profile back to itself";

std::string tierListName(const ListFile& list, std::string_view tier) {
    return member(list.contentKey, tier);
}

bool isTier(std::string_view name) {
    return std::find(kTierNames.begin(), kTierNames.end(), name) != kTierNames.end();
}

template <typename Keys>
void addNames(const Keys& keys, std::vector<std::string>* names) {
    for (const auto& key : keys) {
        names->emplace_back(key.name);
    }
}

std::vector<std::string> directoryKeys() {
    std::vector<std::string> names;
    addNames(kDirectoryKeys, &names);
    names.emplace_back(kDisallowedComponentsKey);
    return names;
}

std::vector<std::string> profileKeys() {
    std::vector<std::string> names;
    for (const ListFile& list : kListFiles) {
        names.emplace_back(list.pathKey);
    }
    addNames(kProfileTextKeys, &names);
    addNames(kProfileFlagKeys, &names);
    return names;
}

// Lists of several kinds may share a file.
std::vector<std::string> listFileKeys() {
    std::vector<std::string> names;
    for (const ListFile& list : kListFiles) {
        names.emplace_back(list.contentKey);
    }
    addNames(kComponentLists, &names);
    return names;
}

class RuleTreeWalk {
public:
    RuleTreeWalk(const std::string& path, const RuleTreeVisitor& visitor)
        : visitor_(visitor), configuration_(path, visitor.onFault) {}

    void run(const std::vector<Profiles>& chosen) const {
        JsonObject* root = configuration_.root();
        if (root == nullptr) {
            return;
        }
        visitor_.onFile(configuration_.path());
        walkKeys(configuration_, root, "", {kIconSizesKey, kDirsKey, kProfilesKey});
        walkElements(configuration_, root, "", kIconSizesKey, {kIconSizesKey, kIntegerValue});
        walkDirectories(root);
        if (JsonArray* profiles = configuration_.array(root, "", kProfilesKey)) {
            for (const Profiles profile : chosen) {
                walkFamily(profiles, static_cast<guint>(profile));
            }
        }
    }

private:
    // What the elements of an array are, and the list that they belong to.
    struct Elements {
        std::string list;
        ValueType type = kTextValue;
        bool arePatterns = false;
    };

    void walkKeys(const RuleFile& file, JsonObject* object, const std::string& place,
                  const std::vector<std::string>& known) const {
        const std::unique_ptr<GList, decltype(&g_list_free)> keys(json_object_get_members(object),
                                                                  &g_list_free);
        for (const GList* key = keys.get(); key != nullptr; key = key->next) {
            const std::string name = static_cast<const char*>(key->data);
            if (std::find(known.begin(), known.end(), name) == known.end()) {
                visitor_.onUnknownKey({name, file.path(), member(place, name)}, known);
            }
        }
    }

    void walkElements(const RuleFile& file, JsonObject* object, const std::string& place,
                      const char* key, const Elements& elements) const {
        JsonArray* array = file.array(object, place, key);
        const guint length = array == nullptr ? 0 : json_array_get_length(array);
        for (guint i = 0; i < length; ++i) {
            JsonNode* node = json_array_get_element(array, i);
            const std::string at = element(member(place, key), i);
            const bool isPattern = file.hasType(node, at, elements.type) && elements.arePatterns;
            if (const auto text = textOf(node)) {
                visitor_.onElement({*text, file.path(), at}, elements.list, isPattern);
            }
        }
    }

    void walkDirectories(JsonObject* root) const {
        JsonObject* dirs = configuration_.object(root, "", kDirsKey);
        if (dirs == nullptr) {
            return;
        }
        walkKeys(configuration_, dirs, kDirsKey, directoryKeys());
        for (const TextKey& key : kDirectoryKeys) {
            walkScalar(dirs, kDirsKey, key.name, kTextValue, true);
        }
        if (const auto path = configuration_.text(dirs, kDirsKey, kDisallowedComponentsKey)) {
            walkComponents(*path);
        }
    }

    void walkComponents(const std::string& path) const {
        const RuleFile file(path, visitor_.onFault);
        if (file.root() == nullptr) {
            return;
        }
        visitor_.onFile(path);
        walkKeys(file, file.root(), "", listFileKeys());
        for (const ListKey& list : kComponentLists) {
            walkElements(file, file.root(), "", list.name, {list.name, kTextValue, true});
        }
    }

    // The profile at index, then its parent, then its parent's parent. Parents that lead back to a
    // profile which has been walked would be walked for ever.
    void walkFamily(JsonArray* profiles, guint index) const {
        std::set<guint> walked;
        for (std::optional<guint> next = index; next;) {
            const std::string place = element(kProfilesKey, *next);
            JsonObject* profile = configuration_.object(profiles, kProfilesKey, *next);
            walked.insert(*next);
            next =
                profile == nullptr ? std::nullopt : walkProfile(profile, place, walked.size() == 1);
            if (next && walked.count(*next) != 0) {
                configuration_.report(member(place, kInheritanceKey), kCycle);
                return;
            }
        }
    }

    // Where the profile's parent stands, if it has one.
    std::optional<guint> walkProfile(JsonObject* profile, const std::string& place,
                                     bool isChosen) const {
        walkKeys(configuration_, profile, place, profileKeys());
        for (const ListFile& list : kListFiles) {
            const auto path = configuration_.text(profile, place, list.pathKey);
            if (path && visitor_.entersListFile(*path, list.contentKey)) {
                walkListFile(*path, list);
            }
        }
        for (const TextKey& key : kProfileTextKeys) {
            walkScalar(profile, place, key.name, kTextValue, isChosen);
        }
        for (const FlagKey& key : kProfileFlagKeys) {
            walkScalar(profile, place, key.name, kFlagValue, isChosen);
        }
        return parentOf(profile, place);
    }

    void walkScalar(JsonObject* object, const std::string& place, const char* key,
                    const ValueType& type, bool isTold) const {
        const auto text = configuration_.value(object, place, key, type);
        if (text && isTold) {
            visitor_.onScalar({key, *text, member(place, key)});
        }
    }

    // Nothing is reported of a value that is missing or not a string: that was done when the keys
    // of the profile were walked. An empty name stands for no parent.
    std::optional<guint> parentOf(JsonObject* profile, const std::string& place) const {
        JsonNode* node = json_object_get_member(profile, kInheritanceKey);
        const auto name = node == nullptr ? std::nullopt : textOf(node);
        if (!name || name->empty()) {
            return std::nullopt;
        }
        const std::optional<guint> index = parentIndex(*name);
        if (!index) {
            visitor_.onUnknownParent(
                {*name, configuration_.path(), member(place, kInheritanceKey)});
        }
        return index;
    }

    void walkListFile(const std::string& path, const ListFile& list) const {
        const RuleFile file(path, visitor_.onFault);
        if (file.root() == nullptr) {
            return;
        }
        visitor_.onFile(path);
        walkKeys(file, file.root(), "", listFileKeys());
        if (list.form == ListForm::Tiers) {
            walkTiers(file, list);
        } else {
            walkElements(file, file.root(), "", list.contentKey,
                         {list.contentKey, kTextValue, list.form == ListForm::Patterns});
        }
    }

    void walkTiers(const RuleFile& file, const ListFile& list) const {
        JsonArray* tiers = file.array(file.root(), "", list.contentKey);
        const guint length = tiers == nullptr ? 0 : json_array_get_length(tiers);
        for (guint i = 0; i < length; ++i) {
            if (JsonObject* tier = file.object(tiers, list.contentKey, i)) {
                walkTier(file, tier, element(list.contentKey, i), list);
            }
        }
    }

    // The list is walked whatever is wrong with the name, so that its own faults are told as well.
    void walkTier(const RuleFile& file, JsonObject* tier, const std::string& place,
                  const ListFile& list) const {
        walkKeys(file, tier, place, {kTierNameKey, kTierListKey});
        const auto name = file.value(tier, place, kTierNameKey, kTextValue);
        if (name && !isTier(*name)) {
            visitor_.onUnknownTier({*name, file.path(), member(place, kTierNameKey)});
        }
        walkElements(file, tier, place, kTierListKey,
                     {tierListName(list, name.value_or("")), kTextValue, true});
    }

    const RuleTreeVisitor& visitor_;
    RuleFile configuration_;
};

}  // namespace

void walkRuleTree(const std::string& path, const std::vector<Profiles>& profiles,
                  const RuleTreeVisitor& visitor) {
    RuleTreeWalk(path, visitor).run(profiles);
}

std::vector<std::string> tierNames() {
    return {kTierNames.begin(), kTierNames.end()};
}

std::vector<std::string> parentNames() {
    std::vector<std::string> names;
    addNames(kParents, &names);
    return names;
}

std::vector<std::string> ruleListNames() {
    std::vector<std::string> names;
    for (const ListFile& list : kListFiles) {
        if (list.form != ListForm::Tiers) {
            names.emplace_back(list.contentKey);
            continue;
        }
        for (const std::string_view tier : kTierNames) {
            names.push_back(tierListName(list, tier));
        }
    }
    for (const ListKey& list : kComponentLists) {
        names.emplace_back(list.name);
    }
    names.emplace_back(kIconSizesKey);
    return names;
}

}  // namespace pkgvet::cli
