#include "tests/support/rules/rule_tree.h"

#include <nlohmann/json.hpp>

using Json = nlohmann::ordered_json;

namespace {

Json tiers(const TierLists& lists) {
    return Json::array({{{"name", "allowed"}, {"list", lists.allowed}},
                        {{"name", "unstable"}, {"list", lists.unstable}},
                        {{"name", "deprecated"}, {"list", lists.deprecated}}});
}

Json profile(const ProfileRules& rules, const TemporaryDirectory& directory,
             const std::string& folder) {
    const auto write = [&](const std::string& kind, const Json& content) {
        return directory.write(folder + "/" + kind + ".json", Json{{kind, content}}.dump());
    };
    return {{"paths_list", write("paths", rules.paths)},
            {"libraries_list", write("libraries", tiers(rules.libraries))},
            {"requires_list", write("requires", tiers(rules.requires_))},
            {"qmlimports_list", write("qmlimports", tiers(rules.qmlimports))},
            {"permissions_list", write("permissions", rules.permissions)},
            {"name", rules.name},
            {"provides", rules.provides},
            {"inheritance", rules.inheritance},
            {"require_desktop", rules.requireDesktop},
            {"require_icons", rules.requireIcons}};
}

}  // namespace

RuleTree::RuleTree() {
    for (unsigned i = 0; i < profiles.size(); ++i) {
        profiles[i].name = Configuration::getProfileName(static_cast<Profiles>(i));
    }
}

std::string RuleTree::write(const TemporaryDirectory& directory) const {
    Json list = Json::array();
    for (std::size_t i = 0; i < profiles.size(); ++i) {
        list.push_back(profile(profiles[i], directory, "profile-" + std::to_string(i)));
    }
    const std::string components = directory.write(
        "components.json",
        Json{{"patterns", disallowedPatterns}, {"mimehandlers", disallowedHandlers}}.dump());
    const Json root = {{"icon_sizes", iconSizes},
                       {"dirs",
                        {{"bin_dir", binDir},
                         {"share_dir", shareDir},
                         {"desktop_dir", desktopDir},
                         {"icon_dir", iconDir},
                         {"libexec_dir", libexecDir},
                         {"disallowed_components", components}}},
                       {"profiles", list}};
    return directory.write("configuration.json", root.dump(2));
}

Configuration load(const RuleTree& tree, Profiles profile) {
    const TemporaryDirectory directory;
    Configuration configuration(tree.write(directory), profile);
    configuration.setValidationEnabled(true);
    return configuration;
}
