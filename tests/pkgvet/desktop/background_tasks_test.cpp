// The rule on the background tasks of an application.
#include <gtest/gtest.h>

#include "pkgvet/content/content_validator.h"
#include "tests/support/captured_log.h"
#include "tests/support/desktop_file.h"

namespace {

using Strings = std::vector<std::string>;

// What the rule says once the two rules ahead of it have run.
Strings findings(const std::string& content) {
    const DesktopEntry entry = desktopEntry(content);
    ContentValidator validator("");
    CapturedLog log;
    validator.processDesktopFile(packageHeader(kPackage), entry);
    validator.processPinfold(rulesNamed("regular"), packageHeader(kPackage), entry, "");
    log.clear();
    validator.processBackgroundTasks(packageHeader(kPackage), entry);
    return log.lines();
}

Strings findingsOfTask(const std::string& task) {
    return findings(std::string(kGoodEntry) + kGoodSection + "Permissions=Internet;Audio\n" + task);
}

TEST(BackgroundTasks, AGoodTaskHasNoFinding) {
    EXPECT_EQ(findingsOfTask("[X-Task sync]\nType=periodic\nExec=/usr/bin/org.example.app --sync\n"
                             "Permissions=Internet\nConditions=internet:wifi;charging\n"),
              Strings());
    EXPECT_EQ(findingsOfTask(""), Strings());
}

TEST(BackgroundTasks, AGroupWithoutKeysLacksItsType) {
    EXPECT_EQ(findingsOfTask("[X-Task sync]\n"),
              Strings{errorLine("Unsupported background task type: ")});
}

TEST(BackgroundTasks, OtherKeysAreReportedAndTheGroupIsJudgedFurther) {
    EXPECT_EQ(findingsOfTask("[X-Service sync]\nX-Foo=1\nType=worker\ntype=1\nType[de]=1\n"
                             "Exec=sh\n"),
              (Strings{errorLine("[desktop] Key 'X-Foo' disallowed for background tasks"),
                       errorLine("[desktop] Key 'type' disallowed for background tasks"),
                       errorLine("[desktop] Key 'Type[de]' disallowed for background tasks"),
                       errorLine("Executable missing or in wrong path: sh")}));
}

TEST(BackgroundTasks, PermissionsAreComparedWithThoseOfTheApplication) {
    EXPECT_EQ(findingsOfTask("[X-Task sync]\nType=worker\nPermissions=Internet;Location;Audio\n"),
              (Strings{errorLine("Task permission needs to be in application too: Location"),
                       errorLine("Permission not allowed for tasks: Audio")}));
}

TEST(BackgroundTasks, WithoutASandboxSectionTheApplicationHasNoPermissions) {
    EXPECT_EQ(
        findings(std::string(kGoodEntry) + "[X-Task sync]\nType=worker\nPermissions=Location\n"),
        Strings{errorLine("Task permission needs to be in application too: Location")});
}

TEST(BackgroundTasks, ThePermissionsAreThoseOfTheChosenSection) {
    EXPECT_EQ(findingsOfTask("[Pinfold]\nPermissions=Location\n"
                             "[X-Task sync]\nType=worker\nPermissions=Internet;Location\n"),
              Strings{errorLine("Task permission needs to be in application too: Internet")});
}

TEST(BackgroundTasks, GroupsAreJudgedInTheOrderOfTheFile) {
    EXPECT_EQ(findingsOfTask("[X-Task x-y]\nType=a\n[X-Service two]\nType=b\n[X-Task ]\nType=c\n"),
              (Strings{errorLine("Invalid background task specification: X-Task x-y"),
                       errorLine("Unsupported background task type: a"),
                       errorLine("Unsupported background task type: b"),
                       errorLine("Invalid background task specification: X-Task "),
                       errorLine("Unsupported background task type: c")}));
}

TEST(BackgroundTasks, WithoutTheRuleAheadThereAreNoGroups) {
    ContentValidator validator("");
    const CapturedLog log;
    validator.processBackgroundTasks(packageHeader(kPackage), desktopEntry("[X-Task x-y]\n"));
    EXPECT_EQ(log.lines(), Strings());
}

// The time would grow with the product if each task made its own set of the permissions.
TEST(BackgroundTasks, ManyTasksAndManyPermissionsAreJudged) {
    std::string permissions = "Permissions=";
    std::string tasks;
    for (int i = 0; i < 20000; ++i) {
        const std::string number = std::to_string(i);
        permissions.append("x@").append(number).append(";");
        tasks.append("[X-Task t").append(number).append("]\nType=worker\n");
        tasks.append("Permissions=x@").append(number).append("\n");
    }
    EXPECT_EQ(findings(std::string(kGoodEntry) + kGoodSection + permissions + "\n" + tasks),
              Strings());
}

}  // namespace
