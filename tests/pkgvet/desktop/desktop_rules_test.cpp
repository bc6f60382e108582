// The rules on the desktop file in their order, and what they make of the verdict.
#include "pkgvet/desktop/desktop_rules.h"

#include <gtest/gtest.h>

#include "pkgvet/desktop/desktop_facts.h"
#include "pkgvet/report/findings.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/rules/desktop_file.h"

namespace {

using Strings = std::vector<std::string>;

struct Judgement {
    Strings lines;
    pkgvet::Findings findings;
};

// The package is unpacked to an empty directory, so that no program is found in it.
Judgement judge(const std::string& content, const char* profile = "regular") {
    const TemporaryDirectory root;
    const Configuration& rules = rulesNamed(profile);
    const DesktopEntry entry = desktopEntry(content);
    pkgvet::DesktopFacts facts;
    Judgement judgement;
    const CapturedLog log;
    pkgvet::processDesktopFile(kPackage, entry, &facts, &judgement.findings);
    pkgvet::processPinfold(kPackage, entry, rules, root.path(), &facts, &judgement.findings);
    pkgvet::processBackgroundTasks(kPackage, entry, facts, &judgement.findings);
    judgement.lines = log.lines();
    return judgement;
}

std::string entryAnd(const std::string& rest) {
    return std::string(kGoodEntry) + kGoodSection + rest;
}

TEST(DesktopRules, AGoodDesktopFileHasNoFinding) {
    const Judgement judgement =
        judge(entryAnd("Permissions=Internet\nIntents=Start\n"
                       "[X-Tessara-Application]\nOrientation=All\n[X-Tessara-SplashScreen]\n"
                       "GradientStartColor=#FFF\n[X-Task sync]\nType=worker\n"
                       "Permissions=Internet\n"));
    EXPECT_EQ(judgement.lines, Strings());
    EXPECT_TRUE(judgement.findings.isAccepted(true));
}

TEST(DesktopRules, WarningsAndRemarksRejectNothing) {
    struct Case {
        const char* name;
        std::string content;
        std::string line;
    };
    const Case cases[] = {
        {"deprecated section",
         std::string(kGoodEntry) +
             "[X-Pinfold]\nOrganizationName=org.example\nApplicationName=app\n",
         warningLine("[pinfold] \"X-Pinfold\" section will be deprecated in future versions, "
                     "please use \"X-Application\" instead")},
        {"application type",
         "[Desktop Entry]\nType=Application\nName=App\nIcon=org.example.app\n"
         "Exec=org.example.app\nX-Dorrit-Application-Type=generic\n" +
             std::string(kGoodSection),
         warningLine("[desktop] X-Dorrit-Application-Type should be ostrand-qt5 (not a Ostrand "
                     "app?)")},
        {"launcher",
         "[Desktop Entry]\nType=Application\nName=App\nIcon=org.example.app\n"
         "Exec=lumbra-qml org.example.app\nX-Dorrit-Application-Type=ostrand-qt5\n" +
             std::string(kGoodSection),
         infoLine("[desktop] Application is a QML-only app")},
        {"program that is not there", entryAnd("ExecDBus=/usr/bin/org.example.app --x\n"),
         "ExecDBus error: No such file or directory"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        const Judgement judgement = judge(test.content);
        EXPECT_EQ(judgement.lines, Strings{test.line});
        EXPECT_TRUE(judgement.findings.isAccepted(true));
    }
}

// Each row breaks one rule, so that its bit alone decides.
TEST(DesktopRules, EachViolationRejectsUnlessValidationIsOff) {
    struct Case {
        const char* name;
        std::string content;
        std::string line;
    };
    const Case cases[] = {
        {"group", entryAnd("[Other]\n"), errorLine("[desktop] 'Other' group is disallowed")},
        {"field", entryAnd("[X-Tessara-Application]\nIconMode=Fit\n"),
         errorLine("[desktop] invalid value 'Fit' in 'X-Tessara-Application/IconMode' field")},
        {"section", kGoodEntry,
         errorLine("[pinfold] X-Application section should be specified in desktop file")},
        {"outcome",
         std::string(kGoodEntry) + "[Pinfold]\nOrganizationName=org.example\nApplicationName=app\n",
         errorLine("[pinfold] Pinfold section is not allowed (use X-Application instead)")},
        {"intent", entryAnd("Intents=open\n"), errorLine("Invalid intent specification: open")},
        {"task key", entryAnd("[X-Task sync]\nType=worker\nOther=1\n"),
         errorLine("[desktop] Key 'Other' disallowed for background tasks")},
        {"task", entryAnd("[X-Task sync]\nType=hourly\n"),
         errorLine("Unsupported background task type: hourly")},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        const Judgement judgement = judge(test.content);
        EXPECT_EQ(judgement.lines, Strings{test.line});
        EXPECT_FALSE(judgement.findings.isAccepted(true));
        EXPECT_TRUE(judgement.findings.isAccepted(false));
    }
}

TEST(DesktopRules, OneProfileHasSystemServices) {
    const std::string content = entryAnd(
        "ExecSystemService=/usr/libexec/org.example.app/run\n"
        "ExecSystemServiceUser=lumbra-mdm\nExecSystemServiceGroup=privileged\n");
    EXPECT_EQ(judge(content, "mdm").lines, Strings());
    EXPECT_EQ(judge(content).lines,
              (Strings{errorLine("[ExecSystemService] X-Pinfold key is not allowed"),
                       errorLine("[ExecSystemServiceUser] X-Pinfold key is not allowed"),
                       errorLine("[ExecSystemServiceGroup] X-Pinfold key is not allowed")}));
}

TEST(DesktopRules, TasksAreJudgedByTheSectionThatWasChosen) {
    EXPECT_EQ(judge(entryAnd("Permissions=Location\n"
                             "[X-Pinfold]\nOrganizationName=org.example\nApplicationName=app\n"
                             "Permissions=Internet\n"
                             "[X-Service b]\nType=worker\nPermissions=Location\n"
                             "[X-Task ab]\nType=worker\nPermissions=Internet\n"))
                  .lines,
              (Strings{errorLine("[pinfold] Multiple pinfold sections are not allowed, please use "
                                 "only \"X-Application\""),
                       warningLine("[pinfold] \"X-Pinfold\" section will be deprecated in future "
                                   "versions, please use \"X-Application\" instead"),
                       errorLine("Invalid background task specification: X-Service b"),
                       errorLine("Task permission needs to be in application too: Location")}));
}

}  // namespace
