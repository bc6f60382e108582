// Where the values of a JSON text stand.
#include "cli/base/json_positions.h"

#include <gtest/gtest.h>

namespace {

using pkgvet::cli::JsonPositions;
using pkgvet::cli::JsonSpot;
using pkgvet::cli::Position;

std::string text(const Position& position) {
    return std::to_string(position.line) + ":" + std::to_string(position.column);
}

TEST(JsonPositions, EachValueHasItsPlaceItsKeyAndItsText) {
    const JsonPositions positions(
        "{\n"
        "  \"a\": [1, \"é\", \"x\\\"y\", {\"b\": true}],\n"
        "\t\"c\\u0064\":null,\n"
        "  \"e\": {}\n"
        "}\n");
    struct Case {
        const char* place;
        const char* key;
        const char* value;
        const char* text;
    };
    const Case cases[] = {
        {"", "1:1", "1:1", ""},
        {"a", "2:3", "2:8", ""},
        {"a[0]", "2:9", "2:9", "1"},
        {"a[1]", "2:12", "2:12", "\"é\""},
        {"a[2]", "2:17", "2:17", "\"x\\\"y\""},
        {"a[3]", "2:25", "2:25", ""},
        {"a[3].b", "2:26", "2:31", "true"},
        {"cd", "3:2", "3:12", "null"},
        {"e", "4:3", "4:8", ""},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.place);
        const JsonSpot* spot = positions.find(test.place);
        ASSERT_NE(spot, nullptr);
        EXPECT_EQ(text(spot->key), test.key);
        EXPECT_EQ(text(spot->value), test.value);
        EXPECT_EQ(spot->text, test.text);
    }
    EXPECT_EQ(positions.find("a[4]"), nullptr);
}

TEST(JsonPositions, WhatIsMissingIsWhereItShouldBe) {
    const JsonPositions positions("{\"a\": [\n{}]}");
    EXPECT_EQ(text(positions.nearest("a[0].b")), "2:1");
    EXPECT_EQ(text(positions.nearest("a[7].b")), "1:7");
    EXPECT_EQ(text(positions.nearest("b")), "1:1");
    EXPECT_EQ(text(JsonPositions().nearest("a.b")), "0:0");
}

TEST(JsonPositions, KeysThatStandTwiceAreTold) {
    const JsonPositions positions("{\"a\": 1, \"b\": {\"a\": 1},\n\"a\": 2}");
    ASSERT_EQ(positions.doubledKeys().size(), 1U);
    EXPECT_EQ(positions.doubledKeys()[0].place, "a");
    EXPECT_EQ(text(positions.doubledKeys()[0].position), "2:1");
    EXPECT_TRUE(JsonPositions("[{\"a\": 1}, {\"a\": 1}]").doubledKeys().empty());
}

TEST(JsonPositions, CommentsAndSingleQuotesArePassedOver) {
    const JsonPositions positions("/* {\n */ {'a': // \"x\"\n 'b'}");
    ASSERT_NE(positions.find("a"), nullptr);
    EXPECT_EQ(text(positions.find("a")->value), "3:2");
}

// Each ends, and none reads beyond its end.
TEST(JsonPositions, AnyBytesCanBeScanned) {
    for (const std::string content :
         {"", "{", "\"", "'\\", "]]}}", "{\"a", "{,,,", ":", "/", "/*", "//", "[\xff\xfe", "\\"}) {
        const JsonPositions positions(content);
        EXPECT_EQ(positions.find("nowhere"), nullptr);
    }
    const std::string deep(100'000, '[');
    EXPECT_EQ(text(JsonPositions(deep).nearest("[0][0]")), "1:3");
}

TEST(JsonPositions, EscapesThatJsonDoesNotKnowAreTold) {
    const JsonPositions positions(
        "{\"a\": [\"\\\\.\\n\\u0041\\/\",\n \"lib\\.so\\.1\"], 'b\\d': 1, \"c\": \"\\");
    ASSERT_EQ(positions.wrongEscapes().size(), 2U);
    EXPECT_EQ(positions.wrongEscapes()[0].place, "a[1]");
    EXPECT_EQ(positions.wrongEscapes()[0].text, "\\.");
    EXPECT_EQ(text(positions.wrongEscapes()[0].position), "2:2");
    EXPECT_EQ(positions.wrongEscapes()[1].text, "\\d");
    EXPECT_TRUE(JsonPositions("\"no escape\"").wrongEscapes().empty());
}

}  // namespace
