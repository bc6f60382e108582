// Which paths a header may have.
#include <gmock/gmock.h>
#include <rpm/rpmtag.h>
#include <sys/stat.h>

#include "cli/integrity/header_rules.h"
#include "tests/support/program/integrity_run.h"

namespace {

using namespace pkgvet::cli;
using testing::ElementsAre;
using testing::IsEmpty;

HeaderFiles filesAt(const std::vector<std::string>& paths) {
    HeaderFiles list;
    for (const std::string& path : paths) {
        list.files.push_back(headerFile(path));
    }
    return list;
}

TEST(HeaderPaths, NormalPathsMayHoldOddNames) {
    EXPECT_THAT(linesOf(filesAt({"/usr/share/x", "/...", "/a/..b/c..", "/ ", "/\xff\n", "/a/.b"}),
                        checkPaths),
                IsEmpty());
}

TEST(HeaderPaths, OthersAreFindings) {
    for (const char* path :
         {"", "usr/x", "/", "//usr/x", "/usr//x", "/usr/x/", "/usr/./x", "/usr/../etc/x", "/..",
          "/.", "/usr/share/a/../../../etc/cron.d/evil"}) {
        EXPECT_THAT(linesOf(filesAt({path}), checkPaths),
                    ElementsAre("header-path-not-normal: [" + std::string(path) +
                                "] Path in the header is not absolute and normal"));
    }
}

TEST(HeaderPaths, NoPathIsLongerThanCanBeOpened) {
    EXPECT_THAT(linesOf(filesAt({"/" + std::string(4094, 'x')}), checkPaths), IsEmpty());
    EXPECT_THAT(linesOf(filesAt({"/" + std::string(4095, 'x')}), checkPaths),
                ElementsAre("header-path-too-long: [/" + std::string(199, 'x') +
                            "] Path in the header is too long"));
}

TEST(HeaderPaths, DirectoriesEndAndNamesGoWithoutASlash) {
    CraftedPackage package = honestPackage();
    EXPECT_THAT(linesOf(package, checkPathParts), IsEmpty());
    package.set(RPMTAG_DIRNAMES, rpmTexts({"/usr/bin/", "/usr/share/", "/usr/sha"}))
        .set(RPMTAG_BASENAMES, rpmTexts({"a", "b", "c/d", "e"}));
    EXPECT_THAT(linesOf(package, checkPathParts),
                ElementsAre("header-path-split: [/usr/sha] Directory and name are not parted at "
                            "the last slash",
                            "header-path-split: [c/d] Directory and name are not parted at the "
                            "last slash"));
}

TEST(HeaderPaths, EachIsThereOnce) {
    EXPECT_THAT(linesOf(filesAt({"/b", "/a", "/b", "/b"}), checkPathsAmongThemselves),
                ElementsAre("header-path-twice: [/b] Path is in the header twice",
                            "header-path-twice: [/b] Path is in the header twice"));
}

TEST(HeaderPaths, NothingIsBelowWhatIsNotADirectory) {
    HeaderFiles list;
    list.files = {headerFile("/usr/a", S_IFLNK | 0777),
                  headerFile("/usr/a/b/c"),
                  headerFile("/usr/a-b"),
                  headerFile("/usr/f"),
                  headerFile("/usr/f/g"),
                  headerFile("/usr/d", S_IFDIR | 0755),
                  headerFile("/usr/d/x")};
    EXPECT_THAT(linesOf(list, checkPathsAmongThemselves),
                ElementsAre("header-path-below-file: [/usr/a/b/c] Path goes through what the "
                            "header says is a link: /usr/a",
                            "header-path-below-file: [/usr/f/g] Path goes through what the header "
                            "says is a file: /usr/f"));
}

// Each of these would take hours if each path were compared with each.
TEST(HeaderPaths, AMillionAreNoTrouble) {
    HeaderFiles list;
    for (int i = 0; i < 1'000'000; ++i) {
        list.files.push_back(headerFile("/usr/" + std::to_string(i)));
    }
    EXPECT_THAT(linesOf(list, checkPaths), IsEmpty());
    EXPECT_THAT(linesOf(list, checkPathsAmongThemselves), IsEmpty());
}

}  // namespace
