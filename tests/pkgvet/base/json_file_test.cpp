// Loading JSON files.
#include "pkgvet/base/json_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "tests/support/captured_log.h"
#include "tests/support/temporary_directory.h"

namespace {

using pkgvet::JsonFile;
using pkgvet::loadJsonFile;

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

bool hasRoot(const std::string& content) {
    const TemporaryDirectory directory;
    return loadJsonFile(directory.write("file.json", content)).root != nullptr;
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

TEST(JsonFile, WhatIsNoFileHasNoRootAndNoMessage) {
    const TemporaryDirectory directory;
    ASSERT_EQ(mkfifo((directory / "fifo").c_str(), 0600), 0);
    std::filesystem::create_symlink("/dev/zero", directory / "zero");
    const CapturedDescriptor standardError;
    for (const std::string& path : {directory / "missing", directory / "fifo", directory / "zero",
                                    directory.path().string(), std::string()}) {
        EXPECT_EQ(loadJsonFile(path).root, nullptr) << path;
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

TEST(JsonFile, NestingBeyondReasonIsRefused) {
    const std::size_t far = 200000;
    EXPECT_TRUE(hasRoot(nested(4000, "[", "]")));
    EXPECT_TRUE(hasRoot(nested(2000, R"({"x": [)", "]}")));
    EXPECT_FALSE(hasRoot(nested(far, "[", "]")));
    EXPECT_FALSE(hasRoot(nested(far, R"({"x": )", "}")));
    EXPECT_FALSE(hasRoot(std::string(far, '[')));
}

TEST(JsonFile, NestingCannotBeHiddenFromTheBound) {
    const std::size_t far = 200000;
    EXPECT_FALSE(hasRoot("/* \" */" + nested(far, "[", "]")));
    EXPECT_FALSE(hasRoot("// \"\n" + nested(far, "[", "]")));
    EXPECT_FALSE(hasRoot(nested(far, R"(["]]", )", "]")));
    EXPECT_FALSE(hasRoot(nested(far, R"(["\"]", )", "]")));
    EXPECT_FALSE(hasRoot(nested(far, "['\"', ", "]")));
    EXPECT_FALSE(hasRoot(nested(far, "[/* ]] */", "]")));
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
