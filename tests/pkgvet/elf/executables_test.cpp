// The rule on what may be executable in a package, and where.
#include <gmock/gmock.h>

#include <filesystem>

#include "tests/support/captured_log.h"
#include "tests/support/elf_image.h"
#include "tests/support/rule_tree.h"
#include "tests/support/validator_record.h"

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

// A package whose files are laid out by hand, so that its own directory is the extraction root.
class Executables : public testing::Test {
protected:
    void file(const std::string& path, const std::string& content = kGoodElf, int mode = 0755) {
        const std::string onDisk = directory_.write(path.substr(1), content);
        fs::permissions(onDisk, static_cast<fs::perms>(mode));
        package_.ghost(path);
    }

    void link(const std::string& path, const std::string& target) {
        fs::create_directories(fs::path(root() + path).parent_path());
        fs::create_symlink(target, root() + path);
        package_.ghost(path);
    }

    Lines check() {
        const CapturedLog log;
        validator_.checkExecutables(load(tree_), metaOf(package_), root());
        return log.lines();
    }

    std::string root() const { return directory_.path(); }
    ContentValidatorPrivate& record() { return recordOf(validator_); }

    TemporaryDirectory directory_;
    RuleTree tree_;
    PackageBuilder package_ = PackageBuilder("foo").native();
    ContentValidator validator_{std::string()};
};

TEST_F(Executables, PackageWithoutFilesLacksItsMainBinary) {
    EXPECT_THAT(check(), ElementsAre(kNoMainBinary));
    EXPECT_EQ(record().failures, pkgvet::kViolation);
    EXPECT_FALSE(record().binaryFacts.archSpecificContent);
}

TEST_F(Executables, QmlPackageNeedsNoMainBinary) {
    record().desktopFacts.qmlOnly = true;
    EXPECT_THAT(check(), IsEmpty());
    EXPECT_EQ(record().failures, 0U);
}

TEST_F(Executables, MainBinaryIsFound) {
    file("/usr/bin/foo");
    EXPECT_THAT(check(), IsEmpty());
    EXPECT_TRUE(validator_.mainBinExec());
    EXPECT_TRUE(record().binaryFacts.archSpecificContent);
    EXPECT_FALSE(record().binaryFacts.privateSharedObject);
    EXPECT_EQ(record().failures, 0U);
}

TEST_F(Executables, MainBinaryMustBeAGoodElfFile) {
    struct Case {
        const char* name;
        std::string content;
        bool good;
    };
    const Case cases[] = {
        {"64 bit", kGoodElf, true},
        {"32 bit", elfImage("elf 32 little"), true},
        {"foreign machine", elfImage("elf 32 little\nbyte 18=0x28"), true},
        {"64 bit, big-endian", kBigEndianElf, false},
        {"32 bit, big-endian", elfImage("elf 32 big"), false},
        {"unknown byte order", elfImage("elf 64 little\nbyte 5=0"), false},
        {"unknown class", elfImage("elf 64 little\nbyte 4=3"), false},
        {"header incomplete", kGoodElf.substr(0, 63), false},
        {"script", kScript, false},
        {"empty", "", false},
    };
    package_.ghost("/usr/bin/foo");
    const Configuration configuration = load(tree_);
    const RpmMeta meta = metaOf(package_);
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        record() = ContentValidatorPrivate();
        fs::permissions(directory_.write("usr/bin/foo", test.content), fs::perms::owner_all);
        const CapturedLog log;
        validator_.checkExecutables(configuration, meta, root());
        EXPECT_EQ(log.lines(),
                  test.good ? Lines() : Lines({badFormat("/usr/bin/foo"), kNoMainBinary}));
        EXPECT_EQ(validator_.mainBinExec(), test.good);
        EXPECT_EQ(record().binaryFacts.archSpecificContent, test.good);
    }
}

TEST_F(Executables, MainBinaryIsFoundAnywhereInAPath) {
    for (const char* path : {"/usr/bin/foo2", "/usr/bin/foo/x", "/opt/usr/bin/foo"}) {
        SCOPED_TRACE(path);
        const TemporaryDirectory directory;
        ContentValidator validator{std::string()};
        fs::permissions(directory.write(path + 1, kGoodElf), fs::perms::owner_all);
        const CapturedLog log;
        validator.checkExecutables(load(tree_), metaOf(PackageBuilder("foo").native().ghost(path)),
                                   directory.path());
        EXPECT_THAT(log.lines(), IsEmpty());
        EXPECT_TRUE(validator.mainBinExec());
    }
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
    EXPECT_EQ(record().failures, pkgvet::kViolation);
    EXPECT_FALSE(record().binaryFacts.privateSharedObject);
}

TEST_F(Executables, PrivateSharedObjectIsNoted) {
    record().desktopFacts.qmlOnly = true;
    file("/usr/share/foo/lib/libx.so.1");
    EXPECT_THAT(check(), IsEmpty());
    EXPECT_TRUE(record().binaryFacts.privateSharedObject);
    EXPECT_TRUE(record().binaryFacts.archSpecificContent);
    EXPECT_FALSE(validator_.mainBinExec());
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
    package_ = PackageBuilder("org.foo+").native();
    tree_.libexecDir = "/usr/lib.exec/";
    file("/usr/bin/org.foo+");
    file("/usr/lib.exec/org.foo+/tool");
    file("/usr/lib.exec/orgxfoo+/tool");
    file("/usr/lib.exec/org.fooo/tool");
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
    file("/opt/a");
    file("/opt/b", kBigEndianElf);
    file("/opt/c");
    file("/opt/d", kScript);
    EXPECT_THAT(check(), ElementsAre(badFormat("/opt/b"), badFormat("/opt/d"),
                                     badLocation("/opt/a"), badLocation("/opt/c"), kNoMainBinary));
}

TEST_F(Executables, NoarchPackageIsWarnedForEachElfFile) {
    package_ = PackageBuilder("foo");
    file("/opt/a", kScript);
    file("/usr/bin/foo");
    file("/usr/libexec/foo/tool");
    EXPECT_THAT(check(), ElementsAre(badFormat("/opt/a"), kNotNoarch, kNotNoarch));
    EXPECT_TRUE(record().binaryFacts.archSpecificContent);
}

TEST_F(Executables, FileThatIsListedButNotThereIsNone) {
    package_.ghost("/usr/bin/foo");
    EXPECT_THAT(check(), ElementsAre(kNoMainBinary));
}

TEST_F(Executables, MainBinaryOnceFoundStaysFound) {
    record().binaryFacts.mainBinExec = true;
    EXPECT_THAT(check(), IsEmpty());
}

}  // namespace
