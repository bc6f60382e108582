// The rule on what may be executable in a package, and where.
#include <gmock/gmock.h>

#include <filesystem>

#include "pkgvet/base/file_modes.h"
#include "pkgvet/elf/binary_facts.h"
#include "pkgvet/elf/binary_rules.h"
#include "pkgvet/report/findings.h"
#include "tests/support/base/bytes_read.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/elf/elf_image.h"
#include "tests/support/rules/rule_tree.h"

namespace pkgvet {
namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string kNoMainBinary = errorLine("[binary] Main binary must be an executable");
const std::string kNotNoarch =
    warningLine("[arch] RPMs containing arch-specific content should not be noarch");

std::string badFormat(const std::string& path) {
    return errorLine("[" + path + "] Executable has a wrong format or encoding");
}

std::string badLocation(const std::string& path) {
    return errorLine("[" + path + "] Executable is in wrong location");
}

const std::string kGoodElf = elfImage("elf 64 little");
const std::string kBigEndianElf = elfImage("elf 64 big");
const std::string kScript = "#!/bin/sh\n";

// A package whose files are laid out by hand, so that the test's own directory is the extraction
// root.
class Executables : public testing::Test {
protected:
    void file(const std::string& path, const std::string& content = kGoodElf, int mode = 0755) {
        const std::string onDisk = directory_.write(path.substr(1), content);
        fs::permissions(onDisk, static_cast<fs::perms>(mode));
        paths_.push_back(path);
    }

    void link(const std::string& path, const std::string& target) {
        fs::create_directories(fs::path(root() + path).parent_path());
        fs::create_symlink(target, root() + path);
        paths_.push_back(path);
    }

    Lines check() {
        const CapturedLog log;
        const std::vector<mode_t> modes = pkgvet::readModes(root(), paths_);
        checkExecutables({packageName_, arch_, paths_, modes, root(), isQmlOnly_}, load(tree_),
                         &facts_, &findings_);
        return log.lines();
    }

    std::string root() const { return directory_.path(); }

    TemporaryDirectory directory_;
    RuleTree tree_;
    std::string packageName_ = "foo";
    std::string arch_ = "aarch64";
    std::vector<std::string> paths_;
    bool isQmlOnly_ = false;
    BinaryFacts facts_;
    Findings findings_;
};

TEST_F(Executables, PackageWithoutFilesLacksItsMainBinary) {
    EXPECT_THAT(check(), ElementsAre(kNoMainBinary));
    EXPECT_EQ(findings_.failures(), kViolation);
    EXPECT_FALSE(facts_.archSpecificContent);
}

TEST_F(Executables, QmlPackageNeedsNoMainBinary) {
    isQmlOnly_ = true;
    EXPECT_THAT(check(), IsEmpty());
    EXPECT_EQ(findings_.failures(), 0U);
}

TEST_F(Executables, MainBinaryIsFound) {
    file("/usr/bin/foo");
    EXPECT_THAT(check(), IsEmpty());
    EXPECT_TRUE(facts_.mainBinExec);
    EXPECT_TRUE(facts_.archSpecificContent);
    EXPECT_FALSE(facts_.privateSharedObject);
    EXPECT_EQ(findings_.failures(), 0U);
}

TEST_F(Executables, MainBinaryMustBeAGoodElfFile) {
    struct Case {
        const char* name;
        std::string content;
        bool isGood;
    };
    const Case cases[] = {
        {"64 bit", kGoodElf, true},
        {"32 bit", elfImage("elf 32 little"), true},
        {"64 bit, big-endian", kBigEndianElf, false},
        {"32 bit, big-endian", elfImage("elf 32 big"), false},
        {"script", kScript, false},
        {"empty", "", false},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        paths_.clear();
        facts_ = BinaryFacts();
        file("/usr/bin/foo", test.content, 0700);
        EXPECT_EQ(check(),
                  test.isGood ? Lines() : Lines({badFormat("/usr/bin/foo"), kNoMainBinary}));
        EXPECT_EQ(facts_.mainBinExec, test.isGood);
        EXPECT_EQ(facts_.archSpecificContent, test.isGood);
    }
}

TEST_F(Executables, MainBinaryIsFoundAnywhereInAPath) {
    for (const char* path : {"/usr/bin/foo2", "/opt/usr/bin/foo", "/opt/usr/bin/foo.d/x"}) {
        SCOPED_TRACE(path);
        paths_.clear();
        facts_ = BinaryFacts();
        file(path);
        EXPECT_THAT(check(), IsEmpty());
        EXPECT_TRUE(facts_.mainBinExec);
    }
}

TEST_F(Executables, FileBelowTheMainBinarysPathCountsAsTheMainBinary) {
    file("/usr/bin/foo/x");
    EXPECT_THAT(check(), IsEmpty());
    EXPECT_TRUE(facts_.mainBinExec);
}

TEST_F(Executables, EmptyPathOfTheMainBinaryIsInEveryPath) {
    tree_.binDir = "";
    packageName_ = "";
    file("/opt/tool");
    EXPECT_THAT(check(), IsEmpty());
    EXPECT_TRUE(facts_.mainBinExec);
}

TEST_F(Executables, PlacesForOtherExecutables) {
    file("/opt/libexec/foo/tool");
    file("/opt/x.so.d/tool");
    file("/usr/bin/bar");
    file("/usr/libexec/bar");
    file("/usr/libexec/foo/sub/tool");
    file("/usr/libexec/foo/tool");
    file("/usr/libexec/foobar/tool");
    file("/usr/share/foo/lib/tool");
    file("/usr/share/foo/plugins/liby.so");
    file("/usr/share/foo/start");
    EXPECT_THAT(check(), ElementsAre(badLocation("/opt/libexec/foo/tool"),
                                     badLocation("/usr/bin/bar"), badLocation("/usr/libexec/bar"),
                                     badLocation("/usr/libexec/foobar/tool"),
                                     badLocation("/usr/share/foo/lib/tool"),
                                     badLocation("/usr/share/foo/start"), kNoMainBinary));
    EXPECT_EQ(findings_.failures(), kViolation);
    EXPECT_FALSE(facts_.privateSharedObject);
}

TEST_F(Executables, PrivateSharedObjectIsNoted) {
    isQmlOnly_ = true;
    file("/usr/share/foo/lib/libx.so.1");
    EXPECT_THAT(check(), IsEmpty());
    EXPECT_TRUE(facts_.privateSharedObject);
    EXPECT_TRUE(facts_.archSpecificContent);
    EXPECT_FALSE(facts_.mainBinExec);
}

TEST_F(Executables, DirectoriesAreTheConfiguredOnes) {
    tree_.binDir = "/opt/bin/";
    tree_.libexecDir = "/opt/libexec/";
    file("/opt/bin/foo");
    file("/opt/libexec/foo/tool");
    file("/usr/bin/foo");
    EXPECT_THAT(check(), ElementsAre(badLocation("/usr/bin/foo")));
}

TEST_F(Executables, NamesInPatternsStandForThemselves) {
    packageName_ = "org.foo+";
    tree_.libexecDir = "/usr/lib.exec/";
    file("/usr/bin/org.foo+");
    file("/usr/lib.exec/org.foo+/tool");
    file("/usr/lib.exec/org.fooo/tool");
    file("/usr/lib.exec/orgxfoo+/tool");
    file("/usr/libxexec/org.foo+/tool");
    EXPECT_THAT(check(), ElementsAre(badLocation("/usr/lib.exec/org.fooo/tool"),
                                     badLocation("/usr/lib.exec/orgxfoo+/tool"),
                                     badLocation("/usr/libxexec/org.foo+/tool")));
}

TEST_F(Executables, OnlyTheBitOfTheOwnerMakesAnExecutable) {
    file("/usr/bin/foo", kGoodElf, 0655);
    file("/usr/share/foo/data", kScript, 0644);
    file("/usr/share/foo/group", kScript, 0011);
    file("/usr/share/foo/owner", kScript, 0744);
    EXPECT_THAT(check(), ElementsAre(badFormat("/usr/share/foo/owner"), kNoMainBinary));
}

TEST_F(Executables, LinksAreJudgedByTheirTargets) {
    file("/usr/bin/foo");
    link("/usr/share/foo/dangling", "nowhere");
    link("/usr/share/foo/directory", "../foo");
    link("/usr/share/foo/good", "../../bin/foo");
    link("/usr/share/foo/script", "start");
    file("/usr/share/foo/start", kScript, 0700);
    EXPECT_THAT(check(),
                ElementsAre(badFormat("/usr/share/foo/script"), badFormat("/usr/share/foo/start"),
                            badLocation("/usr/share/foo/good")));
}

TEST_F(Executables, FormatsComeBeforePlacesAndBothInTheOrderOfThePackage) {
    file("/opt/c");
    file("/opt/d", kBigEndianElf);
    file("/opt/a");
    file("/opt/b", kScript);
    EXPECT_THAT(check(), ElementsAre(badFormat("/opt/d"), badFormat("/opt/b"),
                                     badLocation("/opt/c"), badLocation("/opt/a"), kNoMainBinary));
}

TEST_F(Executables, NoarchPackageIsWarnedForEachElfFile) {
    arch_ = "noarch";
    file("/opt/a", kScript);
    file("/usr/bin/foo");
    file("/usr/libexec/foo/tool");
    EXPECT_THAT(check(), ElementsAre(badFormat("/opt/a"), kNotNoarch, kNotNoarch));
    EXPECT_TRUE(facts_.archSpecificContent);
}

TEST_F(Executables, FileThatIsListedButNotThereIsNotAnExecutable) {
    paths_ = {"/usr/bin/foo"};
    EXPECT_THAT(check(), ElementsAre(kNoMainBinary));
}

TEST_F(Executables, MainBinaryOnceFoundStaysFound) {
    facts_.mainBinExec = true;
    EXPECT_THAT(check(), IsEmpty());
}

// Through names, links and hard links.
TEST_F(Executables, AFileIsReadOnceWhateverTheNumberOfItsPaths) {
    std::string description = "elf 64 little\nsection strtab\nsection symtab link=1\n";
    for (int i = 0; i < 4000; ++i) {
        description += "symbol -\n";
    }
    file("/usr/bin/foo", elfImage(description));
    for (int i = 0; i < 50; ++i) {
        paths_.push_back("/usr/bin/foo");
        const std::string name = "/usr/libexec/foo/" + std::to_string(i);
        link(name, root() + "/usr/bin/foo");
        fs::create_hard_link(root() + "/usr/bin/foo", root() + name + "-hard");
        paths_.push_back(name + "-hard");
    }
    const std::uint64_t size = fs::file_size(root() + "/usr/bin/foo");
    EXPECT_LT(bytesReadBy([&] { EXPECT_THAT(check(), IsEmpty()); }), 2 * size);
}

// Each by itself would do, see ElfAllowance.
TEST_F(Executables, ManySmallFilesThatStandForMuchAreNotAllLoaded) {
    constexpr const char* kTenMillionSymbols =
        "elf 64 little\nsection symtab offset=0x7fffffff entsize=24 size=240000000\n";
    file("/usr/bin/foo");
    file("/usr/share/foo/lib/a.so", elfImage(kTenMillionSymbols));
    file("/usr/share/foo/lib/b.so", elfImage(kTenMillionSymbols));
    file("/usr/share/foo/lib/c.so");
    EXPECT_THAT(check(), ElementsAre(badFormat("/usr/share/foo/lib/b.so")));
}

}  // namespace
}  // namespace pkgvet
