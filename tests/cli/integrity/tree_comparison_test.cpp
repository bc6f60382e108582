// The header against the unpacked payload.
#include <gmock/gmock.h>
#include <rpm/rpmfiles.h>
#include <rpm/rpmpgp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "cli/integrity/tree_rules.h"
#include "tests/support/package/rpm_file.h"
#include "tests/support/program/integrity_run.h"

namespace {

using namespace pkgvet::cli;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
namespace fs = std::filesystem;

// A tree with a file of each kind, and a header that says so.
class TreeComparisonTest : public testing::Test {
protected:
    void SetUp() override {
        list_.digestAlgorithm = PGPHASHALGO_SHA256;
        fs::create_directories(root_ / "usr/share/app");
        for (const char* implied : {"usr", "usr/share", "usr/share/app"}) {
            chmod((root_ / implied).c_str(), 0755);
        }
        addFile("/usr/share/app/main.qml", "import QtQuick 2.0\n");
        addFile("/usr/share/app/data", std::string("a\0b", 3));
        list_.files.push_back(headerFile("/usr/share/app", S_IFDIR | 0755));
        list_.files.push_back(headerFile("/usr/share/app/link", S_IFLNK | 0777));
        list_.files.back().target = "data";
        symlink("data", (root_ / "usr/share/app/link").c_str());
    }

    void addFile(const std::string& path, const std::string& text) {
        writeFile(root_.path().string() + path, text);
        chmod((root_.path().string() + path).c_str(), 0644);
        HeaderFile file = headerFile(path);
        file.size = text.size();
        file.digest = digestOf(PGPHASHALGO_SHA256, text);
        file.identity = list_.files.size() + 1;
        list_.files.push_back(file);
    }

    HeaderFile& file(const std::string& path) {
        return *std::find_if(list_.files.begin(), list_.files.end(),
                             [&path](const HeaderFile& one) { return one.path == path; });
    }

    std::vector<std::string> lines(const EarlyContents& early = {}) const {
        const std::string root = root_.path();
        TreeComparison comparison(list_, root, early);
        comparison.compareEntries();
        comparison.compareContents();
        return linesOf(comparison.take());
    }

    TemporaryDirectory root_;
    HeaderFiles list_;
};

TEST_F(TreeComparisonTest, WhatIsAsTheHeaderSaysHasNoFinding) {
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(TreeComparisonTest, WhatIsInOneOfThemAloneIsAFinding) {
    writeFile(root_ / "usr/share/app/extra", "x");
    fs::create_directory(root_ / "opt");
    list_.files.push_back(headerFile("/usr/share/app/missing"));
    EXPECT_THAT(lines(),
                UnorderedElementsAre(
                    "payload-file-extra: [/usr/share/app/extra] File of the payload is not in the "
                    "header",
                    "payload-file-extra: [/opt] File of the payload is not in the header",
                    "payload-file-missing: [/usr/share/app/missing] File of the header is not in "
                    "the payload"));
}

TEST_F(TreeComparisonTest, GhostsAreAbsent) {
    list_.files.push_back(headerFile("/usr/share/app/cache"));
    list_.files.back().flags = RPMFILE_GHOST;
    EXPECT_THAT(lines(), IsEmpty());
    writeFile(root_ / "usr/share/app/cache", "x");
    EXPECT_THAT(lines(), ElementsAre("payload-ghost: [/usr/share/app/cache] File of the payload is "
                                     "one that the header says is not installed"));
}

TEST_F(TreeComparisonTest, TypesAreTheSame) {
    file("/usr/share/app/link").mode = S_IFREG | 0644;
    file("/usr/share/app/data").mode = S_IFDIR | 0755;
    EXPECT_THAT(lines(),
                UnorderedElementsAre(
                    "payload-type-differs: [/usr/share/app/link] Is a file in the header and a "
                    "link in the payload",
                    "payload-type-differs: [/usr/share/app/data] Is a directory in the header and "
                    "a file in the payload"));
}

TEST_F(TreeComparisonTest, ModesAreTheSame) {
    file("/usr/share/app/data").mode = S_IFREG | 04755;
    file("/usr/share/app").mode = S_IFDIR | 0700;
    file("/usr/share/app/link").mode = S_IFLNK | 0644;
    EXPECT_THAT(lines(),
                UnorderedElementsAre("payload-mode-differs: [/usr/share/app/data] Has mode 4755 in "
                                     "the header and 0644 in the payload",
                                     "payload-mode-differs: [/usr/share/app] Has mode 0700 in the "
                                     "header and 0755 in the payload"));
}

TEST_F(TreeComparisonTest, DirectoriesThatAreInNeitherAreAsRpmMakesThem) {
    chmod((root_ / "usr/share").c_str(), 0777);
    EXPECT_THAT(lines(), ElementsAre("payload-mode-differs: [/usr/share] Has mode 0755 in the "
                                     "header and 0777 in the payload"));
}

TEST_F(TreeComparisonTest, SizesTargetsAndDigestsAreTheSame) {
    file("/usr/share/app/data").size = 4;
    file("/usr/share/app/link").target = "/etc/passwd";
    file("/usr/share/app/main.qml").digest = "00";
    EXPECT_THAT(lines(),
                UnorderedElementsAre(
                    "payload-size-differs: [/usr/share/app/data] Has size 4 in the header and 3 "
                    "in the payload",
                    "payload-target-differs: [/usr/share/app/link] Leads to /etc/passwd in the "
                    "header and to data in the payload",
                    "payload-digest-differs: [/usr/share/app/main.qml] Has digest 00 in the "
                    "header and " +
                        digestOf(PGPHASHALGO_SHA256, "import QtQuick 2.0\n") + " in the payload"));
}

TEST_F(TreeComparisonTest, HardLinksAreTheSame) {
    addFile("/usr/share/app/one", "text");
    addFile("/usr/share/app/two", "text");
    fs::remove(root_ / "usr/share/app/two");
    fs::create_hard_link(root_ / "usr/share/app/one", root_ / "usr/share/app/two");
    const char* const line =
        "payload-hard-links-differ: [/usr/share/app/two] Is a hard link to "
        "other files in the header than in the payload";
    EXPECT_THAT(lines(), ElementsAre(line));
    file("/usr/share/app/two").identity = file("/usr/share/app/one").identity;
    EXPECT_THAT(lines(), IsEmpty());
    fs::remove(root_ / "usr/share/app/two");
    fs::copy_file(root_ / "usr/share/app/one", root_ / "usr/share/app/two");
    EXPECT_THAT(lines(), ElementsAre(line));
}

// The digests of hard links may differ in a header that lies, and the file is read once.
TEST_F(TreeComparisonTest, EachHardLinkHasItsDigestCompared) {
    addFile("/usr/share/app/one", "text");
    addFile("/usr/share/app/two", "text");
    fs::remove(root_ / "usr/share/app/two");
    fs::create_hard_link(root_ / "usr/share/app/one", root_ / "usr/share/app/two");
    file("/usr/share/app/two").identity = file("/usr/share/app/one").identity;
    file("/usr/share/app/two").digest = "00";
    EXPECT_EQ(lines().size(), 1U);
}

// As in a file that was written once more behind its early reading, and in one that was not.
TEST_F(TreeComparisonTest, EarlyContentsCountForFilesThatHaveNotChanged) {
    addFile("/usr/share/app/same", "text");
    addFile("/usr/share/app/other", "text");
    file("/usr/share/app/same").digest = file("/usr/share/app/other").digest = "00";
    EarlyContents early;
    early.read(list_, root_.path());
    writeFile(root_ / "usr/share/app/other", "next");
    const std::string text = digestOf(PGPHASHALGO_SHA256, "text");
    const std::string next = digestOf(PGPHASHALGO_SHA256, "next");
    EXPECT_THAT(lines(early), UnorderedElementsAre(testing::HasSubstr("and " + text),
                                                   testing::HasSubstr("and " + next)));
}

TEST_F(TreeComparisonTest, TextHoldsNoNulByte) {
    addFile("/usr/share/app/bad.qml", std::string("x\0y", 3));
    addFile("/usr/share/app/bad.desktop", std::string("x\0y", 3));
    addFile("/usr/share/app/qml", std::string("x\0y", 3));
    EXPECT_THAT(lines(), UnorderedElementsAre(
                             "text-with-nul-byte: [/usr/share/app/bad.qml] File of text holds a "
                             "NUL byte",
                             "text-with-nul-byte: [/usr/share/app/bad.desktop] File of text holds "
                             "a NUL byte"));
}

TEST_F(TreeComparisonTest, PathsThatAreNotNormalAreNotInThePayload) {
    file("/usr/share/app/data").path = "/usr/share/app/../app/data";
    EXPECT_EQ(lines().size(), 2U);
}

TEST_F(TreeComparisonTest, ModesOfTheTreeAreToldToOtherRules) {
    list_.files.push_back(headerFile("/missing"));
    const std::string root = root_.path();
    const EarlyContents none;
    TreeComparison comparison(list_, root, none);
    comparison.compareEntries();
    EXPECT_THAT(comparison.modes(),
                ElementsAre(S_IFREG | 0644, S_IFREG | 0644, S_IFDIR | 0755, S_IFLNK | 0777, 0));
}

}  // namespace
