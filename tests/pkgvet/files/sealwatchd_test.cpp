// The configuration of the file integrity service.
#include "pkgvet/files/sealwatchd.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <stdexcept>

#include "tests/support/base/captured_log.h"
#include "tests/support/base/temporary_directory.h"

namespace {

using pkgvet::checkSealwatchdFile;
using pkgvet::SealwatchdResult;

const std::vector<std::string> kPaths = {"/usr/bin/app", "elf:/x", "file:", "elf", "a.b", ""};

constexpr SealwatchdResult kValid = SealwatchdResult::Valid;
constexpr SealwatchdResult kInvalidJson = SealwatchdResult::InvalidJson;
constexpr SealwatchdResult kMismatch = SealwatchdResult::Mismatch;

struct Case {
    const char* name;
    std::string content;
    SealwatchdResult result;
};

void expectResults(const std::vector<Case>& cases) {
    const TemporaryDirectory directory;
    const CapturedDescriptor descriptor;
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        const std::string file = directory.write("app.json", test.content);
        EXPECT_EQ(checkSealwatchdFile(file, kPaths), test.result);
    }
    EXPECT_EQ(descriptor.text(), "");
}

TEST(Sealwatchd, EachEntryIsAPathOfThePackage) {
    expectResults({
        {"nothing to watch", R"({"watch": []})", kValid},
        {"a path", R"({"watch": ["/usr/bin/app"]})", kValid},
        {"a file", R"({"watch": ["file:/usr/bin/app"]})", kValid},
        {"a binary", R"({"watch": ["elf:/usr/bin/app"]})", kValid},
        {"all of them", R"({"watch": ["/usr/bin/app", "file:/usr/bin/app"]})", kValid},
        {"another path", R"({"watch": ["file:/usr/bin/other"]})", kMismatch},
        {"the last is wrong", R"({"watch": ["/usr/bin/app", "/usr/bin/other"]})", kMismatch},
        {"part of a path", R"({"watch": ["/usr/bin"]})", kMismatch},
        {"paths are not patterns", R"({"watch": ["axb"]})", kMismatch},
        {"other members play no part", R"({"a": 1, "watch": ["a.b"], "b": {}})", kValid},
    });
}

TEST(Sealwatchd, OnePrefixIsDropped) {
    expectResults({
        {"file in front of elf", R"({"watch": ["file:elf:/x"]})", kValid},
        {"elf in front of elf", R"({"watch": ["elf:elf:/x"]})", kValid},
        {"file in front of file", R"({"watch": ["file:file:"]})", kValid},
        {"elf in front of file", R"({"watch": ["elf:file:/usr/bin/app"]})", kMismatch},
        {"elf goes alone as well", R"({"watch": ["elf:/x"]})", kMismatch},
        {"a prefix alone is the empty path", R"({"watch": ["file:", "elf:"]})", kValid},
        {"too short for a prefix", R"({"watch": ["elf"]})", kValid},
        {"the empty text", R"({"watch": [""]})", kValid},
        {"capitals are not a prefix", R"({"watch": ["FILE:/usr/bin/app"]})", kMismatch},
    });
}

TEST(Sealwatchd, WhatIsNotJsonIsInvalid) {
    expectResults({
        {"a brace", "{", kInvalidJson},
        {"text", "watch", kInvalidJson},
        {"text behind it", R"({"watch": []} x)", kInvalidJson},
        {"not UTF-8", "{\"watch\": [\"\xFF\"]}", kInvalidJson},
        {"a NUL byte", std::string("{\"watch\": []}\0", 14), kInvalidJson},
        {"nested beyond measure", std::string(1000000, '['), kInvalidJson},
        {"objects nested beyond measure",
         [] {
             std::string text;
             for (int i = 0; i < 100000; ++i) {
                 text += "{\"a\":";
             }
             return text;
         }(),
         kInvalidJson},
    });
}

// json-glib loads such files, an empty one even without a root, and answers a question to the wrong
// type with nothing and a critical message.
TEST(Sealwatchd, OtherShapesWatchNothing) {
    struct Shape {
        const char* name;
        const char* content;
        const char* complaint;
    };
    constexpr const char* kRoot = "json_node_get_object: assertion";
    constexpr const char* kMember = "json_object_get_array_member: assertion";
    const Shape shapes[] = {
        {"an empty file", "", kRoot},
        {"blanks", " \n", kRoot},
        {"an array", "[]", kRoot},
        {"an array that looks right", R"(["/missing"])", kRoot},
        {"a text", R"("x")", kRoot},
        {"a number", "1", kRoot},
        {"null", "null", kMember},
        {"no such member", "{}", kMember},
        {"null for the array", R"({"watch": null})", "json_array_get_length: assertion"},
        {"a text for the array", R"({"watch": "/x"})", kMember},
        {"an object for the array", R"({"watch": {}})", kMember},
    };
    const TemporaryDirectory directory;
    for (const Shape& shape : shapes) {
        SCOPED_TRACE(shape.name);
        const std::string file = directory.write("app.json", shape.content);
        const CapturedDescriptor descriptor;
        EXPECT_EQ(checkSealwatchdFile(file, kPaths), kValid);
        EXPECT_THAT(descriptor.text(), testing::HasSubstr(shape.complaint));
    }
}

TEST(Sealwatchd, ElementsThatAreNotTextThrow) {
    const TemporaryDirectory directory;
    for (const char* element : {"null", "1", "true", R"(["/usr/bin/app"])", "{}"}) {
        SCOPED_TRACE(element);
        const std::string content = std::string(R"({"watch": ["/usr/bin/app", )") + element + "]}";
        const std::string file = directory.write("app.json", content);
        const CapturedDescriptor descriptor;
        EXPECT_THAT([&] { checkSealwatchdFile(file, kPaths); },
                    testing::ThrowsMessage<std::logic_error>(
                        "basic_string: construction from null is not valid"));
    }
}

TEST(Sealwatchd, NothingIsLookedAtBehindTheFirstMismatch) {
    expectResults({{"null", R"({"watch": ["/usr/bin/other", null]})", kMismatch}});
}

TEST(Sealwatchd, WhatIsNotARegularFileIsInvalid) {
    const TemporaryDirectory directory;
    ASSERT_EQ(mkfifo((directory / "fifo").c_str(), 0600), 0);
    for (const std::string& path : {directory / "missing", std::string(directory.path()),
                                    directory / "fifo", std::string("/dev/zero")}) {
        EXPECT_EQ(checkSealwatchdFile(path, kPaths), kInvalidJson) << path;
    }
}

TEST(Sealwatchd, HasNoLargestSize) {
    const TemporaryDirectory directory;
    const std::string blanks(17 * 1024 * 1024, ' ');
    const std::string file = directory.write("app.json", blanks + R"({"watch": []})");
    EXPECT_EQ(checkSealwatchdFile(file, kPaths), kValid);
}

}  // namespace
