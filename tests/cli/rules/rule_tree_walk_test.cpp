// What a visitor is told of a rule tree.
#include "cli/rules/rule_tree_walk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/support/base/temporary_directory.h"
#include "tests/support/rules/rule_tree.h"

namespace pkgvet::cli {

namespace {

using Json = nlohmann::ordered_json;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class RuleTreeWalk : public testing::Test {
protected:
    // Everything that a visitor is told of the tree, one line each, files relative to directory_.
    std::vector<std::string> walk(const std::vector<Profiles>& profiles = {Profiles::Regular}) {
        std::vector<std::string> lines;
        RuleTreeVisitor visitor = visitor_;
        visitor.onFault = [&](const Fault& fault) {
            lines.push_back("fault " + place(fault.file, fault.key) + " " + fault.cause);
        };
        visitor.onFile = [&](const std::string& file) { lines.push_back(place(file, "")); };
        visitor.onScalar = [&](const RuleScalar& scalar) {
            lines.push_back(scalar.key + " " + scalar.name + "=" + scalar.value);
        };
        visitor.onElement = [&](const RuleElement& found, const std::string& list, bool isPattern) {
            lines.push_back(list + (isPattern ? " pattern " : " name ") + found.text + " " +
                            place(found.file, found.key));
        };
        visitor.onUnknownTier = [&](const RuleElement& name) {
            lines.push_back("tier " + name.text + " " + place(name.file, name.key));
        };
        visitor.onUnknownParent = [&](const RuleElement& name) {
            lines.push_back("parent " + name.text + " " + place(name.file, name.key));
        };
        walkRuleTree(path_, profiles, visitor);
        return lines;
    }

    std::vector<std::string> walkWith(const Json& configuration) {
        writeFile(path_, configuration.dump());
        return walk();
    }

    Json configuration() const { return Json::parse(readFile(path_)); }

    void write() { path_ = tree_.write(directory_); }

    const TemporaryDirectory directory_;
    RuleTree tree_;
    std::string path_;
    RuleTreeVisitor visitor_;

private:
    std::string place(const std::string& file, const std::string& key) const {
        const std::string name = std::filesystem::relative(file, directory_.path()).string();
        return key.empty() ? name : name + ":" + key;
    }
};

std::vector<std::string> startingWith(const std::vector<std::string>& lines,
                                      const std::string& word) {
    std::vector<std::string> found;
    std::copy_if(lines.begin(), lines.end(), std::back_inserter(found),
                 [&word](const std::string& line) { return line.starts_with(word); });
    return found;
}

TEST_F(RuleTreeWalk, TellsAllInTheOrderOfReading) {
    tree_.iconSizes = {86};
    tree_.disallowedPatterns = {"Qt.*"};
    tree_.disallowedHandlers = {"x-scheme-handler/tel"};
    tree_.regular().name = "rules";
    tree_.regular().requireIcons = true;
    tree_.regular().paths = {"/a"};
    tree_.regular().libraries.unstable = {"libb"};
    tree_.regular().permissions = {"Internet"};
    write();
    EXPECT_THAT(
        walk(),
        ElementsAre("configuration.json", "icon_sizes name 86 configuration.json:icon_sizes[0]",
                    "dirs.bin_dir bin_dir=/usr/bin/", "dirs.share_dir share_dir=/usr/share/",
                    "dirs.desktop_dir desktop_dir=/usr/share/applications/",
                    "dirs.icon_dir icon_dir=/usr/share/icons/hicolor/",
                    "dirs.libexec_dir libexec_dir=/usr/libexec/", "components.json",
                    "patterns pattern Qt.* components.json:patterns[0]",
                    "mimehandlers pattern x-scheme-handler/tel components.json:mimehandlers[0]",
                    "profile-0/paths.json", "paths pattern /a profile-0/paths.json:paths[0]",
                    "profile-0/libraries.json",
                    "libraries.unstable pattern libb profile-0/libraries.json:libraries[1].list[0]",
                    "profile-0/requires.json", "profile-0/qmlimports.json",
                    "profile-0/permissions.json",
                    "permissions name Internet profile-0/permissions.json:permissions[0]",
                    "profiles[0].name name=rules",
                    "profiles[0].provides provides=", "profiles[0].inheritance inheritance=",
                    "profiles[0].require_desktop "
                    "require_desktop=false",
                    "profiles[0].require_icons require_icons=true"));
}

TEST_F(RuleTreeWalk, ParentsGiveTheirListsAndNotTheirValues) {
    tree_.profiles[2].inheritance = "extended";
    tree_.profiles[1].inheritance = "regular";
    for (std::size_t i = 0; i < 3; ++i) {
        tree_.profiles[i].paths = {"/" + std::to_string(i)};
    }
    write();
    const std::vector<std::string> lines = walk({Profiles::Mdm});
    EXPECT_THAT(startingWith(lines, "paths "),
                ElementsAre("paths pattern /2 profile-2/paths.json:paths[0]",
                            "paths pattern /1 profile-1/paths.json:paths[0]",
                            "paths pattern /0 profile-0/paths.json:paths[0]"));
    EXPECT_EQ(startingWith(lines, "profiles[2]").size(), 5U);
    EXPECT_THAT(startingWith(lines, "profiles[1]"), IsEmpty());
}

TEST_F(RuleTreeWalk, ListFilesAreEnteredOnceForEachProfileUnlessTheVisitorDeclines) {
    tree_.profiles[1].inheritance = "regular";
    tree_.regular().paths = {"/a"};
    write();
    const std::vector<Profiles> both = {Profiles::Regular, Profiles::Extended};
    EXPECT_EQ(startingWith(walk(both), "profile-0/paths.json").size(), 2U);
    visitor_.entersListFile = [](const std::string&, std::string_view contentKey) {
        return contentKey != "paths";
    };
    EXPECT_THAT(startingWith(walk(both), "profile-0/paths.json"), IsEmpty());
    EXPECT_EQ(startingWith(walk(both), "profile-0/libraries.json").size(), 2U);
}

TEST_F(RuleTreeWalk, UnknownTiersAndParentsAreTold) {
    tree_.regular().inheritance = "mdm";
    write();
    writeFile(directory_ / "profile-0/libraries.json",
              R"({"libraries": [{"name": "Allowed", "list": ["a"]}]})");
    const std::vector<std::string> lines = walk();
    EXPECT_THAT(lines, Contains("tier Allowed profile-0/libraries.json:libraries[0].name"));
    EXPECT_THAT(lines, Contains("libraries.Allowed pattern a "
                                "profile-0/libraries.json:libraries[0].list[0]"));
    EXPECT_EQ(lines.back(), "parent mdm configuration.json:profiles[0].inheritance");
}

TEST_F(RuleTreeWalk, ValuesOfTheWrongTypeAreFaultsAndToldAllTheSame) {
    write();
    Json broken = configuration();
    broken["icon_sizes"] = {"x"};
    broken["dirs"]["bin_dir"] = 7;
    broken["profiles"][0]["inheritance"] = true;
    writeFile(directory_ / "profile-0/paths.json", R"({"paths": [1, null]})");
    const std::vector<std::string> lines = walkWith(broken);
    EXPECT_THAT(startingWith(lines, "fault"),
                ElementsAre("fault configuration.json:icon_sizes[0] is not an integer",
                            "fault configuration.json:dirs.bin_dir is not a string",
                            "fault profile-0/paths.json:paths[0] is not a string",
                            "fault profile-0/paths.json:paths[1] is not a string",
                            "fault configuration.json:profiles[0].inheritance is not a string"));
    EXPECT_THAT(lines, Contains("icon_sizes name x configuration.json:icon_sizes[0]"));
    EXPECT_THAT(lines, Contains("dirs.bin_dir bin_dir=7"));
    EXPECT_THAT(startingWith(lines, "paths"),
                ElementsAre("paths name 1 profile-0/paths.json:paths[0]"));
    EXPECT_EQ(lines.back(), "parent true configuration.json:profiles[0].inheritance");
}

TEST_F(RuleTreeWalk, PathsOfTheWrongTypeAreNotFollowed) {
    write();
    Json broken = configuration();
    broken["dirs"]["disallowed_components"] = 1;
    broken["profiles"][0]["paths_list"] = nullptr;
    const std::vector<std::string> lines = walkWith(broken);
    EXPECT_THAT(startingWith(lines, "fault"),
                ElementsAre("fault configuration.json:dirs.disallowed_components is not a string",
                            "fault configuration.json:profiles[0].paths_list is not a string"));
    EXPECT_THAT(startingWith(lines, "components.json"), IsEmpty());
}

TEST_F(RuleTreeWalk, EndsWhereAFamilyComesBackToItself) {
    tree_.regular().inheritance = "extended";
    tree_.profiles[1].inheritance = "regular";
    write();
    const std::vector<std::string> lines = walk();
    EXPECT_EQ(lines.back(),
              "fault configuration.json:profiles[1].inheritance leads the profile "
              "back to itself");
    EXPECT_EQ(startingWith(lines, "profile-0/paths.json").size(), 1U);
}

TEST_F(RuleTreeWalk, MissingConfigurationFileIsTheOnlyFault) {
    path_ = directory_ / "none.json";
    EXPECT_THAT(walk(), ElementsAre("fault none.json No such file or directory"));
}

TEST_F(RuleTreeWalk, NamesAllLists) {
    EXPECT_THAT(
        ruleListNames(),
        ElementsAre("paths", "libraries.allowed", "libraries.unstable", "libraries.deprecated",
                    "requires.allowed", "requires.unstable", "requires.deprecated",
                    "qmlimports.allowed", "qmlimports.unstable", "qmlimports.deprecated",
                    "permissions", "patterns", "mimehandlers", "icon_sizes"));
}

}  // namespace

}  // namespace pkgvet::cli
