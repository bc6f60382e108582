// Loading JSON files.
#include "pkgvet/base/json_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdint>
#include <filesystem>
#include <system_error>

#include "tests/support/base/captured_log.h"
#include "tests/support/base/temporary_directory.h"

namespace {

using pkgvet::JsonFile;
using pkgvet::JsonOutcome;
using pkgvet::loadJsonFile;

constexpr std::size_t kFar = 200000;

// Nests depth times within one object.
std::string nested(std::size_t depth, const std::string& begin, const std::string& end) {
    std::string text = R"({"a": )";
    for (std::size_t i = 0; i < depth; ++i) {
        text += begin;
    }
    text += "1";
    for (std::size_t i = 0; i < depth; ++i) {
        text += end;
    }
    return text + "}";
}

JsonFile load(const std::string& content) {
    const TemporaryDirectory directory;
    return loadJsonFile(directory.write("file.json", content));
}

bool hasRoot(const std::string& content) {
    return load(content).root != nullptr;
}

// The rest is json-glib's, so only what it was given is compared.
std::size_t lengthOf(const JsonFile& file, const char* key) {
    return json_array_get_length(json_object_get_array_member(file.root, key));
}

TEST(JsonFile, RootIsTheObjectOfTheFile) {
    const TemporaryDirectory directory;
    const JsonFile file = loadJsonFile(directory.write("file.json", R"({"key": "värde"})"));
    ASSERT_NE(file.root, nullptr);
    EXPECT_STREQ(json_object_get_string_member(file.root, "key"), "värde");
}

TEST(JsonFile, WhatIsNoObjectHasNoRootAndNoMessage) {
    const CapturedDescriptor standardError;
    for (const char* content :
         {"", " \n\t", "[]", "1", "\"text\"", "null", "true", "{", "{]", "{\"a\": \"\xFF\"}", "x",
          "{\"a\": 1} x", "[{}]", "{\"a\": \"", "{\"a\": \"\\", "/*"}) {
        EXPECT_FALSE(hasRoot(content)) << content;
    }
    EXPECT_EQ(standardError.text(), "");
}

TEST(JsonFile, TellsWhatBecameOfTheFile) {
    struct Case {
        const char* name;
        std::string content;
        JsonOutcome outcome;
        bool hasNode;
        bool hasRoot;
    };
    const Case cases[] = {
        {"object", R"({"a": 1})", JsonOutcome::Loaded, true, true},
        {"array", "[]", JsonOutcome::Loaded, true, false},
        {"text", R"("x")", JsonOutcome::Loaded, true, false},
        {"null", "null", JsonOutcome::Loaded, true, false},
        {"empty", "", JsonOutcome::Loaded, false, false},
        {"blank", " \n\t", JsonOutcome::Loaded, false, false},
        {"not JSON", "{", JsonOutcome::Unreadable, false, false},
        {"NUL at the end", std::string("{}\0", 3), JsonOutcome::Unreadable, false, false},
        {"not UTF-8", "{\"a\": \"\xFF\"}", JsonOutcome::Unreadable, false, false},
        {"too deep", nested(kFar, "[", "]"), JsonOutcome::TooDeep, false, false},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        const JsonFile file = load(test.content);
        EXPECT_EQ(file.outcome, test.outcome);
        EXPECT_EQ(file.node != nullptr, test.hasNode);
        EXPECT_EQ(file.root != nullptr, test.hasRoot);
    }
}

TEST(JsonFile, WhatIsNoFileHasNoRootAndNoMessage) {
    const TemporaryDirectory directory;
    ASSERT_EQ(mkfifo((directory / "fifo").c_str(), 0600), 0);
    std::filesystem::create_symlink("/dev/zero", directory / "zero");
    const CapturedDescriptor standardError;
    for (const std::string& path : {directory / "missing", directory / "fifo", directory / "zero",
                                    directory.path().string(), std::string()}) {
        EXPECT_EQ(loadJsonFile(path).root, nullptr) << path;
        EXPECT_EQ(loadJsonFile(path).outcome, JsonOutcome::Unreadable) << path;
    }
    EXPECT_EQ(standardError.text(), "");
}

TEST(JsonFile, LinkIsFollowed) {
    const TemporaryDirectory directory;
    directory.write("file.json", "{}");
    std::filesystem::create_symlink("file.json", directory / "link");
    EXPECT_NE(loadJsonFile(directory / "link").root, nullptr);
}

TEST(JsonFile, CommentsAndSingleQuotesAreTaken) {
    EXPECT_TRUE(hasRoot("{ /* \" ] */ \"a\": [1] }"));
    EXPECT_TRUE(hasRoot("{'a': ['[']}"));
}

// Objects take more of the stack than arrays.
TEST(JsonFile, NestsAsDeepAsTheStackAllowsAndNoDeeper) {
    const std::size_t below = pkgvet::kMaxJsonDepth - 1;  // the outermost object counts
    EXPECT_EQ(load(nested(below, R"({"x": )", "}")).outcome, JsonOutcome::Loaded);
    EXPECT_EQ(load(nested(below, "[", "]")).outcome, JsonOutcome::Loaded);
    EXPECT_EQ(load(nested(below + 1, R"({"x": )", "}")).outcome, JsonOutcome::TooDeep);
    EXPECT_EQ(load(nested(below + 1, "[", "]")).outcome, JsonOutcome::TooDeep);
    EXPECT_EQ(load(std::string(kFar, '[')).outcome, JsonOutcome::TooDeep);
}

// A rule file may begin with a comment, and its patterns may hold quotes and brackets.
TEST(JsonFile, BracketsBehindACommentAreNoNesting) {
    for (const std::string start : {"/* it's \" [ a comment */", "/* [ */", ""}) {
        SCOPED_TRACE(start);
        std::string list = start + R"({'a"[': ['it"s [', [1])";
        for (std::size_t i = 0; i < kFar; ++i) {
            list += ", []";
        }
        const JsonFile file = load(list + R"(], "b": []})");
        EXPECT_EQ(file.outcome, JsonOutcome::Loaded);
        ASSERT_NE(file.root, nullptr);
        EXPECT_EQ(lengthOf(file, "a\"["), kFar + 2);
    }
}

TEST(JsonFile, HasNoLargestSize) {
    const std::string pattern(1023, 'x');
    std::string list = R"({"a": [")" + pattern;
    constexpr std::size_t kPatterns = 17 * 1024;
    for (std::size_t i = 1; i < kPatterns; ++i) {
        list.append("\",\"").append(pattern);
    }
    const JsonFile file = load(list + "\"]}");
    ASSERT_NE(file.root, nullptr);
    EXPECT_EQ(lengthOf(file, "a"), kPatterns);
}

// A package may link to a sparse file, which states any size for nothing.
TEST(JsonFile, ASparseFileIsNotReadToItsEnd) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("file.json", "{}");
    std::error_code error;
    std::filesystem::resize_file(path, std::uint64_t{1} << 43, error);
    if (error) {
        GTEST_SKIP() << "the file system has no such files";
    }
    EXPECT_EQ(loadJsonFile(path).outcome, JsonOutcome::Unreadable);
}

TEST(JsonFile, NestingCannotBeHiddenFromTheBound) {
    EXPECT_FALSE(hasRoot("/* \" */" + nested(kFar, "[", "]")));
    EXPECT_FALSE(hasRoot("// \"\n" + nested(kFar, "[", "]")));
    EXPECT_FALSE(hasRoot(nested(kFar, R"(["]]", )", "]")));
    EXPECT_FALSE(hasRoot(nested(kFar, R"(["\"]", )", "]")));
    EXPECT_FALSE(hasRoot(nested(kFar, "['\"', ", "]")));
    EXPECT_FALSE(hasRoot(nested(kFar, "[/* ]] */", "]")));
}

TEST(JsonFile, BracketsInTextAreNoNesting) {
    EXPECT_TRUE(hasRoot(R"({"a": ")" + std::string(100000, '[') + R"("})"));
    std::string list = R"({"a": ["x")";
    for (int i = 0; i < 20000; ++i) {
        list += R"(, "lib[a-z]{1}\\\"[")";
    }
    EXPECT_TRUE(hasRoot(list + "]}"));
    std::string pairs = R"({"a": [[])";
    for (int i = 0; i < 20000; ++i) {
        pairs += ", []";
    }
    EXPECT_TRUE(hasRoot(pairs + "]}"));
}

}  // namespace
