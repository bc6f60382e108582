// Reading files while they are unpacked.
#include "cli/integrity/early_contents.h"

#include <gtest/gtest.h>
#include <rpm/rpmfiles.h>
#include <rpm/rpmpgp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <future>
#include <optional>

#include "tests/support/base/temporary_directory.h"
#include "tests/support/package/rpm_file.h"
#include "tests/support/program/integrity_run.h"

namespace {

using namespace pkgvet::cli;
namespace fs = std::filesystem;

class EarlyContentsTest : public testing::Test {
protected:
    EarlyContentsTest() { list_.digestAlgorithm = PGPHASHALGO_SHA256; }

    // A file of the header alone.
    HeaderFile& list(const std::string& path) {
        return list_.files.emplace_back(headerFile(path, S_IFREG | 0644));
    }
    // One that is unpacked as well.
    std::string add(const std::string& path, const std::string& text) {
        list(path);
        return root_.write(path.substr(1), text);
    }

    // What is known now of the file with this number; "?" for nothing.
    std::string digestOfFile(const EarlyContents& early, std::size_t index) const {
        struct stat status {};
        lstat((root_.path().string() + list_.files[index].path).c_str(), &status);
        const FileContent* const content = early.find(index, status);
        return content == nullptr ? "?" : content->digest;
    }

    TemporaryDirectory root_;
    HeaderFiles list_;
};

TEST_F(EarlyContentsTest, FilesAreKnownByTheirNumbers) {
    add("/usr/one", "first");
    list_.files.push_back(headerFile("/usr", S_IFDIR | 0755));
    add("/usr/two", std::string(1'000'000, '\0'));
    EarlyContents early;
    early.read(list_, root_.path());
    EXPECT_EQ(digestOfFile(early, 0), digestOf(PGPHASHALGO_SHA256, "first"));
    EXPECT_EQ(digestOfFile(early, 1), "?");
    EXPECT_EQ(digestOfFile(early, 2), digestOf(PGPHASHALGO_SHA256, std::string(1'000'000, '\0')));
}

TEST_F(EarlyContentsTest, HardcodedPathsAreKnownByTheFile) {
    const std::string hit = add("/hit", std::string(200000, 'x') + "/home/defaultuser");
    const std::string none = add("/none", "text");
    const std::string changed = add("/changed", "text");
    const std::string unread = root_.write("unread", "text");
    EarlyContents early;
    early.read(list_, root_.path());
    writeFile(changed, "/home/defaultuser");
    const auto answer = [&early](const std::string& path) {
        struct stat status {};
        stat(path.c_str(), &status);
        return early.holdsHardcodedPath(status);
    };
    EXPECT_EQ(answer(hit), true);
    EXPECT_EQ(answer(none), false);
    EXPECT_EQ(answer(changed), std::nullopt);
    EXPECT_EQ(answer(unread), std::nullopt);
}

TEST_F(EarlyContentsTest, WhatHasChangedSinceIsNotKnown) {
    struct Case {
        const char* name;
        std::function<void(const std::string&)> change;
    };
    const Case cases[] = {
        {"other bytes", [](const std::string& path) { writeFile(path, "after!"); }},
        {"more bytes", [](const std::string& path) { writeFile(path, "before and more"); }},
        {"the same bytes", [](const std::string& path) { writeFile(path, "before"); }},
        {"mode", [](const std::string& path) { chmod(path.c_str(), 0); }},
        {"a second name", [](const std::string& path) { fs::create_hard_link(path, path + "2"); }},
        {"another file",
         [](const std::string& path) {
             writeFile(path + "2", "before");
             fs::rename(path + "2", path);
         }},
        {"no file", [](const std::string& path) { fs::remove(path); }},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.name);
        list_.files.clear();
        const std::string path = add(std::string("/") + one.name, "before");
        EarlyContents early;
        early.read(list_, root_.path());
        EXPECT_EQ(digestOfFile(early, 0), digestOf(PGPHASHALGO_SHA256, "before"));
        one.change(path);
        EXPECT_EQ(digestOfFile(early, 0), "?");
    }
}

TEST_F(EarlyContentsTest, FilesThatAreNotThereYetAreWaitedFor) {
    list("/usr/share/later");
    EarlyContents early;
    const std::future<void> reading =
        std::async(std::launch::async, [&] { early.read(list_, root_.path()); });
    usleep(5000);
    // All at once: what is written slowly is read by nobody.
    root_.write("usr/share/new", "text");
    fs::rename(root_.path() / "usr/share/new", root_.path() / "usr/share/later");
    reading.wait();
    EXPECT_EQ(digestOfFile(early, 0), digestOf(PGPHASHALGO_SHA256, "text"));
}

TEST_F(EarlyContentsTest, NobodyIsWaitedForOnceItIsStopped) {
    add("/there", "text");
    list("/missing");
    add("/behind", "text");
    EarlyContents early;
    const std::future<void> reading =
        std::async(std::launch::async, [&] { early.read(list_, root_.path()); });
    usleep(50000);
    early.stop();
    early.stop();
    reading.wait();
    EXPECT_EQ(digestOfFile(early, 2), "?");
    EarlyContents stopped;
    stopped.stop();
    stopped.read(list_, root_.path());
    EXPECT_EQ(digestOfFile(stopped, 1), "?");
}

TEST_F(EarlyContentsTest, NothingElseIsReadOrWaitedFor) {
    add("/linked", "text");
    fs::create_hard_link(root_ / "linked", root_ / "link");
    add("/fifo", "text");
    fs::remove(root_ / "fifo");
    mkfifo((root_ / "fifo").c_str(), 0600);
    list("/ghost").flags = RPMFILE_GHOST;
    fs::create_directory_symlink("/usr", root_ / "usr");
    list("/usr/bin/cpio");
    list("/../" + root_.path().filename().string() + "/linked");
    list("");
    fs::create_directory(root_ / "directory");
    list("/directory");
    add("/last", "text");
    EarlyContents early;
    early.read(list_, root_.path());
    const std::size_t last = list_.files.size() - 1;
    for (std::size_t i = 0; i < last; ++i) {
        EXPECT_EQ(digestOfFile(early, i), "?") << list_.files[i].path;
    }
    EXPECT_EQ(digestOfFile(early, last), digestOf(PGPHASHALGO_SHA256, "text"));
}

}  // namespace
