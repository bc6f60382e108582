// The rules of a profile with their places.
#include "cli/rules/rule_set.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "tests/support/base/temporary_directory.h"
#include "tests/support/rules/rule_tree.h"

namespace {

using pkgvet::cli::loadRuleSet;
using pkgvet::cli::RuleElement;
using pkgvet::cli::RuleList;
using pkgvet::cli::RuleSet;
using pkgvet::cli::withoutRepeats;
using testing::ElementsAre;
using testing::IsEmpty;

using Json = nlohmann::ordered_json;

const RuleList& listOf(const RuleSet& rules, const std::string& name) {
    return *std::find_if(rules.lists.begin(), rules.lists.end(),
                         [&name](const RuleList& list) { return list.name == name; });
}

std::vector<std::string> textsOf(const std::vector<RuleElement>& elements) {
    std::vector<std::string> texts;
    for (const RuleElement& element : elements) {
        texts.push_back(element.text);
    }
    return texts;
}

std::vector<std::string> texts(const RuleSet& rules, const std::string& name) {
    return textsOf(listOf(rules, name).elements);
}

std::string scalar(const RuleSet& rules, const std::string& name) {
    for (const auto& each : rules.scalars) {
        if (each.name == name) {
            return each.value;
        }
    }
    return "<none>";
}

// mdm inherits extended, which inherits regular.
RuleTree family() {
    RuleTree tree;
    tree.iconSizes = {86, 108};
    tree.disallowedPatterns = {"Qt.*"};
    tree.disallowedHandlers = {"x-scheme-handler/tel"};
    const char* const names[] = {"regular", "extended", "mdm"};
    for (std::size_t i = 0; i < 3; ++i) {
        const std::string name = names[i];
        ProfileRules& profile = tree.profiles[i];
        profile.paths = {"/" + name, "/twice", "/twice"};
        profile.libraries = {{"a-" + name}, {"u-" + name}, {"d-" + name}};
        profile.requires_ = {{"ra-" + name}, {}, {"rd-" + name}};
        profile.qmlimports = {{"qa-" + name}, {"qu-" + name}, {}};
        profile.permissions = {"Internet", name};
        profile.inheritance = i == 0 ? "" : names[i - 1];
        profile.provides = name + "-provider";
        profile.requireIcons = i == 2;
    }
    return tree;
}

TEST(RuleSet, AgreesWithTheLibraryOnEveryProfile) {
    const TemporaryDirectory directory;
    const std::string path = family().write(directory);
    for (unsigned i = 0; i < 6; ++i) {
        SCOPED_TRACE(i);
        const auto profile = static_cast<Profiles>(i);
        const Configuration library(path, profile);
        const RuleSet rules = loadRuleSet(path, profile);
        EXPECT_EQ(texts(rules, "paths"), library.pathsList());
        EXPECT_EQ(texts(rules, "libraries.allowed"), library.allowedLibraries());
        EXPECT_EQ(texts(rules, "libraries.unstable"), library.unstableLibraries());
        EXPECT_EQ(texts(rules, "libraries.deprecated"), library.deprecatedLibraries());
        EXPECT_EQ(texts(rules, "requires.allowed"), library.allowedRequires());
        EXPECT_EQ(texts(rules, "requires.unstable"), library.unstableRequires());
        EXPECT_EQ(texts(rules, "requires.deprecated"), library.deprecatedRequires());
        EXPECT_EQ(texts(rules, "qmlimports.allowed"), library.allowedQmlimports());
        EXPECT_EQ(texts(rules, "qmlimports.unstable"), library.unstableQmlimports());
        EXPECT_EQ(texts(rules, "qmlimports.deprecated"), library.deprecatedQmlimports());
        EXPECT_EQ(texts(rules, "patterns"), library.disallowedPatterns());
        EXPECT_EQ(texts(rules, "mimehandlers"), library.disallowedHandlers());
        EXPECT_THAT(textsOf(withoutRepeats(listOf(rules, "permissions"))),
                    testing::UnorderedElementsAreArray(library.allowedPermissions().begin(),
                                                       library.allowedPermissions().end()));
        EXPECT_EQ(scalar(rules, "name"), library.name());
        EXPECT_EQ(scalar(rules, "provides"), library.provides());
        EXPECT_EQ(scalar(rules, "inheritance"), library.inheritance());
        EXPECT_EQ(scalar(rules, "bin_dir"), library.binDir());
        EXPECT_EQ(scalar(rules, "share_dir"), library.shareDir());
        EXPECT_EQ(scalar(rules, "desktop_dir"), library.desktopDir());
        EXPECT_EQ(scalar(rules, "icon_dir"), library.iconDir());
        EXPECT_EQ(scalar(rules, "libexec_dir"), library.libexecDir());
        EXPECT_EQ(scalar(rules, "require_desktop"),
                  library.desktopRequirement() ? "true" : "false");
        EXPECT_EQ(scalar(rules, "require_icons"), library.iconRequirement() ? "true" : "false");
    }
}

TEST(RuleSet, EachElementNamesItsFileAndPlace) {
    const TemporaryDirectory directory;
    const RuleSet rules = loadRuleSet(family().write(directory), Profiles::Extended);
    const std::vector<RuleElement>& libraries = listOf(rules, "libraries.unstable").elements;
    ASSERT_EQ(libraries.size(), 2U);
    EXPECT_EQ(libraries[0].file, directory / "profile-1/libraries.json");
    EXPECT_EQ(libraries[0].key, "libraries[1].list[0]");
    EXPECT_EQ(libraries[1].file, directory / "profile-0/libraries.json");
    EXPECT_EQ(listOf(rules, "patterns").elements[0].file, directory / "components.json");
    EXPECT_EQ(listOf(rules, "icon_sizes").elements[1].key, "icon_sizes[1]");
    EXPECT_EQ(textsOf(withoutRepeats(listOf(rules, "paths"))),
              (std::vector<std::string>{"/extended", "/twice", "/regular"}));
}

TEST(RuleSet, UnknownTiersAndParentsAreDropped) {
    const TemporaryDirectory directory;
    RuleTree tree = family();
    tree.profiles[2].inheritance = "Extended";
    const std::string path = tree.write(directory);
    writeFile(directory / "profile-2/libraries.json",
              R"({"libraries": [{"name": "Allowed", "list": ["a"]}]})");
    const RuleSet rules = loadRuleSet(path, Profiles::Mdm);
    EXPECT_THAT(texts(rules, "libraries.allowed"), IsEmpty());
    EXPECT_THAT(texts(rules, "paths"), ElementsAre("/mdm", "/twice", "/twice"));
}

TEST(RuleSet, TreeWithFaultsGivesWhatItCan) {
    const TemporaryDirectory directory;
    const std::string path = family().write(directory);
    Json broken = Json::parse(readFile(path));
    broken["profiles"][0]["inheritance"] = "extended";
    broken["profiles"][1]["libraries_list"] = 7;
    broken["profiles"][1]["requires_list"] = "/none";
    broken["dirs"] = 1;
    writeFile(path, broken.dump());
    writeFile(directory / "profile-1/paths.json", R"({"paths": ["/a", null, {}, "/b"]})");
    writeFile(directory / "profile-0/qmlimports.json", R"({"qmlimports": [1, {}, {"name": []}]})");
    EXPECT_THAT(texts(loadRuleSet(path, Profiles::Extended), "paths"),
                ElementsAre("/a", "/b", "/regular", "/twice", "/twice"));
    for (const char* content : {"", "[]", "{}", R"({"profiles": {}})", R"({"profiles": [1]})"}) {
        writeFile(path, content);
        EXPECT_THAT(loadRuleSet(path, Profiles::Mdm).scalars, IsEmpty());
    }
}

}  // namespace
