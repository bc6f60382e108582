// Reading the list files of a rule tree.
#include "pkgvet/rules/rule_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

#include "pkgvet/base/json_file.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/base/temporary_directory.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

using Loader = std::function<void(const std::string&, ConfigurationPrivate*)>;

constexpr const char* kNullText = "basic_string: construction from null is not valid";
constexpr const char* kNoArray = "json_object_get_array_member: assertion 'node != NULL' failed";

ConfigurationPrivate loaded(const Loader& load, const std::string& content) {
    const TemporaryDirectory directory;
    ConfigurationPrivate record;
    load(directory.write("list.json", content), &record);
    return record;
}

Loader tierFile(const std::string& key) {
    return [key](const std::string& path, ConfigurationPrivate* record) {
        pkgvet::loadTierFile(path, key, record);
    };
}

const std::vector<std::pair<const char*, Loader>> kAllLoaders = {
    {"paths", pkgvet::loadPathsFile},
    {"permissions", pkgvet::loadPermissionsFile},
    {"patterns", pkgvet::loadDisallowedComponentsFile},
    {"mimehandlers", pkgvet::loadDisallowedComponentsFile},
    {"libraries", tierFile("libraries")},
    {"requires", tierFile("requires")},
    {"qmlimports", tierFile("qmlimports")},
};

bool isEmpty(const ConfigurationPrivate& record) {
    return record.pathsList.empty() && record.allowedPermissions.empty() &&
           record.disallowedPatterns.empty() && record.disallowedHandlers.empty() &&
           record.allowedLibraries.empty() && record.unstableLibraries.empty() &&
           record.deprecatedLibraries.empty() && record.allowedRequires.empty() &&
           record.unstableRequires.empty() && record.deprecatedRequires.empty() &&
           record.allowedQmlimports.empty() && record.unstableQmlimports.empty() &&
           record.deprecatedQmlimports.empty();
}

std::string thrownText(const std::function<void()>& action) {
    try {
        action();
    } catch (const std::logic_error& error) {
        return error.what();
    }
    return "nothing was thrown";
}

TEST(RuleFiles, PathsKeepOrderAndDuplicates) {
    EXPECT_THAT(loaded(pkgvet::loadPathsFile, R"({"paths": ["/b", "/a", "/b"]})").pathsList,
                ElementsAre("/b", "/a", "/b"));
}

TEST(RuleFiles, PermissionsAreASet) {
    EXPECT_THAT(loaded(pkgvet::loadPermissionsFile, R"({"permissions": ["B", "A", "B"]})")
                    .allowedPermissions,
                UnorderedElementsAre("A", "B"));
}

TEST(RuleFiles, DisallowedComponentsFillTwoLists) {
    const ConfigurationPrivate record =
        loaded(pkgvet::loadDisallowedComponentsFile,
               R"({"patterns": ["p", "q", "p"], "mimehandlers": ["m", "m"]})");
    EXPECT_THAT(record.disallowedPatterns, ElementsAre("p", "q", "p"));
    EXPECT_THAT(record.disallowedHandlers, ElementsAre("m", "m"));
}

TEST(RuleFiles, EachKindOfTierFileFillsItsOwnLists) {
    const std::string tiers =
        R"(: [{"name": "deprecated", "list": ["d"]}, {"name": "allowed", "list": ["a"]},
              {"name": "unstable", "list": ["u"]}]})";
    const auto libraries = loaded(tierFile("libraries"), R"({"libraries")" + tiers);
    EXPECT_THAT(libraries.allowedLibraries, ElementsAre("a"));
    EXPECT_THAT(libraries.unstableLibraries, ElementsAre("u"));
    EXPECT_THAT(libraries.deprecatedLibraries, ElementsAre("d"));
    EXPECT_THAT(libraries.allowedRequires, IsEmpty());
    const auto dependencies = loaded(tierFile("requires"), R"({"requires")" + tiers);
    EXPECT_THAT(dependencies.allowedRequires, ElementsAre("a"));
    EXPECT_THAT(dependencies.unstableRequires, ElementsAre("u"));
    EXPECT_THAT(dependencies.deprecatedRequires, ElementsAre("d"));
    const auto imports = loaded(tierFile("qmlimports"), R"({"qmlimports")" + tiers);
    EXPECT_THAT(imports.allowedQmlimports, ElementsAre("a"));
    EXPECT_THAT(imports.unstableQmlimports, ElementsAre("u"));
    EXPECT_THAT(imports.deprecatedQmlimports, ElementsAre("d"));
}

TEST(RuleFiles, TiersOfOneNameAddUpInOrder) {
    const auto record = loaded(tierFile("libraries"),
                               R"({"libraries": [{"name": "allowed", "list": ["a", "b"]},
                                   {"list": ["u"], "name": "unstable"},
                                   {"name": "allowed", "list": ["c", "a"]}]})");
    EXPECT_THAT(record.allowedLibraries, ElementsAre("a", "b", "c", "a"));
    EXPECT_THAT(record.unstableLibraries, ElementsAre("u"));
}

TEST(RuleFiles, TierOfAnotherNameIsReadAndDropped) {
    for (const char* name : {"", "Allowed", "allowed ", "allow", "experimental"}) {
        SCOPED_TRACE(name);
        const auto record =
            loaded(tierFile("requires"), std::string(R"({"requires": [{"name": ")") + name +
                                             R"(", "list": ["x"]}, {"name": "allowed",
                                             "list": ["a"]}]})");
        EXPECT_THAT(record.allowedRequires, ElementsAre("a"));
        EXPECT_THAT(record.unstableRequires, IsEmpty());
        EXPECT_THAT(record.deprecatedRequires, IsEmpty());
    }
}

TEST(RuleFiles, TierFileOfAnotherKindStoresNothing) {
    EXPECT_TRUE(isEmpty(
        loaded(tierFile("packages"), R"({"packages": [{"name": "allowed", "list": ["a"]}]})")));
}

TEST(RuleFiles, FileThatCannotBeReadAddsNothingInSilence) {
    const CapturedDescriptor standardError;
    for (const auto& [name, load] : kAllLoaders) {
        SCOPED_TRACE(name);
        ConfigurationPrivate record;
        load("/nonexistent/list.json", &record);
        EXPECT_TRUE(isEmpty(record));
        for (const char* content : {"{", "{]", "no JSON"}) {
            EXPECT_TRUE(isEmpty(loaded(load, content))) << content;
        }
    }
    EXPECT_EQ(standardError.text(), "");
}

TEST(RuleFiles, RootThatIsNotAnObjectIsACriticalMessageAndNothingElse) {
    for (const auto& [name, load] : kAllLoaders) {
        for (const char* content : {"", " \n", "[]", "[{}]", "null", "1", "\"x\""}) {
            SCOPED_TRACE(std::string(name) + ": " + content);
            const CapturedDescriptor standardError;
            EXPECT_TRUE(isEmpty(loaded(load, content)));
            EXPECT_THAT(standardError.text(), HasSubstr("json_node_get_object: assertion"));
        }
    }
}

TEST(RuleFiles, FileThatIsNestedTooDeeplyIsRefused) {
    const TemporaryDirectory directory;
    const std::string path = directory.write(
        "list.json", R"({"other": )" + std::string(60000, '[') + std::string(60000, ']') + "}");
    for (const auto& [name, load] : kAllLoaders) {
        SCOPED_TRACE(name);
        ConfigurationPrivate record;
        EXPECT_EQ(thrownText([&, &loadFile = load] { loadFile(path, &record); }),
                  path + ": is nested too deeply to be read");
    }
}

TEST(RuleFiles, CommentAtTheHeadHidesNothing) {
    std::string tiers =
        R"(/* what "it's" for */ {"libraries": [{"name": "allowed", "list": ["a"]})";
    for (int i = 0; i < 25000; ++i) {
        tiers += R"(, {"name": "allowed", "list": []})";
    }
    EXPECT_THAT(loaded(tierFile("libraries"), tiers + "]}").allowedLibraries, ElementsAre("a"));
}

TEST(RuleFiles, EachListFileIsReadByItsForm) {
    for (const pkgvet::ListFile& list : pkgvet::kListFiles) {
        SCOPED_TRACE(list.contentKey);
        const bool hasTiers = list.form == pkgvet::ListForm::Tiers;
        const std::string element = hasTiers ? R"({"name": "allowed", "list": ["x"]})" : "\"x\"";
        const ConfigurationPrivate record = loaded(
            [&list](const std::string& path, ConfigurationPrivate* filled) {
                pkgvet::loadListFile(list, path, filled);
            },
            std::string("{\"") + list.contentKey + "\": [" + element + "]}");
        const std::vector<std::string> expected = {"x"};
        switch (list.form) {
            case pkgvet::ListForm::Patterns:
                EXPECT_EQ(record.pathsList, expected);
                break;
            case pkgvet::ListForm::Tiers:
                EXPECT_EQ(record.*list.tiers[0], expected);
                break;
            case pkgvet::ListForm::Names:
                EXPECT_THAT(record.allowedPermissions, ElementsAre("x"));
                break;
        }
    }
}

TEST(RuleFiles, AbsentArrayIsACriticalMessageAndNothingElse) {
    for (const auto& [name, load] : kAllLoaders) {
        SCOPED_TRACE(name);
        const CapturedDescriptor standardError;
        EXPECT_TRUE(isEmpty(loaded(load, "{}")));
        EXPECT_THAT(standardError.text(), HasSubstr(kNoArray));
    }
}

TEST(RuleFiles, OneAbsentArrayLeavesTheOther) {
    const CapturedDescriptor standardError;
    const auto record = loaded(pkgvet::loadDisallowedComponentsFile, R"({"patterns": ["p"]})");
    EXPECT_THAT(record.disallowedPatterns, ElementsAre("p"));
    EXPECT_THAT(record.disallowedHandlers, IsEmpty());
    EXPECT_THAT(standardError.text(), HasSubstr(kNoArray));
}

TEST(RuleFiles, ValueThatIsNotAnArrayCountsAsAbsent) {
    const CapturedDescriptor standardError;
    for (const auto& [name, load] : kAllLoaders) {
        SCOPED_TRACE(name);
        for (const char* value : {"1", "\"x\"", "{}", "true", "null"}) {
            EXPECT_TRUE(isEmpty(loaded(load, std::string("{\"") + name + "\": " + value + "}")));
        }
    }
    EXPECT_THAT(standardError.text(), HasSubstr("json_object_get_array_member: assertion"));
}

TEST(RuleFiles, AbsentListOfATierIsACriticalMessageAndNothingElse) {
    const CapturedDescriptor standardError;
    const auto record =
        loaded(tierFile("requires"),
               R"({"requires": [{"name": "allowed"}, {"name": "allowed", "list": ["a"]}]})");
    EXPECT_THAT(record.allowedRequires, ElementsAre("a"));
    EXPECT_THAT(standardError.text(), HasSubstr(kNoArray));
}

TEST(RuleFiles, ElementThatIsNotAStringThrows) {
    const CapturedDescriptor standardError;
    for (const char* element : {"1", "true", "null", "{}", "[]", "1.5", "[\"x\"]"}) {
        SCOPED_TRACE(element);
        const std::string list = std::string("[\"a\", ") + element + "]";
        for (const char* name : {"paths", "permissions", "patterns", "mimehandlers"}) {
            SCOPED_TRACE(name);
            const std::string content = std::string("{\"patterns\": [], \"mimehandlers\": [], \"") +
                                        name + "\": " + list + "}";
            for (const auto& [key, load] : kAllLoaders) {
                if (std::string_view(key) == name) {
                    EXPECT_EQ(thrownText([&] { loaded(load, content); }), kNullText);
                }
            }
        }
        for (const char* tier : {"allowed", "unstable", "deprecated"}) {
            EXPECT_EQ(thrownText([&] {
                          loaded(tierFile("requires"), R"({"requires": [{"name": ")" +
                                                           std::string(tier) + R"(", "list": )" +
                                                           list + "}]}");
                      }),
                      kNullText);
        }
    }
}

TEST(RuleFiles, TierWithoutANameIsRefusedWithFileAndKey) {
    const TemporaryDirectory directory;
    const CapturedDescriptor standardError;
    for (const char* tier : {R"({"list": []})", R"({"name": 1, "list": []})",
                             R"({"name": null, "list": []})", R"({"name": {}, "list": []})"}) {
        SCOPED_TRACE(tier);
        const std::string path =
            directory.write("list.json", std::string(R"({"requires": [)") + tier + "]}");
        ConfigurationPrivate record;
        EXPECT_THROW(pkgvet::loadTierFile(path, "requires", &record), std::invalid_argument);
        EXPECT_EQ(thrownText([&] { pkgvet::loadTierFile(path, "requires", &record); }),
                  path + ": \"name\" is missing or not a string");
    }
}

TEST(RuleFiles, TierThatIsNotAnObjectIsRefusedWithFileAndKey) {
    const TemporaryDirectory directory;
    for (const char* tier : {"1", "\"x\"", "[]", "null"}) {
        SCOPED_TRACE(tier);
        const std::string path = directory.write(
            "list.json",
            std::string(R"({"requires": [{"name": "allowed", "list": []}, )") + tier + "]}");
        ConfigurationPrivate record;
        EXPECT_EQ(thrownText([&] { pkgvet::loadTierFile(path, "requires", &record); }),
                  path + ": \"requires[1]\" is not an object");
    }
}

TEST(RuleFiles, MandatoryStringIsGivenOrRefused) {
    const TemporaryDirectory directory;
    const pkgvet::JsonFile file =
        pkgvet::loadJsonFile(directory.write("file.json", R"({"text": "x", "empty": ""})"));
    EXPECT_EQ(pkgvet::mandatoryString(file.root, "text", "f"), "x");
    EXPECT_EQ(pkgvet::mandatoryString(file.root, "empty", "f"), "");
    EXPECT_EQ(thrownText([&] { pkgvet::mandatoryString(file.root, "other", "f"); }),
              "f: \"other\" is missing or not a string");
    EXPECT_EQ(thrownText([&] { pkgvet::mandatoryString(nullptr, "text", "f"); }),
              "f: \"text\" is missing or not a string");
}

}  // namespace
