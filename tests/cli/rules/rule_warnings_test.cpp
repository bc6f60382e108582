// What a rule tree may hold but is unlikely to mean.
#include "cli/rules/rule_warnings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/base/temporary_directory.h"
#include "tests/support/rules/rule_tree.h"

namespace {

using pkgvet::cli::Fault;
using pkgvet::cli::warnAboutRules;
using testing::ElementsAre;
using testing::IsEmpty;

const std::vector<Profiles> kAll = {Profiles::Regular,   Profiles::Extended, Profiles::Mdm,
                                    Profiles::Antivirus, Profiles::Auth,     Profiles::Market};

class RuleWarnings : public testing::Test {
protected:
    std::string list(const std::string& name) const { return directory_ / ("profile-0/" + name); }

    std::vector<std::string> warnings() const { return warningsAbout(tree_.write(directory_)); }

    std::vector<std::string> warningsAbout(const std::string& path) const {
        std::vector<std::string> lines;
        for (const Fault& fault : warnAboutRules(path, kAll)) {
            const auto file = std::filesystem::relative(fault.file, directory_.path());
            lines.push_back(file.string() + "|" + fault.key + "|" + fault.cause);
        }
        return lines;
    }

    const TemporaryDirectory directory_;
    RuleTree tree_;
};

TEST_F(RuleWarnings, SoundTreeHasNone) {
    tree_.regular().paths = {"/a", "/b"};
    tree_.profiles[1].inheritance = "regular";
    EXPECT_THAT(warnings(), IsEmpty());
}

TEST_F(RuleWarnings, DirectoriesEndInASlash) {
    tree_.binDir = "/usr/bin";
    tree_.iconDir = "";
    EXPECT_THAT(warnings(),
                ElementsAre("configuration.json|dirs.bin_dir|does not end in a slash",
                            "configuration.json|dirs.icon_dir|does not end in a slash"));
}

TEST_F(RuleWarnings, PatternsThatAreHardlyMeantAreNamed) {
    tree_.regular().paths = {"", " /a", "/b ", "/a.b"};
    tree_.regular().libraries.allowed = {"liba.so.1", "libb\\.so\\.[0-9.]+", "libc.*\\.so"};
    tree_.regular().libraries.unstable = {"libd\\.so.1"};
    const std::string dot =
        "|has a dot that stands for any character; a dot itself is written \\\\.";
    const std::string blank = "|begins or ends with a blank, which must then be in the name too";
    EXPECT_THAT(warnings(),
                ElementsAre("profile-0/paths.json|paths[0]|is empty and stands for nothing",
                            "profile-0/paths.json|paths[1]" + blank,
                            "profile-0/paths.json|paths[2]" + blank,
                            "profile-0/libraries.json|libraries[0].list[0]" + dot,
                            "profile-0/libraries.json|libraries[1].list[0]" + dot));
}

TEST_F(RuleWarnings, WarningSaysWhereItStandsAndWhatIsThere) {
    const std::string path = tree_.write(directory_);
    writeFile(list("paths.json"), "{\"paths\": [\"/a\",\n  \" /b\"]}");
    const std::vector<Fault> found = warnAboutRules(path, kAll);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(describe(found[0]),
              list("paths.json") +
                  ":2:3: \" /b\" begins or ends with a blank, which must then be in the name too");
}

TEST_F(RuleWarnings, ParentThatAllProfilesShareIsWarnedAboutOnce) {
    for (std::size_t i = 1; i < tree_.profiles.size(); ++i) {
        tree_.profiles[i].inheritance = "regular";
    }
    tree_.regular().libraries.allowed = {"a", "b", "a"};
    EXPECT_THAT(warnings(), ElementsAre("profile-0/libraries.json|libraries[0].list[2]|repeats "
                                        "libraries[0].list[0]"));
}

TEST_F(RuleWarnings, WhatIsInheritedNeedNoEntry) {
    tree_.profiles[1].inheritance = "regular";
    tree_.profiles[1].permissions = {"Audio", "Internet"};
    tree_.regular().permissions = {"Internet"};
    EXPECT_THAT(warnings(), ElementsAre("profile-1/permissions.json|permissions[1]|is inherited "
                                        "already, from " +
                                        list("permissions.json")));
}

TEST_F(RuleWarnings, FileThatProfileAndParentShareRepeatsNothing) {
    tree_.profiles[1].inheritance = "regular";
    tree_.regular().paths = {"/a"};
    const std::string path = tree_.write(directory_);
    std::string content = readFile(path);
    const std::string own = directory_ / "profile-1/paths.json";
    content.replace(content.find(own), own.size(), list("paths.json"));
    writeFile(path, content);
    EXPECT_THAT(warningsAbout(path), IsEmpty());
}

TEST_F(RuleWarnings, SameTextInAnotherTierIsNotARepeat) {
    tree_.regular().libraries = {{"a"}, {"a"}, {}};
    EXPECT_THAT(warnings(), IsEmpty());
}

TEST_F(RuleWarnings, LenientJsonIsFoundAndWrongEscapesAreLeftToTheCheck) {
    const std::string path = tree_.write(directory_);
    writeFile(list("permissions.json"), R"({"permissions": ["a\.b"]})");
    writeFile(list("paths.json"), R"({"paths": ["/a"] /* a remark */})");
    const std::vector<std::string> found = warningsAbout(path);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_THAT(found[0], testing::StartsWith("profile-0/paths.json||is not strict JSON"));
}

TEST_F(RuleWarnings, UnreadableTreeIsLeftToTheCheck) {
    EXPECT_THAT(warningsAbout(directory_ / "none.json"), IsEmpty());
    EXPECT_THAT(warningsAbout(directory_.write("empty.json", "")), IsEmpty());
}

}  // namespace
