// JSON files that the user writes, and what is wrong with them.
#include "cli/base/strict_json.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/support/base/temporary_directory.h"

namespace {

using namespace pkgvet::cli;
using nlohmann::json;
using testing::ElementsAre;
using testing::IsEmpty;

// "KEY|CAUSE" for each fault.
std::vector<std::string> textsOf(const std::vector<Fault>& faults) {
    std::vector<std::string> texts;
    for (const Fault& fault : faults) {
        texts.push_back(fault.key + "|" + fault.cause);
    }
    return texts;
}

struct Loaded {
    json root;
    std::vector<std::string> faults;
};

Loaded load(const std::string& content) {
    const TemporaryDirectory directory;
    std::vector<Fault> faults;
    JsonReader reader(directory.write("a.json", content), &faults);
    json root = reader.load();
    return {root, textsOf(faults)};
}

TEST(JsonReader, LoadsTheObjectThatTheFileIs) {
    const Loaded loaded = load(R"({"a": [1, "x"]})");
    EXPECT_EQ(loaded.root, json({{"a", {1, "x"}}}));
    EXPECT_THAT(loaded.faults, IsEmpty());
}

TEST(JsonReader, EverythingElseIsAFaultOfTheFile) {
    struct Case {
        const char* content;
        const char* fault;  // how it begins
    };
    const Case cases[] = {
        {"", "|parse error"},
        {"{", "|parse error"},
        {"{} x", "|parse error"},
        {R"({"a": "\c"})", "|parse error"},
        {R"({"a": 1,})", "|parse error"},
        {"[]", "|holds no JSON object"},
        {"null", "|holds no JSON object"},
        {"1", "|holds no JSON object"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.content);
        const Loaded loaded = load(test.content);
        EXPECT_TRUE(loaded.root.is_null());
        EXPECT_THAT(loaded.faults, ElementsAre(testing::StartsWith(test.fault)));
    }
}

TEST(JsonReader, FileThatCannotBeReadIsAFault) {
    const TemporaryDirectory directory;
    std::vector<Fault> faults;
    EXPECT_TRUE(JsonReader(directory / "missing", &faults).load().is_null());
    EXPECT_TRUE(JsonReader(directory.path(), &faults).load().is_null());
    EXPECT_THAT(textsOf(faults), ElementsAre("|No such file or directory", "|cannot be read"));
    EXPECT_EQ(faults[0].file, directory / "missing");
}

TEST(JsonReader, NamesUnknownMembersByTheirPlaces) {
    std::vector<Fault> faults;
    const JsonReader reader("f", &faults);
    const json object = {{"a", 1}, {"b", 2}, {"c", 3}};
    reader.refuseUnknown(object, "", {"b"});
    reader.refuseUnknown(object, "x[1]", {"a", "b"});
    reader.refuseUnknown(object, "", {"a", "b", "c", "d"});
    EXPECT_THAT(textsOf(faults), ElementsAre("a|is not a known key", "c|is not a known key",
                                             "x[1].c|is not a known key"));
}

TEST(JsonReader, ObjectsOfAnArrayComeWithTheirPlaces) {
    std::vector<Fault> faults;
    const JsonReader reader("f", &faults);
    const auto objects = reader.objects({{"list", {{{"a", 1}}, 2, {{"b", 3}}}}}, "", "list");
    ASSERT_EQ(objects.size(), 2U);
    EXPECT_EQ(objects[0].first, "list[0]");
    EXPECT_EQ(objects[1].first, "list[2]");
    EXPECT_EQ(objects[1].second, json({{"b", 3}}));
    EXPECT_THAT(textsOf(faults), ElementsAre("list[1]|is not an object"));
}

TEST(JsonReader, ObjectsOfWhatIsNotAnArrayAreNone) {
    std::vector<Fault> faults;
    const JsonReader reader("f", &faults);
    EXPECT_THAT(reader.objects({{"list", 1}}, "", "list"), IsEmpty());
    EXPECT_THAT(reader.objects({{"other", 1}}, "", "list"), IsEmpty());
    EXPECT_THAT(textsOf(faults), ElementsAre("list|is not an array", "list|is missing"));
}

TEST(JsonReader, TextIsAStringOrAFault) {
    std::vector<Fault> faults;
    const JsonReader reader("f", &faults);
    const json object = {{"a", "x"}, {"b", nullptr}};
    EXPECT_EQ(reader.text(object, "k", "a"), "x");
    EXPECT_EQ(reader.text(object, "k", "b"), "");
    EXPECT_EQ(reader.text(object, "", "c"), "");
    EXPECT_THAT(textsOf(faults), ElementsAre("k.b|is not a string", "c|is missing"));
}

}  // namespace
