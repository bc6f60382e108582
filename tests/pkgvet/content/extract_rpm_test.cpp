// Unpacking the payload of a package.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include "pkgvet/content/content_validator.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/base/child_process.h"
#include "tests/support/base/extracted_trees.h"
#include "tests/support/package/package_builder.h"

namespace {

namespace fs = std::filesystem;

// Goes into a directory and back.
class WorkingDirectory {
public:
    explicit WorkingDirectory(const fs::path& directory) : former_(fs::current_path()) {
        fs::current_path(directory);
    }
    WorkingDirectory(const WorkingDirectory&) = delete;
    WorkingDirectory(WorkingDirectory&&) = delete;
    WorkingDirectory& operator=(const WorkingDirectory&) = delete;
    WorkingDirectory& operator=(WorkingDirectory&&) = delete;
    ~WorkingDirectory() { fs::current_path(former_); }

private:
    fs::path former_;
};

std::string samplePackage(const TemporaryDirectory& directory) {
    return PackageBuilder("org.example.app")
        .file("/usr/share/data", "content", "0640")
        .link("/usr/share/link", "data")
        .directory("/usr/share/empty", "0700")
        .ghost("/usr/share/ghost")
        .build(directory);
}

// Unpacks path into directory.
int extracted(const std::string& path, const std::string& directory) {
    const CapturedDescriptor standardError;
    return ContentValidator(std::string()).extractRpm(directory.c_str(), path.c_str());
}

bool constructs(const std::string& path) {
    const CapturedDescriptor standardError;
    return ContentValidator(path).extracted();
}

TEST(ExtractRpm, WritesThePayloadBelowTheDirectory) {
    const TemporaryDirectory source;
    const TemporaryDirectory target;
    EXPECT_EQ(extracted(samplePackage(source), target.path()), 0);
    EXPECT_EQ(readFile(target / "usr/share/data"), "content");
    EXPECT_EQ(fs::read_symlink(target / "usr/share/link"), "data");
    EXPECT_TRUE(fs::is_directory(target / "usr/share/empty"));
    EXPECT_FALSE(fs::exists(target / "usr/share/ghost"));
    EXPECT_EQ(fs::status(target / "usr/share/data").permissions(), static_cast<fs::perms>(0640));
}

TEST(ExtractRpm, PackageWithoutFilesIsUnpackedToNothing) {
    const TemporaryDirectory source;
    const TemporaryDirectory target;
    EXPECT_EQ(extracted(PackageBuilder("org.example.app").build(source), target.path()), 0);
    EXPECT_TRUE(fs::is_empty(target.path()));
}

TEST(ExtractRpm, WorkingDirectoryIsTheFormerOneAfterwards) {
    const TemporaryDirectory source;
    const TemporaryDirectory target;
    const fs::path former = fs::current_path();
    EXPECT_EQ(extracted(samplePackage(source), target.path()), 0);
    EXPECT_EQ(fs::current_path(), former);
    EXPECT_NE(extracted(source.write("text.rpm", "text"), target.path()), 0);
    EXPECT_EQ(fs::current_path(), former);
    EXPECT_EQ(extracted(source / "missing.rpm", target.path()), 1);
    EXPECT_EQ(fs::current_path(), former);
}

TEST(ExtractRpm, RelativePathStartsAtTheWorkingDirectory) {
    const TemporaryDirectory source;
    const TemporaryDirectory target;
    fs::rename(samplePackage(source), source / "package.rpm");
    const WorkingDirectory there(source.path());
    EXPECT_EQ(extracted("package.rpm", target.path()), 0);
    EXPECT_TRUE(fs::exists(target / "usr/share/data"));
    EXPECT_TRUE(constructs("./package.rpm"));
}

TEST(ExtractRpm, LinkToAPackageIsFollowed) {
    const TemporaryDirectory source;
    const TemporaryDirectory target;
    fs::create_symlink(samplePackage(source), source / "link.rpm");
    EXPECT_EQ(extracted(source / "link.rpm", target.path()), 0);
}

TEST(ExtractRpm, PathReachesTheShellBetweenQuotesAndUnescaped) {
    const TemporaryDirectory source;
    const std::string package = samplePackage(source);
    struct Case {
        const char* name;
        bool expected;
    };
    const Case cases[] = {
        {"a blank.rpm", true},       {"it's.rpm", true},  {"semi;colon&.rpm", true},
        {"star*.rpm", true},         {"ж\xFF.rpm", true}, {"quote\".rpm", false},
        {"dollar$unset.rpm", false},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        fs::copy_file(package, source / test.name);
        EXPECT_EQ(constructs(source / test.name), test.expected);
    }
}

TEST(ExtractRpm, WhatCannotBeginGivesOne) {
    const TemporaryDirectory source;
    const TemporaryDirectory target;
    const std::string package = samplePackage(source);
    ASSERT_EQ(mkfifo((source / "fifo").c_str(), 0600), 0);
    EXPECT_EQ(extracted(source / "missing.rpm", target.path()), 1);
    EXPECT_EQ(extracted("", target.path()), 1);
    EXPECT_EQ(extracted(source / "fifo", target.path()), 1);
    EXPECT_EQ(extracted("/dev/zero", target.path()), 1);
    EXPECT_EQ(extracted(package, target / "missing"), 1);
    EXPECT_EQ(extracted(package, package), 1);
    EXPECT_EQ(extracted(package, ""), 1);
    EXPECT_TRUE(fs::is_empty(target.path()));
}

TEST(ExtractRpm, StatusOfTheShellIsGivenUndecoded) {
    const TemporaryDirectory source;
    const TemporaryDirectory target;
    for (const std::string& path : {source.write("empty.rpm", ""), source.write("text.rpm", "text"),
                                    source.path().string()}) {
        SCOPED_TRACE(path);
        const int status = extracted(path, target.path());
        EXPECT_TRUE(WIFEXITED(status));
        EXPECT_EQ(WEXITSTATUS(status), 2);
        EXPECT_EQ(status, 2 << 8);
        EXPECT_FALSE(constructs(path));
    }
}

TEST(ExtractRpm, WorkingDirectoryThatIsGoneGivesOne) {
    const TemporaryDirectory source;
    const TemporaryDirectory target;
    const std::string package = samplePackage(source);
    EXPECT_TRUE(holdsInChild([&] {
        fs::create_directory(source / "gone");
        fs::current_path(source / "gone");
        fs::remove(source / "gone");
        return extracted(package, target.path()) == 1 && fs::is_empty(target.path());
    }));
}

TEST(ExtractRpm, WorkingDirectoryThatCannotBeRestoredGivesOne) {
    const TemporaryDirectory source;
    fs::permissions(source.path(), fs::perms::all);
    const std::string package = samplePackage(source);
    EXPECT_TRUE(holdsForOrdinaryUser([&package] {
        const TemporaryDirectory directory;
        fs::create_directories(directory / "closed/here");
        fs::create_directory(directory / "target");
        fs::current_path(directory / "closed/here");
        fs::permissions(directory / "closed", fs::perms::none);
        const int status = extracted(package, directory / "target");
        const fs::path left = fs::current_path();
        return status == 1 && left == directory / "target" &&
               fs::exists(directory / "target/usr/share/data");
    }));
}

TEST(ExtractRpm, FilesOfABrokenPayloadStayBehind) {
    const TemporaryDirectory source;
    const std::string unique = "/usr/share/" + source.path().filename().string();
    std::string noise;
    for (unsigned i = 0, number = 1; i < 400000; ++i) {
        number = number * 1103515245 + 12345;
        noise += static_cast<char>(number >> 16);
    }
    const std::string package = PackageBuilder("org.example.app")
                                    .file(unique + "/a", "x")
                                    .file(unique + "/b", noise)
                                    .build(source);
    EXPECT_TRUE(constructs(package));
    EXPECT_TRUE(extractedTreesWith(unique).empty());
    fs::resize_file(package, fs::file_size(package) - 100000);
    EXPECT_FALSE(constructs(package));
    const std::vector<std::string> directories = extractedTreesWith(unique);
    EXPECT_EQ(directories.size(), 1U);
    for (const std::string& directory : directories) {
        fs::remove_all(directory);
    }
}

}  // namespace
