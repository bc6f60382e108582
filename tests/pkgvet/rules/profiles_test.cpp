// How a profile is chosen, and what it inherits.
#include "pkgvet/rules/profiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>

#include "tests/support/base/captured_log.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/rules/rule_tree.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr std::size_t kExtended = 1;
constexpr std::size_t kMdm = 2;

// Every list of every profile holds the profile's name.
RuleTree markedTree() {
    RuleTree tree;
    for (ProfileRules& profile : tree.profiles) {
        const std::vector<std::string> mark = {profile.name};
        profile.paths = mark;
        profile.libraries = {mark, mark, mark};
        profile.requires_ = {mark, mark, mark};
        profile.qmlimports = {mark, mark, mark};
        profile.permissions = mark;
        profile.provides = "provided by " + profile.name;
    }
    return tree;
}

std::vector<std::string> merged(const RuleTree& tree, Profiles profile) {
    return load(tree, profile).pathsList();
}

TEST(Profiles, HaveFixedValuesAndNames) {
    struct Case {
        Profiles profile;
        int value;
        const char* name;
    };
    const Case cases[] = {{Profiles::Regular, 0, "regular"},
                          {Profiles::Extended, 1, "extended"},
                          {Profiles::Mdm, 2, "mdm"},
                          {Profiles::Antivirus, 3, "antivirus"},
                          {Profiles::Auth, 4, "auth"},
                          {Profiles::Market, 5, "market"},
                          {static_cast<Profiles>(6), 6, "<unknown>"},
                          {static_cast<Profiles>(-1), -1, "<unknown>"}};
    for (const Case& test : cases) {
        EXPECT_EQ(static_cast<int>(test.profile), test.value);
        EXPECT_EQ(Configuration::getProfileName(test.profile), test.name);
    }
}

TEST(Profiles, AreChosenByPosition) {
    RuleTree tree = markedTree();
    for (unsigned i = 0; i < tree.profiles.size(); ++i) {
        const auto profile = static_cast<Profiles>(i);
        EXPECT_EQ(load(tree, profile).name(), Configuration::getProfileName(profile));
    }
    std::swap(tree.profiles[3], tree.profiles[5]);
    EXPECT_EQ(load(tree, Profiles::Antivirus).name(), "market");
    EXPECT_EQ(merged(tree, Profiles::Market), std::vector<std::string>{"antivirus"});
}

TEST(Profiles, WithoutAParentLoadTheirOwnLists) {
    RuleTree tree = markedTree();
    for (const char* parent : {"", "mdm", "antivirus", "auth", "market", "Regular", "EXTENDED",
                               "regular ", " extended", "unknown"}) {
        SCOPED_TRACE(parent);
        tree.profiles[kMdm].inheritance = parent;
        const CapturedDescriptor standardError;
        const Configuration configuration = load(tree, Profiles::Mdm);
        EXPECT_THAT(configuration.pathsList(), ElementsAre("mdm"));
        EXPECT_EQ(configuration.inheritance(), parent);
        EXPECT_EQ(standardError.text(), "");
    }
}

TEST(Profiles, AllListsAreMergedChildFirst) {
    RuleTree tree = markedTree();
    tree.profiles[kMdm].inheritance = "extended";
    tree.profiles[kExtended].inheritance = "regular";
    const Configuration configuration = load(tree, Profiles::Mdm);
    for (const auto accessor :
         {&Configuration::pathsList, &Configuration::allowedLibraries,
          &Configuration::unstableLibraries, &Configuration::deprecatedLibraries,
          &Configuration::allowedRequires, &Configuration::unstableRequires,
          &Configuration::deprecatedRequires, &Configuration::allowedQmlimports,
          &Configuration::unstableQmlimports, &Configuration::deprecatedQmlimports}) {
        EXPECT_THAT((configuration.*accessor)(), ElementsAre("mdm", "extended", "regular"));
    }
    EXPECT_THAT(configuration.allowedPermissions(),
                UnorderedElementsAre("mdm", "extended", "regular"));
}

TEST(Profiles, RegularMayInheritExtended) {
    RuleTree tree = markedTree();
    tree.regular().inheritance = "extended";
    EXPECT_THAT(merged(tree, Profiles::Regular), ElementsAre("regular", "extended"));
    tree.profiles[kMdm].inheritance = "regular";
    EXPECT_THAT(merged(tree, Profiles::Mdm), ElementsAre("mdm", "regular", "extended"));
}

TEST(Profiles, ParentsAreFoundByPosition) {
    RuleTree tree = markedTree();
    tree.profiles[kMdm].inheritance = "regular";
    std::swap(tree.profiles[0], tree.profiles[kExtended]);
    EXPECT_THAT(merged(tree, Profiles::Mdm), ElementsAre("mdm", "extended"));
}

TEST(Profiles, DuplicatesStayInListsAndMergeInPermissions) {
    RuleTree tree;
    tree.regular().paths = {"/same"};
    tree.regular().permissions = {"Same", "Regular"};
    tree.profiles[kMdm].paths = {"/same"};
    tree.profiles[kMdm].permissions = {"Same", "Mdm"};
    tree.profiles[kMdm].inheritance = "regular";
    const Configuration configuration = load(tree, Profiles::Mdm);
    EXPECT_THAT(configuration.pathsList(), ElementsAre("/same", "/same"));
    EXPECT_THAT(configuration.allowedPermissions(), UnorderedElementsAre("Same", "Regular", "Mdm"));
}

TEST(Profiles, WhatIsNotAListIsNotInherited) {
    RuleTree tree;
    tree.regular().provides = "provided";
    tree.regular().requireDesktop = true;
    tree.regular().requireIcons = true;
    tree.profiles[kExtended].inheritance = "regular";
    tree.profiles[kMdm].inheritance = "extended";
    const Configuration configuration = load(tree, Profiles::Mdm);
    EXPECT_EQ(configuration.name(), "mdm");
    EXPECT_EQ(configuration.provides(), "");
    EXPECT_EQ(configuration.inheritance(), "extended");
    EXPECT_FALSE(configuration.desktopRequirement());
    EXPECT_FALSE(configuration.iconRequirement());
}

TEST(Profiles, WhatBelongsToTheWholeFileIsReadOnce) {
    RuleTree tree;
    tree.profiles[kMdm].inheritance = "regular";
    tree.iconSizes = {86};
    tree.disallowedPatterns = {"p"};
    tree.disallowedHandlers = {"h"};
    const Configuration configuration = load(tree, Profiles::Mdm);
    EXPECT_THAT(configuration.iconSizes(), ElementsAre(86));
    EXPECT_THAT(configuration.disallowedPatterns(), ElementsAre("p"));
    EXPECT_THAT(configuration.disallowedHandlers(), ElementsAre("h"));
}

TEST(Profiles, MissingListFileOfAParentAddsNothing) {
    const TemporaryDirectory directory;
    RuleTree tree = markedTree();
    tree.profiles[kMdm].inheritance = "regular";
    const std::string path = tree.write(directory);
    ASSERT_TRUE(std::filesystem::remove(directory / "profile-0/libraries.json"));
    const Configuration configuration(path, Profiles::Mdm);
    EXPECT_THAT(configuration.allowedLibraries(), ElementsAre("mdm"));
    EXPECT_THAT(configuration.allowedRequires(), ElementsAre("mdm", "regular"));
}

TEST(Profiles, CirclesAreRefusedWithFileAndKey) {
    struct Case {
        const char* name;
        const char* regular;
        const char* extended;
        const char* mdm;
        Profiles profile;
    };
    const Case cases[] = {
        {"regular itself", "regular", "", "", Profiles::Regular},
        {"extended itself", "", "extended", "", Profiles::Extended},
        {"each other", "extended", "regular", "", Profiles::Regular},
        {"each other, from the second", "extended", "regular", "", Profiles::Extended},
        {"child of itself", "", "extended", "extended", Profiles::Mdm},
        {"child of a pair", "extended", "regular", "regular", Profiles::Mdm},
        {"grandchild of itself", "regular", "regular", "extended", Profiles::Mdm},
    };
    const TemporaryDirectory directory;
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        RuleTree tree;
        tree.regular().inheritance = test.regular;
        tree.profiles[kExtended].inheritance = test.extended;
        tree.profiles[kMdm].inheritance = test.mdm;
        const std::string path = tree.write(directory);
        try {
            const Configuration configuration(path, test.profile);
            FAIL() << "nothing was thrown";
        } catch (const std::invalid_argument& error) {
            EXPECT_EQ(error.what(), path + ": \"inheritance\" leads profiles back to themselves");
        }
    }
}

TEST(Profiles, NamingOneselfIsNotACircleForThoseThatCannotBeParents) {
    RuleTree tree = markedTree();
    tree.profiles[kMdm].inheritance = "mdm";
    EXPECT_THAT(merged(tree, Profiles::Mdm), ElementsAre("mdm"));
    tree.regular().inheritance = "regular";
    EXPECT_THAT(merged(tree, Profiles::Mdm), ElementsAre("mdm"));
}

}  // namespace
