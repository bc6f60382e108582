// Measuring how deep JSON nests.
#include "pkgvet/base/json_depth.h"

#include <gtest/gtest.h>
#include <json-glib/json-glib.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>

#include "pkgvet/base/json_file.h"

namespace {

using pkgvet::jsonDepth;

// What json-glib itself does with a text: whether it is valid, and how deep its parser recursed.
struct Parse {
    bool isValid = false;
    std::size_t depth = 0;
    std::size_t deepest = 0;
};

void enter(JsonParser* /*parser*/, gpointer data) {
    auto* parse = static_cast<Parse*>(data);
    parse->deepest = std::max(parse->deepest, ++parse->depth);
}

void leave(JsonParser* /*parser*/, gpointer /*value*/, gpointer data) {
    --static_cast<Parse*>(data)->depth;
}

Parse parse(const std::string& json) {
    Parse result;
    const pkgvet::JsonParserHandle parser(json_parser_new());
    for (const char* signal : {"array-start", "object-start"}) {
        g_signal_connect(parser.get(), signal, G_CALLBACK(enter), &result);
    }
    for (const char* signal : {"array-end", "object-end"}) {
        g_signal_connect(parser.get(), signal, G_CALLBACK(leave), &result);
    }
    result.isValid = json_parser_load_from_data(parser.get(), json.data(),
                                                static_cast<gssize>(json.size()), nullptr) != FALSE;
    return result;
}

void expectDepthOfParser(const std::string& json) {
    SCOPED_TRACE(json);
    const Parse parsed = parse(json);
    if (parsed.isValid) {
        EXPECT_EQ(jsonDepth(json), parsed.deepest);
    } else {
        EXPECT_GE(jsonDepth(json), parsed.deepest);
    }
}

TEST(JsonDepth, CountsWhatIsOpenAtOnce) {
    struct Case {
        const char* json;
        std::size_t depth;
    };
    const Case cases[] = {
        {"", 0},
        {"1", 0},
        {"[]", 1},
        {"{}", 1},
        {"[[], [], {}]", 2},
        {R"({"a": [{"b": 1}], "c": [[]]})", 3},
        {"[[[", 3},
        {"]]][", 1},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.json);
        EXPECT_EQ(jsonDepth(test.json), test.depth);
        expectDepthOfParser(test.json);
    }
}

TEST(JsonDepth, TextAndCommentsAreThoseOfTheScanner) {
    struct Case {
        const char* name;
        const char* json;
        std::size_t depth;
    };
    const Case cases[] = {
        {"brackets in text", R"(["[[", "]]", [1]])", 2},
        {"escaped quote", R"(["\"[", [1]])", 2},
        {"escaped backslash ends no escape", R"(["\\", [1]])", 2},
        {"single quotes", "['[', '\"', [1]]", 2},
        {"single quotes have no escapes", "['\\', [1]]", 2},
        {"comment", "/* [[ */ [1]", 1},
        {"comment over lines", "/* [[\n \" ' [ */ [1]", 1},
        {"quotes in a comment", "/* it's */ [[1]]", 2},
        {"comment in a list", "[1, /* ] */ [2]]", 2},
        {"a slash and a slash are a comment", "/[[/ [1]", 1},
        {"two slashes are a comment by themselves", "// [1]", 1},
        {"comment that the next slash ends", "/*/ [1]", 1},
        {"slash in text", R"(["/", [1], "/"])", 2},
        {"text over lines", "[\"\n[\", 1]", 1},
        {"short escape takes the quote behind it", R"(["\u1", [", 1])", 1},
        {"short escape takes one character only", R"(["\u12g[", [1]])", 2},
        {"escape without digits", R"(["\u", [1]])", 2},
        {"pair of surrogates", R"(["\ud83d\ude00", [1]])", 2},
        {"single surrogate takes the quote behind it", R"(["\ud800", [", 1])", 1},
        {"single surrogate takes the escape behind it", R"(["\ud800\"[", [1]])", 1},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        expectDepthOfParser(test.json);
        EXPECT_EQ(jsonDepth(test.json), parse(test.json).deepest);
    }
}

// Where another version of json-glib scans otherwise, this is what tells.
TEST(JsonDepth, AgreesWithTheParserOnGeneratedText) {
    constexpr std::array kPieces = {
        "[",  "[",      "]",      "]",    R"({"a":)", "}",    "1,", "1",        ",",    "\"",
        "'",  "\\",     "\\u",    "\\u1", "\\ud800",  "/",    "/",  "*",        "//",   "#",
        "\n", " ",      "a",      "-",    "0x",       "$",    "`",  "é",        "<!--", "-->",
        "(*", R"("x")", R"("[")", "'x'",  "\\\"",     "dc00", "{",  R"("\ud8)", "\\7",  "%"};
    std::mt19937 random(1);
    for (int i = 0; i < 30000 && !testing::Test::HasFailure(); ++i) {
        std::string json;
        for (std::size_t left = 1 + random() % 20; left > 0; --left) {
            json += kPieces[random() % kPieces.size()];
        }
        expectDepthOfParser(json);
    }
}

TEST(JsonDepth, AgreesWithTheParserOnGeneratedLists) {
    constexpr std::array kValues = {"1",
                                    R"("[")",
                                    "'['",
                                    "'\"'",
                                    "[[]]",
                                    R"({"k":[1]})",
                                    R"("\"]")",
                                    R"("\\")",
                                    R"("\ud800[")",
                                    R"("\ud800"[")",
                                    R"("\u1"[")",
                                    "'\\'",
                                    R"("\u12g[")",
                                    R"("\ud83d\ude00]")",
                                    R"("\ud8"[")",
                                    "/[/2",
                                    "/*[*/2",
                                    "//2",
                                    "/\n[/3",
                                    "\"\n[\"",
                                    "'/'",
                                    R"("/")",
                                    "/\"/1",
                                    "-/[/2",
                                    R"("\ud800\[")"};
    std::mt19937 random(1);
    int valid = 0;
    for (int i = 0; i < 10000 && !testing::Test::HasFailure(); ++i) {
        std::string json = "[";
        for (std::size_t left = 1 + random() % 20; left > 0; --left) {
            json.append(kValues[random() % kValues.size()]).append(",");
        }
        json += "0]";
        expectDepthOfParser(json);
        valid += parse(json).isValid ? 1 : 0;
    }
    EXPECT_GT(valid, 1000);
}

}  // namespace
