// Configuration files of the wrong shape.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "pkgvet/rules/configuration.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/rules/rule_tree.h"

namespace {

using Json = nlohmann::ordered_json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kNullText = "basic_string: construction from null is not valid";

// A sound tree whose configuration file a test then spoils.
class SpoiltTree {
public:
    explicit SpoiltTree(const RuleTree& tree = RuleTree())
        : path_(tree.write(directory_)), json(Json::parse(readFile(path_))) {}

    const std::string& path() const { return path_; }

    Configuration load(Profiles profile = Profiles::Regular) const {
        writeFile(path_, json.dump());
        return Configuration(path_, profile);
    }

    // What an exception of type Error says, behind the path of the file.
    template <typename Error>
    std::string refusal(Profiles profile = Profiles::Regular) const {
        try {
            load(profile);
        } catch (const Error& error) {
            const std::string text = error.what();
            return text.rfind(path_ + ": ", 0) == 0 ? text.substr(path_.size() + 2) : text;
        }
        return "nothing was thrown";
    }

private:
    TemporaryDirectory directory_;
    std::string path_;

public:
    Json json;
};

// Values of every type but string.
const std::vector<Json> kNoStrings = {nullptr, 1, 1.5, true, Json::array(), Json::object()};

TEST(ConfigurationFailures, MandatoryTextIsRefusedWithFileAndKey) {
    struct Case {
        std::string object;
        std::string key;
    };
    std::vector<Case> cases;
    for (const char* key : {"bin_dir", "share_dir", "desktop_dir", "icon_dir", "libexec_dir"}) {
        cases.push_back({"/dirs", key});
    }
    for (const char* key : {"paths_list", "libraries_list", "requires_list", "qmlimports_list",
                            "permissions_list", "name", "provides", "inheritance"}) {
        cases.push_back({"/profiles/0", key});
    }
    for (const Case& test : cases) {
        SCOPED_TRACE(test.key);
        const std::string expected = "\"" + test.key + "\" is missing or not a string";
        SpoiltTree tree;
        Json& object = tree.json[Json::json_pointer(test.object)];
        for (const Json& value : kNoStrings) {
            object[test.key] = value;
            EXPECT_EQ(tree.refusal<std::invalid_argument>(), expected) << value;
        }
        object.erase(test.key);
        EXPECT_EQ(tree.refusal<std::invalid_argument>(), expected);
    }
}

TEST(ConfigurationFailures, ShapesWithoutMeaningAreRefusedWithFileAndKey) {
    struct Case {
        const char* name;
        std::function<void(Json*)> spoil;
        Profiles profile;
        const char* expected;
    };
    const Case cases[] = {
        {"no dirs", [](Json* json) { json->erase("dirs"); }, Profiles::Regular,
         "\"dirs\" is missing or not an object"},
        {"dirs is a list", [](Json* json) { (*json)["dirs"] = Json::array(); }, Profiles::Regular,
         "\"dirs\" is missing or not an object"},
        {"no profiles", [](Json* json) { json->erase("profiles"); }, Profiles::Regular,
         "\"profiles\" is missing or not an array"},
        {"profiles is an object", [](Json* json) { (*json)["profiles"] = Json::object(); },
         Profiles::Regular, "\"profiles\" is missing or not an array"},
        {"profiles is empty", [](Json* json) { (*json)["profiles"] = Json::array(); },
         Profiles::Regular, "\"profiles\" has no object for regular"},
        {"too few profiles", [](Json* json) { (*json)["profiles"].erase(5); }, Profiles::Market,
         "\"profiles\" has no object for market"},
        {"profile is null", [](Json* json) { (*json)["profiles"][3] = nullptr; },
         Profiles::Antivirus, "\"profiles\" has no object for antivirus"},
        {"profile is a text", [](Json* json) { (*json)["profiles"][1] = "x"; }, Profiles::Extended,
         "\"profiles\" has no object for extended"},
        {"unknown profile", [](Json*) {}, static_cast<Profiles>(6),
         "\"profiles\" has no object for <unknown>"},
        {"negative profile", [](Json*) {}, static_cast<Profiles>(-1),
         "\"profiles\" has no object for <unknown>"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        SpoiltTree tree;
        test.spoil(&tree.json);
        EXPECT_EQ(tree.refusal<std::invalid_argument>(test.profile), test.expected);
    }
}

TEST(ConfigurationFailures, OtherProfilesAreNotLookedAt) {
    SpoiltTree tree;
    tree.json["profiles"][1] = nullptr;
    tree.json["profiles"][2] = Json::object();
    EXPECT_EQ(tree.load().name(), "regular");
}

TEST(ConfigurationFailures, DisallowedComponentsMustBeAText) {
    SpoiltTree tree;
    const CapturedDescriptor standardError;
    for (const Json& value : kNoStrings) {
        tree.json["dirs"]["disallowed_components"] = value;
        EXPECT_EQ(tree.refusal<std::logic_error>(), kNullText) << value;
    }
    tree.json["dirs"].erase("disallowed_components");
    EXPECT_EQ(tree.refusal<std::logic_error>(), kNullText);
}

TEST(ConfigurationFailures, AbsentRequirementIsACriticalMessageAndFalse) {
    for (const char* key : {"require_desktop", "require_icons"}) {
        SCOPED_TRACE(key);
        SpoiltTree tree;
        tree.json["profiles"][0].erase(key);
        const CapturedDescriptor standardError;
        const Configuration configuration = tree.load();
        EXPECT_FALSE(configuration.desktopRequirement());
        EXPECT_FALSE(configuration.iconRequirement());
        EXPECT_THAT(standardError.text(),
                    HasSubstr("json_object_get_boolean_member: assertion 'node != NULL' failed"));
    }
}

TEST(ConfigurationFailures, AbsentIconSizesAreACriticalMessageAndNone) {
    SpoiltTree tree;
    tree.json.erase("icon_sizes");
    const CapturedDescriptor standardError;
    EXPECT_THAT(tree.load().iconSizes(), IsEmpty());
    EXPECT_THAT(standardError.text(),
                HasSubstr("json_object_get_array_member: assertion 'node != NULL' failed"));
}

TEST(ConfigurationFailures, IconSizesAreReadAsIntegersOf32Bits) {
    SpoiltTree tree;
    tree.json["icon_sizes"] = {86, -1, 4294967296 + 108, 128.9, true, "x", nullptr};
    const CapturedDescriptor standardError;
    EXPECT_THAT(tree.load().iconSizes(), ElementsAre(86, -1, 108, 128, 1, 0, 0));
    tree.json["icon_sizes"] = {Json::array(), Json::object(), 1};
    EXPECT_THAT(tree.load().iconSizes(), ElementsAre(0, 0, 1));
}

TEST(ConfigurationFailures, ArrayMissingInAListFileIsACriticalMessage) {
    const TemporaryDirectory directory;
    SpoiltTree tree;
    tree.json["profiles"][0]["paths_list"] = directory.write("list.json", "{}");
    const CapturedDescriptor standardError;
    EXPECT_THAT(tree.load().pathsList(), IsEmpty());
    EXPECT_THAT(standardError.text(),
                HasSubstr("json_object_get_array_member: assertion 'node != NULL' failed"));
}

TEST(ConfigurationFailures, ElementThatIsNotATextThrows) {
    const TemporaryDirectory directory;
    SpoiltTree tree;
    tree.json["profiles"][0]["permissions_list"] =
        directory.write("list.json", R"({"permissions": ["A", 1]})");
    EXPECT_EQ(tree.refusal<std::logic_error>(), kNullText);
}

TEST(ConfigurationFailures, TextOfAParentMustBeThere) {
    RuleTree sound;
    sound.profiles[2].inheritance = "regular";
    for (const char* key : {"paths_list", "libraries_list", "requires_list", "qmlimports_list",
                            "permissions_list", "inheritance"}) {
        SCOPED_TRACE(key);
        SpoiltTree tree(sound);
        Json& parent = tree.json["profiles"][0];
        const CapturedDescriptor standardError;
        for (const Json& value : kNoStrings) {
            parent[key] = value;
            EXPECT_EQ(tree.refusal<std::logic_error>(Profiles::Mdm), kNullText) << value;
        }
        parent.erase(key);
        EXPECT_EQ(tree.refusal<std::logic_error>(Profiles::Mdm), kNullText);
    }
}

TEST(ConfigurationFailures, OtherKeysOfAParentAreNotRead) {
    RuleTree sound;
    sound.profiles[2].inheritance = "regular";
    sound.regular().paths = {"/a"};
    SpoiltTree tree(sound);
    for (const char* key : {"name", "provides", "require_desktop", "require_icons"}) {
        tree.json["profiles"][0].erase(key);
    }
    const CapturedDescriptor standardError;
    EXPECT_THAT(tree.load(Profiles::Mdm).pathsList(), ElementsAre("/a"));
    EXPECT_EQ(standardError.text(), "");
}

TEST(ConfigurationFailures, ParentThatIsNotAnObjectEndsTheWalk) {
    RuleTree sound;
    sound.profiles[2].inheritance = "extended";
    SpoiltTree tree(sound);
    const CapturedDescriptor standardError;
    tree.json["profiles"][1] = nullptr;
    EXPECT_EQ(tree.load(Profiles::Mdm).name(), "mdm");
    EXPECT_EQ(standardError.text(), "");
    tree.json["profiles"][1] = "x";
    EXPECT_EQ(tree.load(Profiles::Mdm).name(), "mdm");
    EXPECT_THAT(standardError.text(), HasSubstr("json_array_get_object_element: assertion"));
}

TEST(ConfigurationFailures, ParentThatIsNotThereIsACriticalMessageAndEndsTheWalk) {
    RuleTree sound;
    sound.regular().inheritance = "extended";
    sound.regular().paths = {"/a"};
    SpoiltTree tree(sound);
    while (tree.json["profiles"].size() > 1) {
        tree.json["profiles"].erase(1);
    }
    const CapturedDescriptor standardError;
    EXPECT_THAT(tree.load().pathsList(), ElementsAre("/a"));
    EXPECT_THAT(standardError.text(), HasSubstr("json_array_get_object_element: assertion"));
}

TEST(ConfigurationFailures, FileThatIsNestedTooDeeplyIsRefused) {
    SpoiltTree tree;
    writeFile(tree.path(),
              R"({"other": )" + std::string(60000, '[') + std::string(60000, ']') + "}");
    try {
        const Configuration configuration(tree.path(), Profiles::Regular);
        FAIL() << "nothing was thrown";
    } catch (const std::invalid_argument& error) {
        EXPECT_EQ(error.what(), tree.path() + ": is nested too deeply to be read");
    }
}

}  // namespace
