// The steps of the sandbox rule that concern the services of an application.
#include "pkgvet/desktop/sandbox_services.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "pkgvet/desktop/desktop_facts.h"
#include "pkgvet/desktop/desktop_rules.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/rules/desktop_file.h"
#include "tests/support/rules/rule_run.h"

namespace {

using Strings = std::vector<std::string>;

const std::string kWrongDBus =
    errorLine("[pinfold] ExecDBus is incorrect, template rules are equal to Exec section");
const std::string kWrongService = errorLine(
    "[pinfold] ExecSystemService is incorrect, template rules are equal to ExecStart section");
const std::string kIncomplete = errorLine(
    "[pinfold] If application use system service, desktop file should include ExecSystemService, "
    "ExecSystemServiceUser and ExecSystemServiceGroup keys");
const std::string kWrongAccount = errorLine(
    "[pinfold] System service user should be \"lumbra-mdm\", system service group should be "
    "\"privileged\"");
const std::string kHyphenBreaks = errorLine(
    "[pinfold] Application name contains illegal \"-\" symbol. It will cause ExecDBus and/or "
    "ExecSystemService failure in future");
const std::string kHyphenWarning = warningLine(
    "[pinfold] ExecDBus and/or ExecSystemService will not work, remove \"-\" from Application "
    "name");

const std::string kHyphenSection =
    "[X-Application]\nOrganizationName=org.example\nApplicationName=my-app\n";

// Not written through Logger, and so without a label.
std::string remark(int error) {
    return std::string("ExecDBus error: ") + std::strerror(error);
}

// The whole rule on the section, for a desktop file of package, unpacked to root.
struct Judgement {
    Judgement(const std::string& content, const std::string& root, const std::string& profile,
              const std::string& package = kPackage)
        : lines(linesOf([&](pkgvet::Findings* findings) {
              pkgvet::processPinfold(package, desktopEntry(content), rulesNamed(profile), root,
                                     &facts, findings);
          })) {}

    pkgvet::DesktopFacts facts;
    Strings lines;
};

class DBusService : public testing::Test {
protected:
    Judgement launch(const std::string& line) const {
        return {kGoodSection + ("ExecDBus=" + line + "\n"), directory_.path(), "regular"};
    }

    const TemporaryDirectory directory_;
};

TEST_F(DBusService, AProgramInItsPlaceIsRight) {
    directory_.write("usr/bin/org.example.app", "");
    for (const char* line : {"/usr/bin/org.example.app", "/usr/bin/org.example.app --flag",
                             "/usr/bin/org.example.app "}) {
        SCOPED_TRACE(line);
        const Judgement judgement = launch(line);
        EXPECT_EQ(judgement.lines, Strings());
        EXPECT_TRUE(judgement.facts.correctDbus);
    }
}

TEST_F(DBusService, SuchALineIsJudgedByItsTextAndTheMissingFileOnlyRemarkedOn) {
    const Judgement judgement = launch("/usr/bin/org.example.app --flag");
    EXPECT_EQ(judgement.lines, Strings{remark(ENOENT)});
    EXPECT_TRUE(judgement.facts.correctDbus);
}

// Of two arguments the first stays with the program, so that no such file is there.
TEST_F(DBusService, OnlyTheLastBlankDivides) {
    directory_.write("usr/bin/org.example.app", "");
    directory_.write("usr/libexec/org.example.app/run", "");
    EXPECT_EQ(launch("/usr/bin/org.example.app -a -b").lines, Strings{remark(ENOENT)});
    EXPECT_EQ(launch("/usr/libexec/org.example.app/run -a").lines, Strings());
}

TEST_F(DBusService, AnotherProgramIsWrong) {
    directory_.write("usr/bin/org.example.application", "");
    directory_.write("opt/x/run", "");
    for (const char* line : {"/usr/bin/org.example.application", "/opt/x/run", "/opt/x/run --x",
                             "/usr/bin/../../opt/x/run"}) {
        SCOPED_TRACE(line);
        const Judgement judgement = launch(line);
        EXPECT_EQ(judgement.lines, Strings{kWrongDBus});
        EXPECT_FALSE(judgement.facts.correctDbus);
    }
}

TEST_F(DBusService, ALineCountsThroughWhereItLeads) {
    directory_.write("usr/libexec/org.example.app/run", "");
    directory_.write("usr/libexec/org.example.application", "");
    std::filesystem::create_directories(directory_ / "opt/x");
    std::filesystem::create_symlink("../../usr/libexec/org.example.app/run",
                                    directory_ / "opt/x/run");
    std::filesystem::create_directories(directory_ / "usr/bin");
    std::filesystem::create_symlink("../libexec/org.example.app",
                                    directory_ / "usr/bin/org.example.application");
    for (const char* line : {"/usr/libexec/org.example.app/run", "/opt/x/run", "/opt/x/run --x",
                             "/usr/bin/org.example.application",
                             // The text may stand anywhere in the resolved path.
                             "/usr/libexec/org.example.application"}) {
        SCOPED_TRACE(line);
        EXPECT_EQ(launch(line).lines, Strings());
    }
}

TEST_F(DBusService, OfAPathThatDoesNotResolveThePartThatDidIsJudged) {
    directory_.write("usr/libexec/org.example.app/run", "");
    EXPECT_EQ(launch("/usr/libexec/org.example.app/missing/program").lines,
              Strings{remark(ENOENT)});
    EXPECT_EQ(launch("/usr/libexec/missing/org.example.app").lines,
              (Strings{remark(ENOENT), kWrongDBus}));
}

TEST_F(DBusService, WhatLeadsNowhereIsRemarkedOnAndJudged) {
    std::filesystem::create_symlink("circle", directory_ / "circle");
    EXPECT_EQ(launch("/circle").lines, (Strings{remark(ELOOP), kWrongDBus}));
    EXPECT_EQ(launch("/" + std::string(300, 'a')).lines,
              (Strings{remark(ENAMETOOLONG), kWrongDBus}));
    EXPECT_EQ(launch("/" + std::string(100000, 'a')).lines,
              (Strings{remark(ENAMETOOLONG), kWrongDBus}));
}

// The key is there, and the extraction directory itself is where its empty value leads.
TEST_F(DBusService, AnEmptyLineIsWrong) {
    EXPECT_EQ(launch("").lines, Strings{kWrongDBus});
}

TEST_F(DBusService, ALinkOutOfThePackageIsResolvedAndNoMore) {
    const TemporaryDirectory outside;
    outside.write("usr/libexec/org.example.app/run", "");
    std::filesystem::create_symlink(outside / "usr/libexec/org.example.app/run",
                                    directory_ / "run");
    std::filesystem::create_symlink("/dev/zero", directory_ / "zero");
    EXPECT_EQ(launch("/run").lines, Strings());
    EXPECT_EQ(launch("/zero").lines, Strings{kWrongDBus});
}

TEST(DBusServiceName, AHyphenIsAnErrorAsSoonAsThereIsAService) {
    const Judgement judgement(kHyphenSection + "ExecDBus=/usr/bin/org.example.my-app\n", "",
                              "regular", "org.example.my-app");
    EXPECT_EQ(judgement.lines, (Strings{remark(ENOENT), kHyphenBreaks}));
    EXPECT_TRUE(judgement.facts.dbusError);
    EXPECT_TRUE(judgement.facts.dbusWarning);
}

const char* const kUser = "ExecSystemServiceUser=lumbra-mdm\n";
const char* const kGroup = "ExecSystemServiceGroup=privileged\n";

std::string service(const std::string& line) {
    return "ExecSystemService=" + line + "\n";
}

Strings findings(const std::string& keys) {
    return Judgement(kGoodSection + keys, "", "mdm").lines;
}

TEST(SystemService, ACompleteOneInItsPlaceIsRight) {
    EXPECT_EQ(findings(service("/usr/libexec/org.example.app/run -x") + kUser + kGroup +
                       "ExecSystemServiceAutostart=true\n"),
              Strings());
    EXPECT_EQ(findings("ExecSystemServiceAutostart=true\n"), Strings());
    EXPECT_EQ(findings(""), Strings());
}

TEST(SystemService, OneOrTwoOfItsKeysAreIncompleteAndNotJudged) {
    for (const std::string& keys :
         {std::string(kUser), std::string(kGroup), service("/opt/x"),
          service("/opt/x") + "ExecSystemServiceUser=root\n", std::string(kUser) + kGroup}) {
        SCOPED_TRACE(keys);
        EXPECT_EQ(findings(keys), Strings{kIncomplete});
    }
}

TEST(SystemService, TheProgramLiesInThePackagesOwnDirectory) {
    for (const char* line :
         {"/opt/x", "/usr/libexec/org.example.app", "/usr/libexec/org.example.application/run", "",
          "/usr/bin/org.example.app"}) {
        SCOPED_TRACE(line);
        const Judgement judgement(kGoodSection + service(line) + kUser + kGroup, "", "mdm");
        EXPECT_EQ(judgement.lines, Strings{kWrongService});
        EXPECT_FALSE(judgement.facts.correctSystemService);
    }
}

TEST(SystemService, UserAndGroupAreFixed) {
    const std::string line = service("/usr/libexec/org.example.app/");
    EXPECT_EQ(findings(line + "ExecSystemServiceUser=root\n" + kGroup), Strings{kWrongAccount});
    EXPECT_EQ(findings(line + kUser + "ExecSystemServiceGroup=root\n"), Strings{kWrongAccount});
    EXPECT_EQ(findings(service("/x") + "ExecSystemServiceUser=\nExecSystemServiceGroup=\n"),
              (Strings{kWrongService, kWrongAccount}));
}

TEST(SystemService, AHyphenIsAnErrorOnlyWithAllThreeKeys) {
    const std::string keys = service("/usr/libexec/org.example.my-app/run") + kUser;
    EXPECT_EQ(Judgement(kHyphenSection + keys, "", "mdm", "org.example.my-app").lines,
              (Strings{kIncomplete, kHyphenWarning}));
    EXPECT_EQ(Judgement(kHyphenSection + keys + kGroup, "", "mdm", "org.example.my-app").lines,
              Strings{kHyphenBreaks});
}

TEST(SystemService, InAnotherProfileItsKeysAreNotAllowedAndNothingElseIsJudged) {
    const Judgement judgement(kGoodSection + service("/opt/x") + "ExecSystemServiceUser=root\n", "",
                              "regular");
    EXPECT_EQ(judgement.lines,
              (Strings{errorLine("[ExecSystemService] X-Pinfold key is not allowed"),
                       errorLine("[ExecSystemServiceUser] X-Pinfold key is not allowed")}));
    EXPECT_TRUE(judgement.facts.correctSystemService);
}

}  // namespace
