// What a Configuration holds after it was read.
#include "pkgvet/rules/configuration.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <utility>

#include "pkgvet/rules/developer_mode.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/rules/rule_tree.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

// A tree in which each value of the regular profile differs from every other.
RuleTree fullTree() {
    RuleTree tree;
    tree.iconSizes = {172, 86, 86};
    tree.binDir = "/b/";
    tree.shareDir = "/s/";
    tree.desktopDir = "/d/";
    tree.iconDir = "/i/";
    tree.libexecDir = "/l/";
    tree.disallowedPatterns = {"pattern"};
    tree.disallowedHandlers = {"handler"};
    ProfileRules& rules = tree.regular();
    rules.name = "rule set";
    rules.provides = "provided";
    rules.inheritance = "none";
    rules.requireDesktop = true;
    rules.requireIcons = true;
    rules.paths = {"/z", "/a", "/z"};
    rules.libraries = {{"al"}, {"ul"}, {"dl"}};
    rules.requires_ = {{"ar"}, {"ur"}, {"dr"}};
    rules.qmlimports = {{"aq"}, {"uq"}, {"dq"}};
    rules.permissions = {"P", "Q", "P"};
    return tree;
}

void expectEmpty(const Configuration& configuration) {
    EXPECT_FALSE(configuration.desktopRequirement());
    EXPECT_FALSE(configuration.iconRequirement());
    for (const auto accessor :
         {&Configuration::binDir, &Configuration::shareDir, &Configuration::desktopDir,
          &Configuration::iconDir, &Configuration::libexecDir, &Configuration::name,
          &Configuration::provides, &Configuration::inheritance}) {
        EXPECT_EQ((configuration.*accessor)(), "");
    }
    EXPECT_THAT(configuration.iconSizes(), IsEmpty());
    for (const auto accessor :
         {&Configuration::pathsList, &Configuration::allowedLibraries,
          &Configuration::unstableLibraries, &Configuration::deprecatedLibraries,
          &Configuration::allowedRequires, &Configuration::unstableRequires,
          &Configuration::deprecatedRequires, &Configuration::allowedQmlimports,
          &Configuration::unstableQmlimports, &Configuration::deprecatedQmlimports,
          &Configuration::disallowedPatterns, &Configuration::disallowedHandlers}) {
        EXPECT_THAT((configuration.*accessor)(), IsEmpty());
    }
    EXPECT_THAT(configuration.allowedPermissions(), IsEmpty());
}

TEST(Configuration, TextsComeFromTheirKeys) {
    const Configuration configuration = load(fullTree());
    EXPECT_EQ(configuration.binDir(), "/b/");
    EXPECT_EQ(configuration.shareDir(), "/s/");
    EXPECT_EQ(configuration.desktopDir(), "/d/");
    EXPECT_EQ(configuration.iconDir(), "/i/");
    EXPECT_EQ(configuration.libexecDir(), "/l/");
    EXPECT_EQ(configuration.name(), "rule set");
    EXPECT_EQ(configuration.provides(), "provided");
    EXPECT_EQ(configuration.inheritance(), "none");
    EXPECT_TRUE(configuration.desktopRequirement());
    EXPECT_TRUE(configuration.iconRequirement());
}

TEST(Configuration, ListsComeFromTheirFiles) {
    const Configuration configuration = load(fullTree());
    EXPECT_THAT(configuration.iconSizes(), ElementsAre(172, 86, 86));
    EXPECT_THAT(configuration.pathsList(), ElementsAre("/z", "/a", "/z"));
    EXPECT_THAT(configuration.allowedLibraries(), ElementsAre("al"));
    EXPECT_THAT(configuration.unstableLibraries(), ElementsAre("ul"));
    EXPECT_THAT(configuration.deprecatedLibraries(), ElementsAre("dl"));
    EXPECT_THAT(configuration.allowedRequires(), ElementsAre("ar"));
    EXPECT_THAT(configuration.unstableRequires(), ElementsAre("ur"));
    EXPECT_THAT(configuration.deprecatedRequires(), ElementsAre("dr"));
    EXPECT_THAT(configuration.allowedQmlimports(), ElementsAre("aq"));
    EXPECT_THAT(configuration.unstableQmlimports(), ElementsAre("uq"));
    EXPECT_THAT(configuration.deprecatedQmlimports(), ElementsAre("dq"));
    EXPECT_THAT(configuration.disallowedPatterns(), ElementsAre("pattern"));
    EXPECT_THAT(configuration.disallowedHandlers(), ElementsAre("handler"));
    EXPECT_THAT(configuration.allowedPermissions(), UnorderedElementsAre("P", "Q"));
}

TEST(Configuration, RequirementsAreTwoSwitches) {
    RuleTree tree;
    tree.regular().requireDesktop = true;
    EXPECT_TRUE(load(tree).desktopRequirement());
    EXPECT_FALSE(load(tree).iconRequirement());
    tree.regular().requireDesktop = false;
    tree.regular().requireIcons = true;
    EXPECT_FALSE(load(tree).desktopRequirement());
    EXPECT_TRUE(load(tree).iconRequirement());
}

TEST(Configuration, RelativePathsStartAtTheWorkingDirectory) {
    const TemporaryDirectory directory;
    RuleTree tree;
    tree.regular().paths = {"/a"};
    std::string text = readFile(tree.write(directory));
    for (std::size_t at = 0; (at = text.find(directory.path().string() + "/")) != text.npos;) {
        text.erase(at, directory.path().string().size() + 1);
    }
    const std::string path = directory.write("below/configuration.json", text);
    EXPECT_THAT(Configuration(path, Profiles::Regular).pathsList(), IsEmpty());
    const std::filesystem::path former = std::filesystem::current_path();
    std::filesystem::current_path(directory.path());
    const Configuration configuration("below/configuration.json", Profiles::Regular);
    std::filesystem::current_path(former);
    EXPECT_THAT(configuration.pathsList(), ElementsAre("/a"));
}

TEST(Configuration, BadPathGivesTheDefaultsInSilence) {
    const TemporaryDirectory directory;
    const CapturedDescriptor standardError;
    for (const std::string& path :
         {directory / "missing", directory.path().string(), std::string(),
          directory.write("empty", ""), directory.write("blank", " \n"),
          directory.write("broken", "{"), directory.write("list", "[]")}) {
        SCOPED_TRACE(path);
        const Configuration configuration(path, Profiles::Market);
        expectEmpty(configuration);
        EXPECT_EQ(configuration.validationEnabled(),
                  pkgvet::readValidationEnabled(pkgvet::kDeveloperModeFile));
    }
    EXPECT_EQ(standardError.text(), "");
}

TEST(Configuration, MissingListFileLeavesTheOthers) {
    const TemporaryDirectory directory;
    const std::string path = fullTree().write(directory);
    ASSERT_TRUE(std::filesystem::remove(directory / "profile-0/libraries.json"));
    const CapturedDescriptor standardError;
    const Configuration configuration(path, Profiles::Regular);
    EXPECT_THAT(configuration.allowedLibraries(), IsEmpty());
    EXPECT_THAT(configuration.unstableLibraries(), IsEmpty());
    EXPECT_THAT(configuration.deprecatedLibraries(), IsEmpty());
    EXPECT_THAT(configuration.allowedRequires(), ElementsAre("ar"));
    EXPECT_THAT(configuration.pathsList(), ElementsAre("/z", "/a", "/z"));
    EXPECT_EQ(standardError.text(), "");
}

TEST(Configuration, EachListFileMayBeMissing) {
    for (const char* file :
         {"profile-0/paths.json", "profile-0/requires.json", "profile-0/qmlimports.json",
          "profile-0/permissions.json", "components.json"}) {
        SCOPED_TRACE(file);
        const TemporaryDirectory directory;
        const std::string path = fullTree().write(directory);
        ASSERT_TRUE(std::filesystem::remove(directory / file));
        const CapturedDescriptor standardError;
        EXPECT_THAT(Configuration(path, Profiles::Regular).allowedLibraries(), ElementsAre("al"));
        EXPECT_EQ(standardError.text(), "");
    }
}

TEST(Configuration, ValidationIsSwitchedThroughAConstReference) {
    const Configuration configuration = load(RuleTree());
    configuration.setValidationEnabled(false);
    EXPECT_FALSE(configuration.validationEnabled());
    configuration.setValidationEnabled(true);
    EXPECT_TRUE(configuration.validationEnabled());
}

TEST(Configuration, CopyIsIndependent) {
    const Configuration source = load(fullTree());
    const auto copy = std::make_unique<Configuration>(source);
    copy->setValidationEnabled(false);
    EXPECT_TRUE(source.validationEnabled());
    EXPECT_FALSE(copy->validationEnabled());
    EXPECT_FALSE(Configuration(*copy).validationEnabled());
    EXPECT_TRUE(copy->desktopRequirement());
    EXPECT_TRUE(copy->iconRequirement());
    EXPECT_EQ(copy->name(), "rule set");
    EXPECT_NE(&copy->pathsList(), &source.pathsList());
    EXPECT_THAT(copy->pathsList(), ElementsAre("/z", "/a", "/z"));
    EXPECT_THAT(copy->allowedPermissions(), UnorderedElementsAre("P", "Q"));
}

TEST(Configuration, MoveAssignmentExchanges) {
    Configuration full = load(fullTree());
    Configuration empty("/nonexistent", Profiles::Regular);
    empty = std::move(full);
    EXPECT_EQ(empty.name(), "rule set");
    EXPECT_EQ(full.name(), "");  // NOLINT(bugprone-use-after-move)
    Configuration& self = empty;
    empty = std::move(self);
    EXPECT_EQ(empty.name(), "rule set");
}

}  // namespace
