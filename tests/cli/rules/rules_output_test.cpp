// How rule trees are shown and compared.
#include "cli/rules/rules_output.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

namespace {

using namespace pkgvet::cli;

RuleSet sample() {
    return {
        {{"name", "regular", "profiles[0].name"},
         {"require_icons", "true", "profiles[0].require_icons"}},
        {{"paths", {{"/long/one", "/p.json", ""}, {"/b", "/q.json", ""}, {"/b", "/r.json", ""}}},
         {"permissions", {}}},
        {}};
}

std::string textOf(const RuleSet& rules) {
    std::ostringstream stream;
    writeRulesAsText(rules, stream);
    return stream.str();
}

std::string difference(const RuleSet& before, const RuleSet& after) {
    std::ostringstream stream;
    writeDifferencesAsText(compareRules(before, after), stream);
    return stream.str();
}

TEST(RulesOutput, CheckEndsWithTheNumbers) {
    std::ostringstream stream;
    writeRuleCheck({{"/a.json", "paths[1]", "is not a string"}, {"/b.json", "", "is gone"}},
                   {{"/c\033.json", "dirs.bin_dir", "does not end in a slash"}}, stream);
    EXPECT_EQ(stream.str(),
              "error: /a.json: \"paths[1]\" is not a string\n"
              "error: /b.json: is gone\n"
              "warning: /c\\x1b.json: \"dirs.bin_dir\" does not end in a slash\n"
              "2 errors, 1 warning\n");
}

TEST(RulesOutput, TextAlignsFilesAndShowsEachElementOnce) {
    EXPECT_EQ(textOf(sample()),
              "name: regular\nrequire_icons: true\n"
              "\npaths (2)\n  /long/one  /p.json\n  /b         /q.json\n"
              "\npermissions (0)\n");
}

TEST(RulesOutput, LongElementsDoNotPushTheOthersAside) {
    RuleSet rules;
    rules.lists = {{"paths", {{std::string(70, 'x'), "/p", ""}, {"a", "/p", ""}}}};
    EXPECT_EQ(textOf(rules), "\npaths (2)\n  " + std::string(70, 'x') + "  /p\n  a" +
                                 std::string(59, ' ') + "  /p\n");
}

TEST(RulesOutput, JsonHoldsValuesAndLists) {
    std::ostringstream stream;
    writeRulesAsJson(sample(), stream);
    EXPECT_EQ(nlohmann::json::parse(stream.str()), nlohmann::json::parse(R"({
        "schema_version": 1,
        "values": {"name": "regular", "require_icons": true},
        "lists": {"paths": [{"text": "/long/one", "file": "/p.json"},
                            {"text": "/b", "file": "/q.json"}],
                  "permissions": []}})"));
}

TEST(RulesOutput, DifferenceNamesWhatWentAndWhatCame) {
    RuleSet after = sample();
    after.scalars[1].value = "false";
    after.lists[0].elements[0].text = "/new";
    after.lists[1].elements = {{"Internet", "/x", ""}};
    EXPECT_EQ(difference(sample(), after),
              "require_icons\n  - true\n  + false\n"
              "paths\n  - /long/one\n  + /new\n"
              "permissions\n  + Internet\n");
}

TEST(RulesOutput, DifferenceAsJson) {
    RuleSet after = sample();
    after.lists[0].elements[0].text = "/new\xff";
    std::ostringstream stream;
    writeDifferencesAsJson(compareRules(sample(), after), stream);
    writeDifferencesAsJson({}, stream);
    std::istringstream written(stream.str());
    nlohmann::json first;
    nlohmann::json second;
    written >> first >> second;
    EXPECT_EQ(first, nlohmann::json::parse(R"({"schema_version": 1, "differences": {"paths":
        {"removed": ["/long/one"], "added": ["/new\ufffd"]}}})"));
    EXPECT_EQ(second, nlohmann::json::parse(R"({"schema_version": 1, "differences": {}})"));
}

TEST(RulesOutput, OrderRepeatsAndFilesMakeNoDifference) {
    RuleSet after = sample();
    after.lists[0].elements = {{"/b", "/elsewhere", ""}, {"/long/one", "/p.json", ""}};
    EXPECT_EQ(difference(sample(), after), "");
}

}  // namespace
