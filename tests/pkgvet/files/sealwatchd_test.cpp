// The configuration of the file integrity service.
#include "pkgvet/files/sealwatchd.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "tests/support/captured_log.h"
#include "tests/support/temporary_directory.h"

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
        {"paths are no patterns", R"({"watch": ["axb"]})", kMismatch},
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
        {"capitals are no prefix", R"({"watch": ["FILE:/usr/bin/app"]})", kMismatch},
    });
}

TEST(Sealwatchd, WhatIsNoJsonIsInvalid) {
    expectResults({
        {"a brace", "{", kInvalidJson},
        {"text", "watch", kInvalidJson},
        {"text behind it", R"({"watch": []} x)", kInvalidJson},
        {"no UTF-8", "{\"watch\": [\"\xFF\"]}", kInvalidJson},
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

// json-glib loads such files without complaint, an empty one even without a root.
TEST(Sealwatchd, RootThatIsNoObjectIsInvalid) {
    expectResults({
        {"an empty file", "", kInvalidJson},
        {"blanks", " \n", kInvalidJson},
        {"an array", "[]", kInvalidJson},
        {"a number", "1", kInvalidJson},
        {"null", "null", kInvalidJson},
    });
}

// json-glib answers a missing array with one that is empty.
TEST(Sealwatchd, OtherShapesWatchNothing) {
    expectResults({
        {"no such member", "{}", kValid},
        {"null for the array", R"({"watch": null})", kValid},
        {"a text for the array", R"({"watch": "/x"})", kValid},
        {"an object for the array", R"({"watch": {}})", kValid},
    });
}

TEST(Sealwatchd, ElementsThatAreNoTextNameNoFile) {
    expectResults({
        {"null", R"({"watch": [null]})", kMismatch},
        {"a number", R"({"watch": [1]})", kMismatch},
        {"true", R"({"watch": [true]})", kMismatch},
        {"an array", R"({"watch": [["/usr/bin/app"]]})", kMismatch},
        {"an object", R"({"watch": [{}]})", kMismatch},
        {"behind a right one", R"({"watch": ["/usr/bin/app", null]})", kMismatch},
    });
}

TEST(Sealwatchd, WhatIsNoRegularFileIsInvalid) {
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
