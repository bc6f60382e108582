// Whether the lists of a header fit one another.
#include <gmock/gmock.h>
#include <rpm/rpmtag.h>

#include "cli/integrity/header_rules.h"
#include "tests/support/program/integrity_run.h"

namespace {

using namespace pkgvet::cli;
using testing::ElementsAre;
using testing::IsEmpty;

// The honest package has four files.
std::vector<std::string> linesWith(std::uint32_t tag, const RpmValue& value) {
    CraftedPackage package = honestPackage();
    package.set(tag, value);
    return linesOf(package, checkLists);
}

TEST(HeaderLists, ThoseOfAnHonestPackageFit) {
    EXPECT_THAT(linesOf(honestPackage(), checkLists), IsEmpty());
    EXPECT_THAT(linesOf(CraftedPackage("org.example.empty"), checkLists), IsEmpty());
}

TEST(HeaderLists, EachIsAsLongAsThatOfTheNames) {
    struct Case {
        std::uint32_t tag;
        RpmValue value;
        const char* line;
    };
    const Case cases[] = {
        {RPMTAG_FILEMODES, rpmInt16({0100644}),
         "header-lists-disagree: [Filemodes] List has 1 elements and there are 4 files"},
        {RPMTAG_FILEUSERNAME, rpmTexts({"a", "b", "c", "d", "e"}),
         "header-lists-disagree: [Fileusername] List has 5 elements and there are 4 files"},
        {RPMTAG_FILEFLAGS, rpmInt32({0, 0, 0}),
         "header-lists-disagree: [Fileflags] List has 3 elements and there are 4 files"},
        {RPMTAG_FILECAPS, rpmTexts({""}),
         "header-lists-disagree: [Filecaps] List has 1 elements and there are 4 files"},
        {RPMTAG_FILEDIGESTS, rpmTexts({""}),
         "header-lists-disagree: [Filedigests] List has 1 elements and there are 4 files"},
    };
    for (const Case& test : cases) {
        EXPECT_THAT(linesWith(test.tag, test.value), ElementsAre(test.line));
    }
}

TEST(HeaderLists, WhatSaysWhereAFileGoesMustBeThere) {
    EXPECT_THAT(linesOf(honestPackage().remove(RPMTAG_FILEGROUPNAME), checkLists),
                ElementsAre("header-lists-disagree: [Filegroupname] List has 0 elements and there "
                            "are 4 files"));
    EXPECT_THAT(linesOf(honestPackage().remove(RPMTAG_FILESIZES), checkLists),
                ElementsAre("header-lists-disagree: [Filesizes] List has 0 elements and there are "
                            "4 files"));
}

TEST(HeaderLists, DirectoriesAreInTheHeader) {
    EXPECT_THAT(linesWith(RPMTAG_DIRINDEXES, rpmInt32({0, 1, 7, 0xffffffff})),
                ElementsAre("header-index-out-of-range: [main.qml] Directory of this file is not "
                            "in the header: 7",
                            "header-index-out-of-range: [page.qml] Directory of this file is not "
                            "in the header: 4294967295"));
}

}  // namespace
