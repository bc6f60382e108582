// The form of a rule tree, held against the tree that comes with the program.
#include "pkgvet/rules/rule_tree_format.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "pkgvet/rules/profile_names.h"
#include "tests/support/base/source_tree.h"
#include "tests/support/base/temporary_directory.h"

namespace {

using namespace pkgvet;
using Json = nlohmann::ordered_json;
using testing::ElementsAre;

Json defaultRules(const std::string& file) {
    return Json::parse(readFile(sourceFile("data/rules/" + file)));
}

std::vector<std::string> keysOf(const Json& object) {
    std::vector<std::string> keys;
    for (const auto& item : object.items()) {
        keys.push_back(item.key());
    }
    return keys;
}

template <typename Keys>
void appendNames(const Keys& keys, std::vector<std::string>* names) {
    for (const auto& key : keys) {
        names->emplace_back(key.name);
    }
}

TEST(RuleTreeFormat, HasTheKeysOfTheConfigurationFile) {
    const Json configuration = defaultRules("pkgvet.json.in");
    EXPECT_THAT(keysOf(configuration), ElementsAre(kIconSizesKey, kDirsKey, kProfilesKey));
    std::vector<std::string> dirs;
    appendNames(kDirectoryKeys, &dirs);
    dirs.emplace_back(kDisallowedComponentsKey);
    EXPECT_EQ(keysOf(configuration[kDirsKey]), dirs);
}

TEST(RuleTreeFormat, HasTheKeysAndNamesOfProfiles) {
    std::vector<std::string> keys;
    for (const ListFile& list : kListFiles) {
        keys.emplace_back(list.pathKey);
    }
    appendNames(kProfileTextKeys, &keys);
    appendNames(kProfileFlagKeys, &keys);
    const Json profiles = defaultRules("pkgvet.json.in")[kProfilesKey];
    ASSERT_EQ(profiles.size(), kProfileNames.size());
    for (std::size_t i = 0; i < profiles.size(); ++i) {
        EXPECT_EQ(keysOf(profiles[i]), keys);
        EXPECT_EQ(profiles[i]["name"], kProfileNames[i]);
    }
}

TEST(RuleTreeFormat, HasTheKeysOfListFiles) {
    const Json profile = defaultRules("pkgvet.json.in")[kProfilesKey][0];
    for (const ListFile& list : kListFiles) {
        SCOPED_TRACE(list.pathKey);
        const std::string path = profile[list.pathKey];
        const Json content = defaultRules(path.substr(path.find('/') + 1));
        EXPECT_THAT(keysOf(content), ElementsAre(list.contentKey));
        const Json& array = content[list.contentKey];
        if (list.form != ListForm::Tiers) {
            EXPECT_TRUE(array.empty() || array[0].is_string());
            continue;
        }
        for (std::size_t i = 0; i < kTierNames.size(); ++i) {
            EXPECT_THAT(keysOf(array[i]), ElementsAre(kTierNameKey, kTierListKey));
            EXPECT_EQ(array[i][kTierNameKey], kTierNames[i]);
        }
    }
}

TEST(RuleTreeFormat, HasTheKeysOfDisallowedComponents) {
    EXPECT_THAT(
        keysOf(defaultRules("disallowed_components.json")),
        testing::UnorderedElementsAre(kDisallowedHandlersKey.name, kDisallowedPatternsKey.name));
}

TEST(RuleTreeFormat, ParentsAreTheFirstTwoProfiles) {
    EXPECT_EQ(parentIndex("regular"), 0U);
    EXPECT_EQ(parentIndex("extended"), 1U);
    for (const char* name :
         {"", "mdm", "antivirus", "auth", "market", "Regular", "regular ", "regula"}) {
        EXPECT_EQ(parentIndex(name), std::nullopt) << name;
    }
}

}  // namespace
