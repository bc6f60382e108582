// The end of trees of every shape.
#include "pkgvet/base/remove_tree.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "tests/support/base/child_process.h"
#include "tests/support/base/temporary_directory.h"

namespace {

using pkgvet::removeTree;

namespace fs = std::filesystem;

TEST(RemoveTree, NothingIsFine) {
    const TemporaryDirectory directory;
    removeTree(directory / "missing");
    removeTree("");
}

TEST(RemoveTree, EveryKindOfFileGoes) {
    const TemporaryDirectory directory;
    const std::string root = directory / "root";
    directory.write("root/a/b/file", "x");
    directory.write("kept", "x");
    fs::create_directories(root + "/empty");
    ASSERT_EQ(mkfifo((root + "/fifo").c_str(), 0600), 0);
    fs::create_symlink(directory / "kept", root + "/a/link");
    fs::create_symlink(directory.path(), root + "/up");
    fs::create_symlink("nowhere", root + "/dangling");
    removeTree(root);
    EXPECT_FALSE(fs::exists(root));
    EXPECT_TRUE(fs::exists(directory / "kept"));
}

TEST(RemoveTree, LinkIsRemovedAndNotFollowed) {
    const TemporaryDirectory directory;
    directory.write("kept/file", "x");
    fs::create_directory_symlink(directory / "kept", directory / "link");
    removeTree(directory / "link");
    EXPECT_FALSE(fs::exists(fs::symlink_status(directory / "link")));
    EXPECT_TRUE(fs::exists(directory / "kept/file"));
}

TEST(RemoveTree, PermissionsAreRestoredFirst) {
    EXPECT_TRUE(holdsForOrdinaryUser([] {
        const TemporaryDirectory directory;
        const std::string root = directory / "root";
        directory.write("root/none/file", "x");
        directory.write("root/read/deep/file", "x");
        chmod((root + "/read/deep").c_str(), 0500);
        chmod((root + "/read").c_str(), 0555);
        chmod((root + "/none").c_str(), 0);
        chmod(root.c_str(), 0500);
        removeTree(root);
        return !fs::exists(root);
    }));
}

// Deeper than there are descriptors, and than a path can be long.
TEST(RemoveTree, AnyDepthGoes) {
    EXPECT_TRUE(holdsInChild([] {
        const TemporaryDirectory directory;
        const std::string root = directory / "root";
        mkdir(root.c_str(), 0700);
        int current = open(root.c_str(), O_RDONLY | O_DIRECTORY);
        for (int i = 0; i < 5000; ++i) {
            mkdirat(current, "a", 0700);
            const int next = openat(current, "a", O_RDONLY | O_DIRECTORY);
            close(current);
            current = next;
        }
        close(current);
        const struct rlimit few { 32, 32 };
        setrlimit(RLIMIT_NOFILE, &few);
        removeTree(root);
        return !fs::exists(root);
    }));
}

// What it comes after, a test of the program that is killed sees.
TEST(RemoveTree, LastEntryGoesAsWellWhateverItIs) {
    const TemporaryDirectory directory;
    const std::string root = directory / "root";
    directory.write("root/last", "content");
    directory.write("root/other/last", "content");
    removeTree(root, "last");
    EXPECT_FALSE(fs::exists(root));
    directory.write("root/last/last/other", "content");
    removeTree(root, "last");
    EXPECT_FALSE(fs::exists(root));
    directory.write("root/other", "content");
    removeTree(root, "last");
    EXPECT_FALSE(fs::exists(root));
}

TEST(RemoveTree, WhatCannotBeRemovedIsAnException) {
    EXPECT_THROW(removeTree("/proc/self/task"), fs::filesystem_error);
}

}  // namespace
