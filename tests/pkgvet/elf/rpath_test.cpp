// The rule on the run path of the main binary.
#include <gmock/gmock.h>

#include "pkgvet/elf/binary_facts.h"
#include "pkgvet/elf/binary_rules.h"
#include "pkgvet/elf/elf_reader.h"
#include "pkgvet/report/findings.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/elf/compiled_elf.h"
#include "tests/support/elf/elf_image.h"

namespace pkgvet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kWarning = warningLine("[rpath] The rpath in binary is empty");
const std::string kNotAllowed = errorLine("[rpath] This rpath in binary is not allowed");
const std::string kMissing = errorLine("[rpath] Rpath is missing where it is mandatory");

std::string imageWith(const std::string& entry) {
    return elfImage("elf 64 little\nsection strtab\nsection dynamic link=1\n" + entry);
}

class Rpath : public testing::Test {
protected:
    // The lines for the main binary at path, in a package "foo".
    std::vector<std::string> checkFile(const std::string& path, bool isQmlOnly = false) {
        const CapturedLog log;
        checkRpath("foo", path, isQmlOnly, &facts_, &findings_);
        return log.lines();
    }

    // The lines for a main binary with this dynamic entry, none if it is empty.
    std::vector<std::string> check(const std::string& entry, bool isQmlOnly = false) {
        return checkFile(directory_.write("binary", imageWith(entry)), isQmlOnly);
    }

    TemporaryDirectory directory_;
    BinaryFacts facts_;
    Findings findings_;
};

TEST_F(Rpath, PathsThatPassAndPathsThatFail) {
    struct Case {
        const char* rpath;
        bool passes;
    };
    const Case cases[] = {
        // The package's own directories and what is below them.
        {"$ORIGIN/../share/foo/lib", true},
        {"$ORIGIN/../share/foo/lib/", true},
        {"$ORIGIN/../share/foo/lib/sub", true},
        {"$ORIGIN/../share/foo/lib/../../..", true},
        {"$ORIGIN/../share/foo/libs", false},
        {"$ORIGIN/../share/foo", false},
        {"${ORIGIN}/../share/foo/lib", false},
        {"/usr/share/foo/lib", true},
        {"/usr/share/foo/lib/qt", true},
        {"/usr/share/foo/libs", true},
        {"/usr/share/foo/libs/x", true},
        {"/usr/share/foo/libfoo", false},
        {"/usr/share/foo/libss", false},
        {"/usr/share/foo/li", false},
        {"/usr/share/FOO/lib", false},
        {"/usr/share/bar/lib", false},
        {"//usr/share/foo/lib", false},
        {"/usr/lib/3rdparty/foo", true},
        {"/usr/lib/3rdparty/foo/bar", true},
        {"/usr/lib/3rdparty/other", true},
        // Directories of the system.
        {"/usr/lib", false},
        {"/usr/lib/", true},
        {"/usr/lib64", false},
        {"/usr/lib64/", true},
        {"/usr/lib64/x", true},
        {"/usr/lib32/x", false},
        {"/usr/libx/y", false},
        {"//usr/lib/x", true},
        {"////usr/lib64/x", true},
        {"/usr//lib/x", false},
        {"/usr/lib//x", true},
        {"/usr/lib/../../etc", true},
        {"usr/lib/x", false},
        {"$ORIGIN/usr/lib/x", false},
        {"/", false},
        {"/opt/x", false},
        // Several of them: a fold.
        {"/usr/share/foo/lib:/usr/lib/3rdparty/foo", true},
        {"/usr/share/foo/lib:/usr/lib/y", true},
        {"/opt/x:/usr/lib/y", true},
        {"/opt/x:/usr/lib64/y", true},
        {"/opt/x:/usr/share/foo/lib", false},
        {"/opt/x:/usr/lib/3rdparty/foo", true},
        {"/usr/lib/y:/opt/x", false},
        {"/opt/x:/usr/lib/y:/usr/share/foo/lib", true},
        {"/opt/x:/usr/share/foo/lib:/usr/lib/y", true},
        // Empty ones count, but not behind the last separator.
        {"/usr/lib/a:", true},
        {"/usr/lib/a::", false},
        {"/usr/lib/a::/usr/lib/b", true},
        {":/usr/lib/a", true},
        {":/usr/share/foo/lib", false},
        {":", false},
        {"::", false},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.rpath);
        facts_ = BinaryFacts();
        findings_ = Findings();
        const std::vector<std::string> lines = check(std::string("rpath ") + test.rpath);
        EXPECT_EQ(lines, test.passes ? std::vector<std::string>() : std::vector{kNotAllowed});
        EXPECT_TRUE(facts_.rpathExists);
        EXPECT_EQ(facts_.rpathStatus, test.passes);
        EXPECT_EQ(findings_.failures(), test.passes ? 0U : kViolation);
    }
}

TEST_F(Rpath, EachOutcome) {
    struct Case {
        const char* name;
        bool isQmlOnly;
        std::string entry;
        bool linksPrivateLibrary;
        bool exists;
        bool status;
        std::vector<std::string> lines;
    };
    const Case cases[] = {
        {"QML, none", true, "", false, false, false, {}},
        {"QML, none, with a library", true, "", true, false, false, {}},
        {"QML, passes", true, "rpath /usr/lib/x", true, true, true, {}},
        {"QML, fails", true, "rpath /opt", true, true, false, {}},
        {"none", false, "", false, false, true, {kWarning}},
        {"none, with a library", false, "", true, false, false, {kWarning, kMissing}},
        {"passes", false, "rpath /usr/lib/x", false, true, true, {}},
        {"passes, with a library", false, "rpath /usr/lib/x", true, true, true, {}},
        {"fails", false, "rpath /opt", false, true, false, {kNotAllowed}},
        {"fails, with a library", false, "rpath /opt", true, true, false, {kNotAllowed}},
        {"new kind", false, "runpath /opt", false, false, true, {kWarning}},
        {"new kind, with a library",
         false,
         "runpath /opt",
         true,
         false,
         false,
         {kWarning, kMissing}},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        facts_ = BinaryFacts();
        findings_ = Findings();
        facts_.linksPrivateLibrary = test.linksPrivateLibrary;
        EXPECT_EQ(check(test.entry, test.isQmlOnly), test.lines);
        EXPECT_EQ(facts_.rpathExists, test.exists);
        EXPECT_EQ(facts_.rpathStatus, test.status);
        const bool hasError = !test.lines.empty() && test.lines.back() != kWarning;
        EXPECT_EQ(findings_.failures(), hasError ? kViolation : 0U);
    }
}

TEST_F(Rpath, StatusOfAnEmptyOneStaysInQmlPackages) {
    facts_.rpathStatus = true;
    EXPECT_THAT(check("", true), IsEmpty());
    EXPECT_TRUE(facts_.rpathStatus);
}

TEST_F(Rpath, WhatWasFoundOnceIsNotForgotten) {
    EXPECT_THAT(check("rpath /usr/lib/x"), IsEmpty());
    EXPECT_THAT(check(""), IsEmpty());
    EXPECT_TRUE(facts_.rpathExists);
}

TEST_F(Rpath, MissingMainBinaryHasAnEmptyOne) {
    EXPECT_THAT(checkFile(directory_ / "missing"), ElementsAre(kWarning));
    EXPECT_THAT(checkFile(directory_.write("script", "#!/bin/sh\n")), ElementsAre(kWarning));
    EXPECT_EQ(findings_.failures(), 0U);
}

TEST_F(Rpath, IsEmptyWhenThereIsNoneOfTheOldKind) {
    const auto isEmpty = [this](const std::string& entry) {
        const std::string path = directory_.write("binary", imageWith(entry));
        return isRpathEmpty(ElfReader(path.c_str()));
    };
    EXPECT_TRUE(isEmpty(""));
    EXPECT_TRUE(isEmpty("runpath /usr/lib/x"));
    EXPECT_FALSE(isEmpty("rpath :"));
}

TEST_F(Rpath, NameOfThePackageIsNotAPattern) {
    const auto linesFor = [this](const std::string& rpath) {
        const std::string binary = directory_.write("binary", imageWith("rpath " + rpath));
        const CapturedLog log;
        checkRpath("org.foo+", binary, false, &facts_, &findings_);
        return log.lines();
    };
    EXPECT_THAT(linesFor("$ORIGIN/../share/org.foo+/lib"), IsEmpty());
    EXPECT_THAT(linesFor("$ORIGIN/../share/orgxfoo/lib"), ElementsAre(kNotAllowed));
}

TEST_F(Rpath, LinkerWritesBothKinds) {
    const char* const program = "int main() {}\n";
    const std::string old = compileElf(directory_, "old", program,
                                       {"-Wl,--disable-new-dtags,-rpath,/usr/share/foo/lib"});
    const std::string young =
        compileElf(directory_, "new", program, {"-Wl,--enable-new-dtags,-rpath,/opt/x"});
    EXPECT_THAT(checkFile(old), IsEmpty());
    facts_ = BinaryFacts();
    EXPECT_THAT(checkFile(young), ElementsAre(kWarning));
}

}  // namespace
}  // namespace pkgvet
