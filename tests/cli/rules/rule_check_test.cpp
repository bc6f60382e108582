// The check of a rule tree before it is used.
#include "cli/rules/rule_check.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <nlohmann/json.hpp>

#include "tests/support/base/temporary_directory.h"
#include "tests/support/rules/rule_tree.h"

namespace {

using Json = nlohmann::ordered_json;
using pkgvet::cli::checkRuleTree;
using pkgvet::cli::describe;
using pkgvet::cli::Fault;
using testing::IsEmpty;

// A sound tree in which a test breaks one thing.
class RuleCheck : public testing::Test {
protected:
    RuleCheck() : path_(RuleTree().write(directory_)) {}

    Json configuration() const { return Json::parse(readFile(path_)); }
    void write(const Json& configuration) const { writeFile(path_, configuration.dump()); }
    std::string list(const std::string& name) const { return directory_ / ("profile-0/" + name); }

    std::vector<std::string> faults(Profiles profile = Profiles::Regular) const {
        std::vector<std::string> lines;
        for (const Fault& fault : checkRuleTree(path_, {profile}).unusable) {
            lines.push_back(std::filesystem::path(fault.file).filename().string() + "|" +
                            fault.key + "|" + fault.cause);
        }
        return lines;
    }

    // What is dropped, as users read it, without the directory.
    std::vector<std::string> dropped(Profiles profile = Profiles::Regular) const {
        std::vector<std::string> lines;
        for (const Fault& fault : checkRuleTree(path_, {profile}).dropped) {
            lines.push_back(withoutDirectory(describe(fault)));
        }
        return lines;
    }

    std::string withoutDirectory(const std::string& line) const {
        return line.substr(directory_.path().string().size() + 1);
    }

    const TemporaryDirectory directory_;
    const std::string path_;
};

TEST_F(RuleCheck, SoundTreeHasNoFault) {
    for (unsigned profile = 0; profile < 6; ++profile) {
        EXPECT_THAT(faults(static_cast<Profiles>(profile)), IsEmpty());
    }
}

TEST_F(RuleCheck, MissingConfigurationFileIsAFault) {
    const std::vector<Fault> faults =
        checkRuleTree(directory_ / "none.json", {Profiles::Regular}).unusable;
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_EQ(faults[0].file, directory_ / "none.json");
    EXPECT_EQ(faults[0].key, "");
    EXPECT_NE(faults[0].cause, "");
}

TEST_F(RuleCheck, EachMandatoryKeyIsMissedByName) {
    const Json sound = configuration();
    for (const char* key :
         {"/icon_sizes", "/dirs", "/profiles", "/dirs/bin_dir", "/dirs/share_dir",
          "/dirs/desktop_dir", "/dirs/icon_dir", "/dirs/libexec_dir", "/dirs/disallowed_components",
          "/profiles/0/paths_list", "/profiles/0/libraries_list", "/profiles/0/requires_list",
          "/profiles/0/qmlimports_list", "/profiles/0/permissions_list", "/profiles/0/name",
          "/profiles/0/provides", "/profiles/0/inheritance", "/profiles/0/require_desktop",
          "/profiles/0/require_icons"}) {
        SCOPED_TRACE(key);
        const Json::json_pointer pointer(key);
        Json broken = sound;
        broken[pointer.parent_pointer()].erase(pointer.back());
        write(broken);
        ASSERT_EQ(faults().size(), 1U);
        EXPECT_NE(faults()[0].find(pointer.back() + "|is missing"), std::string::npos);

        broken = sound;
        broken[pointer] = 1.5;
        write(broken);
        EXPECT_EQ(faults().size(), 1U);
    }
}

TEST_F(RuleCheck, ListFilesAreHeldToTheirShape) {
    struct Case {
        const char* file;
        const char* content;
        const char* fault;
    };
    const Case cases[] = {
        {"paths.json", "[]", "paths.json||holds no JSON object"},
        {"paths.json", "",
         "paths.json||parse error: syntax error while parsing value - "
         "unexpected end of input; expected '[', '{', or a literal"},
        {"paths.json", "{}", "paths.json|paths|is missing"},
        {"paths.json", R"({"paths": "x"})", "paths.json|paths|is not an array"},
        {"paths.json", R"({"paths": ["a", 1]})", "paths.json|paths[1]|is not a string"},
        {"permissions.json", R"({"permissions": [null]})",
         "permissions.json|permissions[0]|is not a string"},
        {"libraries.json", R"({"libraries": [1]})", "libraries.json|libraries[0]|is not an object"},
        {"libraries.json", R"({"libraries": [{"list": []}]})",
         "libraries.json|libraries[0].name|is missing"},
        {"requires.json", R"({"requires": [{"name": "allowed"}]})",
         "requires.json|requires[0].list|is missing"},
        {"qmlimports.json", R"({"qmlimports": [{"name": "allowed", "list": [{}]}]})",
         "qmlimports.json|qmlimports[0].list[0]|is not a string"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.fault);
        const std::string sound = readFile(list(test.file));
        writeFile(list(test.file), test.content);
        EXPECT_THAT(faults(), testing::ElementsAre(test.fault));
        writeFile(list(test.file), sound);
    }
}

TEST_F(RuleCheck, MissingListFileIsAFaultOfThatFile) {
    std::filesystem::remove(list("paths.json"));
    ASSERT_EQ(faults().size(), 1U);
    EXPECT_EQ(faults()[0].find("paths.json||"), 0U);
}

TEST_F(RuleCheck, WhatTheLibraryDoesNotReadIsAFault) {
    std::filesystem::remove(list("paths.json"));
    ASSERT_EQ(mkfifo(list("paths.json").c_str(), 0600), 0);
    writeFile(list("libraries.json"),
              R"({"libraries": )" + std::string(60000, '[') + std::string(60000, ']') + "}");
    EXPECT_THAT(faults(), testing::ElementsAre("paths.json||is not a regular file",
                                               "libraries.json||is nested too deeply to be read"));
}

TEST_F(RuleCheck, PatternThatDoesNotCompileIsAFault) {
    writeFile(list("libraries.json"),
              R"({"libraries": [{"name": "deprecated", "list": ["ok", "(", "[b"]}]})");
    const std::vector<std::string> found = faults();
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].find("libraries.json|libraries[0].list[1]|is not a regular expression: "),
              0U);
    EXPECT_EQ(found[1].find("libraries.json|libraries[0].list[2]|is not a regular expression: "),
              0U);
}

TEST_F(RuleCheck, PermissionsAreNotPatterns) {
    writeFile(list("permissions.json"), R"({"permissions": ["("]})");
    EXPECT_THAT(faults(), IsEmpty());
}

TEST_F(RuleCheck, OnlyTheChosenProfileAndItsParentsCount) {
    Json broken = configuration();
    broken["profiles"][1].erase("name");
    write(broken);
    EXPECT_THAT(faults(), IsEmpty());
    broken["profiles"][0]["inheritance"] = "extended";
    write(broken);
    EXPECT_EQ(faults().size(), 1U);
}

TEST_F(RuleCheck, ProfileThatInheritsItselfIsAFault) {
    Json broken = configuration();
    broken["profiles"][0]["inheritance"] = "extended";
    broken["profiles"][1]["inheritance"] = "regular";
    broken["profiles"][2]["inheritance"] = "regular";
    write(broken);
    for (const Profiles profile : {Profiles::Regular, Profiles::Extended, Profiles::Mdm}) {
        const std::vector<std::string> found = faults(profile);
        ASSERT_EQ(found.size(), 1U);
        EXPECT_NE(found[0].find("inheritance|leads the profile back to itself"), std::string::npos);
    }
}

TEST_F(RuleCheck, SeveralProfilesNameTheFaultsOfACommonParentOnce) {
    Json broken = configuration();
    for (std::size_t i = 1; i < 6; ++i) {
        broken["profiles"][i]["inheritance"] = "regular";
    }
    broken["profiles"][3].erase("provides");
    broken["profiles"].erase(5);
    write(broken);
    writeFile(list("paths.json"), "{}");
    std::vector<std::string> keys;
    for (const Fault& fault :
         checkRuleTree(path_, {Profiles::Regular, Profiles::Extended, Profiles::Mdm,
                               Profiles::Antivirus, Profiles::Auth, Profiles::Market})
             .unusable) {
        keys.push_back(fault.key);
    }
    EXPECT_THAT(keys, testing::ElementsAre("paths", "profiles[3].provides", "profiles[5]"));
}

TEST_F(RuleCheck, FileThatServesForTwoListsIsHeldToBothShapes) {
    Json broken = configuration();
    broken["profiles"][0]["requires_list"] = broken["profiles"][0]["libraries_list"];
    write(broken);
    EXPECT_THAT(faults(), testing::ElementsAre("libraries.json|requires|is missing"));
}

TEST_F(RuleCheck, ParentThatIsNotATextIsAFault) {
    for (const Json& parent : {Json::object(), Json::array(), Json(nullptr), Json(1)}) {
        Json broken = configuration();
        broken["profiles"][0]["inheritance"] = parent;
        write(broken);
        EXPECT_THAT(faults(), testing::ElementsAre(
                                  "configuration.json|profiles[0].inheritance|is not a string"));
    }
}

TEST_F(RuleCheck, ProfileThatIsNotThereIsAFault) {
    Json broken = configuration();
    broken["profiles"].erase(5);
    write(broken);
    EXPECT_THAT(faults(Profiles::Market),
                testing::ElementsAre("configuration.json|profiles[5]|is missing"));
}

TEST_F(RuleCheck, FaultSaysWhereItStandsAndWhatIsThere) {
    writeFile(list("paths.json"), "{\n    \"paths\": [\n        \"/a\",\n        \"lib[\"]}");
    const std::vector<Fault> faults = checkRuleTree(path_, {Profiles::Regular}).unusable;
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_THAT(withoutDirectory(describe(faults[0])),
                testing::StartsWith("profile-0/paths.json:4:9: \"lib[\" is not a regular "
                                    "expression: "));
}

TEST_F(RuleCheck, ValueThatIsMissingIsMissedWhereItShouldStand) {
    writeFile(list("libraries.json"), "{\n  \"libraries\": [\n    {\"list\": []}]}");
    const std::vector<Fault> faults = checkRuleTree(path_, {Profiles::Regular}).unusable;
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_EQ(withoutDirectory(describe(faults[0])),
              "profile-0/libraries.json:3:5: \"libraries[0].name\" is missing");
}

TEST_F(RuleCheck, TierOfAnUnknownNameIsDropped) {
    writeFile(list("libraries.json"), R"({"libraries": [{"name": "alowed", "list": ["a"]}]})");
    EXPECT_THAT(dropped(), testing::ElementsAre(
                               "profile-0/libraries.json:1:25: \"alowed\" is not the name of a "
                               "tier, so its list is dropped: did you mean allowed?"));
}

TEST_F(RuleCheck, ParentOfAnUnknownNameGivesNothing) {
    Json broken = configuration();
    broken["profiles"][2]["inheritance"] = "regulr";
    write(broken);
    EXPECT_THAT(dropped(), IsEmpty());
    ASSERT_EQ(dropped(Profiles::Mdm).size(), 1U);
    EXPECT_THAT(dropped(Profiles::Mdm)[0],
                testing::EndsWith(": \"regulr\" cannot be a parent, so nothing is inherited: did "
                                  "you mean regular?"));
}

TEST_F(RuleCheck, WhatStandsUnderAnUnknownKeyIsDropped) {
    writeFile(list("paths.json"), "{\"paths\": [],\n \"path\": [\"/a\"]}");
    writeFile(list("libraries.json"),
              R"({"libraries": [{"name": "allowed", "list": [], "lists": []}]})");
    EXPECT_THAT(dropped(),
                testing::ElementsAre(
                    "profile-0/paths.json:2:2: \"path\" is not a known key, so what it holds is "
                    "dropped: did you mean paths?",
                    "profile-0/libraries.json:1:48: \"libraries[0].lists\" is not a known key, so "
                    "what it holds is dropped: did you mean list?"));
    Json broken = configuration();
    broken["icons"] = Json::array();
    broken["dirs"]["lib_dir"] = "/usr/lib/";
    broken["profiles"][0]["require_icon"] = true;
    write(broken);
    EXPECT_EQ(dropped().size(), 5U);
}

TEST_F(RuleCheck, FirstOfTwoKeysIsDropped) {
    writeFile(list("paths.json"), "{\"paths\": [\"/a\"],\n \"paths\": []}");
    EXPECT_THAT(dropped(), testing::ElementsAre("profile-0/paths.json:2:2: \"paths\" stands twice, "
                                                "and the first one is dropped"));
}

TEST_F(RuleCheck, SoundTreeDropsNothing) {
    for (unsigned profile = 0; profile < 6; ++profile) {
        EXPECT_THAT(dropped(static_cast<Profiles>(profile)), IsEmpty());
    }
}

TEST_F(RuleCheck, BackslashThatTheLibraryLosesDropsARule) {
    writeFile(list("paths.json"), "{\"paths\": [\"/usr/a\",\n \"/usr/b\\.so\"]}");
    EXPECT_THAT(dropped(), testing::ElementsAre(
                               "profile-0/paths.json:2:2: \\. is not an escape of JSON, and its "
                               "backslash is dropped"));
    EXPECT_THAT(faults(), IsEmpty());
}

}  // namespace
