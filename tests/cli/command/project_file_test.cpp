// Project files: where they are found, when they may be used and what they say.
#include "cli/command/project_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "tests/support/base/temporary_directory.h"

namespace {

using namespace pkgvet::cli;
using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

constexpr const char* kName = ".pkgvet.json";

std::vector<std::string> faultsOf(const std::string& content) {
    const TemporaryDirectory directory;
    std::vector<Fault> faults;
    const std::string path = directory.write(kName, content);
    readProjectFile(path, &faults);
    std::vector<std::string> lines;
    for (const Fault& fault : faults) {
        lines.push_back(describe(fault).substr(directory.path().native().size() + 1));
    }
    return lines;
}

TEST(ProjectFile, NearestOneIsFound) {
    const TemporaryDirectory root;
    fs::create_directories(root / "a/b/c");
    const std::string upper = root.write(kName, "{}");
    EXPECT_EQ(findProjectFile(root / "a/b/c").path, upper);
    EXPECT_EQ(findProjectFile(root.path()).path, upper);
    const std::string lower = root.write("a/b/.pkgvet.json", "{}");
    EXPECT_EQ(findProjectFile(root / "a/b/c").path, lower);
    EXPECT_EQ(findProjectFile(root / "a/b/c").refusal, "");
    EXPECT_EQ(findProjectFile(root / "a").path, upper);
}

TEST(ProjectFile, SearchEndsWithTheFileSystem) {
    EXPECT_EQ(findProjectFile("/").path, "");
    EXPECT_EQ(findProjectFile("/proc/self").path, "");
}

TEST(ProjectFile, WhatOthersCanChangeIsNotUsed) {
    const TemporaryDirectory root;
    const std::string path = root.write("a/.pkgvet.json", "{}");
    ASSERT_EQ(chmod((root / "a").c_str(), 0777 | S_ISVTX), 0);
    const FoundProjectFile found = findProjectFile(root / "a");
    EXPECT_EQ(found.path, path);
    EXPECT_EQ(found.refusal, "its directory can be written to by every user");
    ASSERT_EQ(chmod((root / "a").c_str(), 0755), 0);
    ASSERT_EQ(chmod(path.c_str(), 0666), 0);
    EXPECT_EQ(findProjectFile(root / "a").refusal, "it can be written to by every user");
    ASSERT_EQ(chmod(path.c_str(), 0664), 0);
    EXPECT_EQ(findProjectFile(root / "a").refusal, "");
}

// A refused one hides those above it, which are not meant for this directory.
TEST(ProjectFile, WhatBelongsToOthersIsNotUsed) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only the superuser can give files away";
    }
    constexpr uid_t kOther = 65534;
    const TemporaryDirectory root;
    root.write(kName, "{}");
    const std::string path = root.write("a/.pkgvet.json", "{}");
    ASSERT_EQ(chown(path.c_str(), kOther, kOther), 0);
    EXPECT_EQ(findProjectFile(root / "a").refusal, "it belongs to another user");
    EXPECT_EQ(findProjectFile(root / "a").path, path);
    ASSERT_EQ(chown((root / "a").c_str(), kOther, kOther), 0);
    EXPECT_EQ(findProjectFile(root / "a").refusal, "its directory belongs to another user");
}

TEST(ProjectFile, WhatIsNotAFileIsNotUsed) {
    const TemporaryDirectory root;
    fs::create_directory(root / kName);
    EXPECT_EQ(findProjectFile(root.path()).refusal, "it is not a regular file");
    fs::remove(root / kName);
    ASSERT_EQ(mkfifo((root / kName).c_str(), 0600), 0);
    EXPECT_EQ(findProjectFile(root.path()).refusal, "it is not a regular file");
    fs::remove(root / kName);
    fs::create_symlink("nowhere", root / kName);
    EXPECT_EQ(findProjectFile(root.path()).refusal, "No such file or directory");
}

TEST(ProjectFile, PathsStartAtIt) {
    const TemporaryDirectory root;
    std::vector<Fault> faults;
    const ProjectFile project = readProjectFile(
        root.write(kName,
                   "{\"profile\": [\"mdm\", \"auth\", \"mdm\"],\n"
                   " \"rules\": \"ci/rules.json\", \"waivers\": [\"w.json\", \"/v.json\"],\n"
                   " \"baseline\": \"./ci/../known.json\", \"fail-on\": \"warning\"}"),
        &faults);
    EXPECT_THAT(faults, IsEmpty());
    EXPECT_THAT(project.profiles, ElementsAre(Profiles::Mdm, Profiles::Auth));
    EXPECT_EQ(project.rules, root / "ci/rules.json");
    EXPECT_THAT(project.waivers, ElementsAre(root / "w.json", "/v.json"));
    EXPECT_EQ(project.baseline, root / "known.json");
    EXPECT_EQ(project.failOn, Severity::Warning);
    EXPECT_EQ(project.positions.at("fail-on").line, 3U);
}

TEST(ProjectFile, OneWordWillDoForAList) {
    const TemporaryDirectory root;
    std::vector<Fault> faults;
    const ProjectFile project =
        readProjectFile(root.write(kName, R"({"profile": "all", "waivers": "w.json"})"), &faults);
    EXPECT_THAT(faults, IsEmpty());
    EXPECT_EQ(project.profiles.size(), 6U);
    EXPECT_THAT(project.waivers, ElementsAre(root / "w.json"));
    EXPECT_EQ(project.rules, "");
    EXPECT_EQ(project.failOn, std::nullopt);
}

TEST(ProjectFile, EverythingThatIsWrongIsTold) {
    EXPECT_THAT(
        faultsOf("{\"profle\": 1, \"profile\": [\"mdn\", 7],\n"
                 " \"rules\": \"\", \"waivers\": {}, \"baseline\": null, \"fail-on\": \"info\"}"),
        ElementsAre(".pkgvet.json:1:2: \"profle\" is not a known key: did you mean profile?",
                    ".pkgvet.json:1:34: 7 is not a string",
                    ".pkgvet.json:1:27: \"mdn\" is not a profile: did you mean mdm?",
                    ".pkgvet.json:2:11: \"\" says nothing",
                    ".pkgvet.json:2:26: \"waivers\" is not a string",
                    ".pkgvet.json:2:42: null is not a string",
                    ".pkgvet.json:2:59: \"info\" is neither error nor warning"));
    EXPECT_THAT(faultsOf("[]"), ElementsAre(".pkgvet.json:1:1: holds no JSON object"));
    EXPECT_THAT(faultsOf("{\"rules\": \"a\", \"rules\": \"b\"}"),
                ElementsAre(".pkgvet.json:1:16: \"rules\" stands there twice"));
}

}  // namespace
