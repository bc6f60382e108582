// Where the values of a file of records begin and end.
#include "cli/records/record_scanner.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/support/base/temporary_directory.h"

namespace {

using namespace pkgvet::cli;

std::string textOf(const RecordPiece& piece) {
    const std::string place =
        std::to_string(piece.position.line) + ":" + std::to_string(piece.position.column);
    switch (piece.kind) {
        case RecordPiece::Kind::Member:
            return place + " " + piece.key + "=" + piece.text;
        case RecordPiece::Kind::Element:
            return place + " - " + piece.text;
        case RecordPiece::Kind::ObjectEnd:
            return "object end";
        case RecordPiece::Kind::End:
            return "end";
        case RecordPiece::Kind::Torn:
            break;
    }
    return "torn";
}

// All pieces, or what is wrong in place of the last one.
std::string scanned(const std::string& content) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("file", content);
    RecordScanner scanner(path, "list");
    std::string all;
    try {
        while (true) {
            const RecordPiece piece = scanner.next();
            all += textOf(piece) + "; ";
            if (piece.kind == RecordPiece::Kind::End || piece.kind == RecordPiece::Kind::Torn) {
                return all + std::to_string(scanner.wholeSize());
            }
        }
    } catch (const std::runtime_error& error) {
        return all + std::string(error.what()).substr(path.size());
    }
}

TEST(RecordScanner, FindsMembersElementsAndObjects) {
    struct Case {
        const char* name;
        std::string content;
        std::string pieces;
    };
    const Case cases[] = {
        {"nothing", "", "end; 0"},
        {"blanks", " \n\t", "end; 0"},
        {"an empty object", "{}", "object end; end; 2"},
        {"members", R"({"a": 1, "b":"x"})", "1:7 a=1; 1:14 b=\"x\"; object end; end; 17"},
        {"lines", "{\"a\":1}\n{\"b\":[2]}\n",
         "1:6 a=1; object end; 2:6 b=[2]; object end; end; 18"},
        {"records", "{\"list\": [{\"x\": 1},\n {}], \"b\": null}",
         "1:11 - {\"x\": 1}; 2:2 - {}; 2:12 b=null; object end; end; 36"},
        {"no records", R"({"list": []})", "object end; end; 12"},
        {"a list that is not one", R"({"list": 1})", "1:10 list=1; object end; end; 11"},
        {"brackets and quotes in texts", R"({"a":"]}\"{","b":{"c":"}"}})",
         R"(1:6 a="]}\"{"; 1:18 b={"c":"}"}; object end; end; 27)"},
        {"columns count characters", "{\"\u00e4\u00e4\":1}",
         "1:7 \u00e4\u00e4=1; object end; end; 10"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        EXPECT_EQ(scanned(test.content), test.pieces);
    }
}

TEST(RecordScanner, FileThatEndsAnywhereInAnObjectIsTorn) {
    const std::string whole = "{\"a\": 1}\n";
    const std::string last = R"({"a": "x\"", "list": [{"b": [1, 2]}, {}], "c": 12})";
    EXPECT_EQ(scanned(whole + last).find("torn"), std::string::npos);
    for (std::size_t size = 1; size < last.size(); ++size) {
        SCOPED_TRACE(size);
        const std::string pieces = scanned(whole + last.substr(0, size));
        EXPECT_TRUE(pieces.ends_with("torn; " + std::to_string(whole.size()))) << pieces;
    }
}

TEST(RecordScanner, WhatIsOutOfPlaceIsAnErrorWithItsPlace) {
    struct Case {
        const char* name;
        std::string content;
        std::string error;
    };
    const Case cases[] = {
        {"another value", "[]", ":1:1: an object should stand here"},
        {"text behind the end", "{} x", "object end; :1:4: an object should stand here"},
        {"a key without quotes", "{\n a: 1}", ":2:2: a key should stand here"},
        {"no colon", R"({"a" 1})", ":1:7: a colon should stand here"},
        {"no value", R"({"a": })", ":1:7: a value should stand here"},
        {"no comma", R"({"a": 1 "b": 2})",
         "1:7 a=1; :1:9: a comma or the end of the object should stand here"},
        {"no comma in records", R"({"list": [{} {}]})",
         "1:11 - {}; :1:14: a comma or the end of the array should stand here"},
        {"too deep", "{\"a\": " + std::string(70, '['), ":1:71: is nested too deeply"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        EXPECT_EQ(scanned(test.content), test.error);
    }
}

TEST(RecordScanner, FileThatCannotBeReadIsAnError) {
    const TemporaryDirectory directory;
    EXPECT_THROW(RecordScanner(directory / "missing", "list"), std::runtime_error);
    EXPECT_THROW(RecordScanner(directory / ".", "list"), std::runtime_error);
}

TEST(RecordScanner, LargeFilesGoThroughPieceByPiece) {
    const TemporaryDirectory directory;
    std::string content = "{\"list\": [";
    const std::string element = "{\"x\": \"" + std::string(100'000, 'y') + "\"}";
    for (int i = 0; i < 10; ++i) {
        content += (i == 0 ? "" : ", ") + element;
    }
    RecordScanner scanner(directory.write("file", content + "]}"), "list");
    for (int i = 0; i < 10; ++i) {
        const RecordPiece piece = scanner.next();
        EXPECT_TRUE(piece.text == element);
        EXPECT_TRUE(scanner.textAt(piece.offset, piece.text.size()) == element);
    }
    EXPECT_EQ(scanner.next().kind, RecordPiece::Kind::ObjectEnd);
}

}  // namespace
