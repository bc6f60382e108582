// The rule on the libraries that the main binary links.
#include <gmock/gmock.h>

#include <regex>
#include <stdexcept>

#include "pkgvet/elf/binary_facts.h"
#include "pkgvet/elf/binary_rules.h"
#include "pkgvet/report/findings.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/elf/compiled_elf.h"
#include "tests/support/elf/elf_image.h"
#include "tests/support/rules/rule_tree.h"

namespace pkgvet {
namespace {

using Lines = std::vector<std::string>;
using testing::ElementsAre;
using testing::IsEmpty;

std::string warning(const std::string& library) {
    return warningLine("[" + library + "] Library is unstable or deprecated");
}

std::string error(const std::string& library) {
    return errorLine("[" + library + "] Library is not allowed");
}

// A main binary that needs these libraries.
std::string imageOf(const Lines& libraries) {
    std::string description = "elf 64 little\nsection strtab\nsection dynamic link=1\n";
    for (const std::string& library : libraries) {
        description += "needed " + library + "\n";
    }
    return elfImage(description);
}

class Libraries : public testing::Test {
protected:
    // The lines for a main binary with these libraries, in a package "foo" with these files.
    Lines check(const Lines& libraries, const Lines& files = {}) {
        return checkFile(directory_.write("binary", imageOf(libraries)), files);
    }

    Lines checkFile(const std::string& path, const Lines& files = {}) {
        const CapturedLog log;
        checkLibraries("foo", files, path, load(tree_), &facts_, &findings_);
        return log.lines();
    }

    TierLists& lists() { return tree_.regular().libraries; }

    TemporaryDirectory directory_;
    RuleTree tree_;
    BinaryFacts facts_;
    Findings findings_;
};

TEST_F(Libraries, MainBinaryThatNeedsNoneHasNoFinding) {
    EXPECT_THAT(check({}), IsEmpty());
    EXPECT_THAT(checkFile(directory_ / "missing"), IsEmpty());
    EXPECT_THAT(checkFile(directory_.write("script", "#!/bin/sh\n")), IsEmpty());
    EXPECT_EQ(findings_.failures(), 0U);
    EXPECT_FALSE(facts_.linksPrivateLibrary);
}

TEST_F(Libraries, AllowedOnesHaveNoFindingWhereverTheyAre) {
    lists().allowed = {"libone\\.so\\.1", "libt.*"};
    lists().unstable = {".*"};
    EXPECT_THAT(check({"libone.so.1", "libtwo.so.2"}, {"/usr/share/foo/lib/libone.so.1"}),
                IsEmpty());
    EXPECT_FALSE(facts_.linksPrivateLibrary);
}

TEST_F(Libraries, PatternsCoverTheWholeNameWithItsVersion) {
    lists().allowed = {"libone\\.so\\.1", "libtwo\\.so"};
    EXPECT_THAT(check({"libone.so", "libone.so.1", "libone.so.12", "libtwo.so", "libtwo.so.2"}),
                ElementsAre(error("libone.so"), error("libone.so.12"), error("libtwo.so.2")));
    EXPECT_EQ(findings_.failures(), kViolation);
}

TEST_F(Libraries, UnstableAndDeprecatedOnesAreWarnedOf) {
    struct Case {
        const char* name;
        Lines unstable;
        Lines deprecated;
        Lines lines;
    };
    const std::string foo = "libfoo.so.1";
    const Case cases[] = {
        {"unstable", {"libfoo.*"}, {}, {warning(foo)}},
        {"deprecated", {}, {"libfoo.*"}, {warning(foo)}},
        {"both", {"libfoo.*"}, {"libfoo.*"}, {warning(foo), warning(foo)}},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        lists().unstable = test.unstable;
        lists().deprecated = test.deprecated;
        EXPECT_EQ(check({foo}, {"/usr/share/foo/lib/libfoo.so.1"}), test.lines);
        EXPECT_EQ(findings_.failures(), 0U);
        EXPECT_FALSE(facts_.linksPrivateLibrary);
    }
}

TEST_F(Libraries, ListedOneThatIsNeededTwiceIsNoError) {
    lists().unstable = {"libfoo.so"};
    EXPECT_THAT(check({"libfoo.so", "libfoo.so"}),
                ElementsAre(warning("libfoo.so"), warning("libfoo.so")));
    EXPECT_EQ(findings_.failures(), 0U);
}

TEST_F(Libraries, UnlistedOneThatIsNeededTwiceIsOneError) {
    EXPECT_THAT(check({"libfoo.so", "libbar.so", "libfoo.so"}),
                ElementsAre(error("libbar.so"), error("libfoo.so")));
}

TEST_F(Libraries, FindingsComeByKindAndTheErrorsSorted) {
    lists().unstable = {"libu.*", "libboth.so"};
    lists().deprecated = {"libd.*", "libboth.so"};
    EXPECT_THAT(check({"libz.so", "libd2.so", "libu2.so", "liba.so", "libboth.so", "libu1.so",
                       "libd1.so", "libB.so"}),
                ElementsAre(warning("libu2.so"), warning("libboth.so"), warning("libu1.so"),
                            warning("libd2.so"), warning("libboth.so"), warning("libd1.so"),
                            error("libB.so"), error("liba.so"), error("libz.so")));
}

TEST_F(Libraries, PlacesForThePackagesOwn) {
    struct Case {
        const char* library;
        const char* file;
        bool found;
    };
    const Case cases[] = {
        {"libbar.so.2", "/usr/share/foo/lib/libbar.so.2", true},
        {"libbar.so.2", "/usr/share/foo/libs/libbar.so.2", true},
        {"libbar.so", "/usr/share/foo/lib/qmlplugins/bar/libbar.so", true},
        {"libbar.so", "/usr/share/foo/libs/qmlplugins/bar/libbar.so", true},
        {"libbar.so.2", "/usr/lib/3rdparty/foo/libbar.so.2", true},
        {"libbar.so.2", "/usr/lib/3rdparty/foo/lib/libbar.so.2", true},
        {"libbar.so", "/usr/lib/3rdparty/foo/qmlplugins/bar/libbar.so", true},
        {"libbar.so", "/usr/lib/3rdparty/foo/lib/qmlplugins/bar/libbar.so", true},
        {"libbar.so.2", "/usr/share/foo/libbar.so.2", false},
        {"libbar.so.2", "/usr/share/foo/lib/sub/libbar.so.2", false},
        {"libbar.so.2", "/usr/share/foo/lib/libbar.so.21", false},
        {"libbar.so.2", "/usr/share/foo/lib/libbar.so", false},
        {"libbar.so", "/usr/share/other/lib/libbar.so", false},
        {"libbar.so", "/usr/lib/3rdparty/other/libbar.so", false},
        {"libbar.so", "/usr/lib/3rdparty/foo/libs/libbar.so", false},
        {"libbar.so", "/usr/lib/libbar.so", false},
        {"libbar.so.2", "/usr/share/foo/lib/qmlplugins/bar/libbar.so.2", false},
        {"libbar.so.2", "/usr/share/foo/lib/qmlplugins/bar.s/libbar.so.2", true},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.file);
        facts_ = BinaryFacts();
        findings_ = Findings();
        const Lines lines = check({test.library}, {test.file});
        EXPECT_EQ(lines, test.found ? Lines() : Lines{error(test.library)});
        EXPECT_EQ(facts_.linksPrivateLibrary, test.found);
        EXPECT_EQ(findings_.failures(), test.found ? 0U : kViolation);
    }
}

TEST_F(Libraries, ShareDirectoryIsConfiguredAndThirdPartyDirectoryIsNot) {
    tree_.shareDir = "/opt/share/";
    EXPECT_THAT(check({"libbar.so"}, {"/usr/share/foo/lib/libbar.so"}),
                ElementsAre(error("libbar.so")));
    EXPECT_THAT(check({"libbar.so"}, {"/opt/share/foo/lib/libbar.so"}), IsEmpty());
    EXPECT_THAT(check({"libbar.so"}, {"/usr/lib/3rdparty/foo/libbar.so"}), IsEmpty());
}

TEST_F(Libraries, OwnOneIsFoundAmongOtherFiles) {
    EXPECT_THAT(check({"libbar.so", "libother.so"},
                      {"/usr/bin/foo", "/usr/share/foo/lib/libbar.so", "/usr/share/foo/main.qml"}),
                ElementsAre(error("libother.so")));
    EXPECT_TRUE(facts_.linksPrivateLibrary);
}

TEST_F(Libraries, StemIsCutByLengthAlone) {
    struct Case {
        const char* library;
        const char* stem;
    };
    const Case cases[] = {
        {"libfoo.so", "foo"}, {"libfoo.so.1", "foo.s"}, {"xyzfoo123", "foo"}, {"abcdefg", "d"},
        {"abcd", "d"},        {"abcde", "de"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.library);
        const std::string library = test.library;
        EXPECT_THAT(check({library}, {"/usr/lib/3rdparty/foo/qmlplugins/" + std::string(test.stem) +
                                      "/" + library}),
                    IsEmpty());
    }
}

TEST_F(Libraries, StemOfThreeOrSixCharactersIsEmpty) {
    for (const char* library : {"abc", "abcdef"}) {
        SCOPED_TRACE(library);
        EXPECT_THAT(check({library}), ElementsAre(error(library)));
    }
}

TEST_F(Libraries, NameOfTwoCharactersThrowsBeforeAnyFinding) {
    lists().unstable = {"libu.so"};
    CapturedLog log;
    EXPECT_THROW(check({"libu.so", "ab"}), std::out_of_range);
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_EQ(findings_.failures(), 0U);
    lists().allowed = {"ab"};
    EXPECT_THAT(check({"libu.so", "ab"}), ElementsAre(warning("libu.so")));
}

TEST_F(Libraries, BadPatternThrowsWhenTheWalkGetsToIt) {
    lists().allowed = {"libone.so", "("};
    EXPECT_THAT(check({"libone.so"}), IsEmpty());
    EXPECT_THROW(check({"libone.so", "libtwo.so"}), std::regex_error);
    lists().allowed = {"libone.so"};
    lists().deprecated = {"("};
    EXPECT_THAT(check({"libone.so"}), IsEmpty());
    EXPECT_THROW(check({"libtwo.so"}), std::regex_error);
    EXPECT_EQ(findings_.failures(), 0U);
}

TEST_F(Libraries, RealProgramLinksItsOwnLibrary) {
    const std::string library =
        compileElf(directory_, "libown.so.1", "int f() { return 1; }\n",
                   {"-shared", "-fPIC", "-nostdlib", "-Wl,-soname,libown.so.1"});
    const std::string program =
        compileElf(directory_, "program", "int f(); int main() { return f(); }\n", {library});
    lists().allowed = {"libc\\.so\\.6", "lib(stdc\\+\\+|m|gcc_s|[atu]+san)\\.so\\.[0-9]+"};
    EXPECT_THAT(checkFile(program, {"/usr/share/foo/lib/libown.so.1"}), IsEmpty());
    EXPECT_TRUE(facts_.linksPrivateLibrary);
    EXPECT_THAT(checkFile(program), ElementsAre(error("libown.so.1")));
}

TEST_F(Libraries, ManyAreCheckedInReasonableTime) {
    Lines libraries;
    for (int i = 0; i < 3000; ++i) {
        libraries.push_back("lib" + std::to_string(i) + ".so");
    }
    lists().unstable = {"lib[0-9]*\\.so"};
    EXPECT_EQ(check(libraries).size(), libraries.size());
}

}  // namespace
}  // namespace pkgvet
