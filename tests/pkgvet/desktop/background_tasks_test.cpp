// The rule on the background tasks of an application.
#include <gtest/gtest.h>

#include "pkgvet/desktop/desktop_facts.h"
#include "pkgvet/desktop/desktop_rules.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/rules/desktop_file.h"
#include "tests/support/rules/rule_run.h"

namespace {

using Strings = std::vector<std::string>;

// What the rule says of these groups, in a file whose sandbox section is called section.
Strings findings(const std::string& content, const Strings& groups, const std::string& section) {
    pkgvet::DesktopFacts facts;
    facts.pinfoldGroupName = section;
    facts.backgroundTaskGroups = groups;
    return linesOf([&](pkgvet::Findings* sink) {
        pkgvet::processBackgroundTasks(kPackage, desktopEntry(content), facts, sink);
    });
}

// What it says of one group of an application that has two permissions.
Strings findingsOfTask(const std::string& group, const std::string& keys) {
    return findings(
        std::string(kGoodSection) + "Permissions=Internet;Audio\n[" + group + "]\n" + keys, {group},
        "X-Application");
}

TEST(BackgroundTasks, AGoodTaskHasNoFinding) {
    EXPECT_EQ(findingsOfTask("X-Task sync",
                             "Type=periodic\nExec=/usr/bin/org.example.app --sync\n"
                             "Permissions=Internet\nConditions=internet:wifi;charging\n"),
              Strings());
}

TEST(BackgroundTasks, AGroupWithoutKeysLacksItsType) {
    EXPECT_EQ(findingsOfTask("X-Task sync", ""),
              Strings{errorLine("Unsupported background task type: ")});
}

TEST(BackgroundTasks, OtherKeysAreReportedAndTheGroupIsJudgedFurther) {
    EXPECT_EQ(
        findingsOfTask("X-Service sync", "X-Foo=1\nType=worker\ntype=1\nType[de]=1\nExec=sh\n"),
        (Strings{errorLine("[desktop] Key 'X-Foo' disallowed for background tasks"),
                 errorLine("[desktop] Key 'type' disallowed for background tasks"),
                 errorLine("[desktop] Key 'Type[de]' disallowed for background tasks"),
                 errorLine("Executable missing or in wrong path: sh")}));
}

TEST(BackgroundTasks, PermissionsAreComparedWithThoseOfTheApplication) {
    EXPECT_EQ(findingsOfTask("X-Task sync", "Type=worker\nPermissions=Internet;Location;Audio\n"),
              (Strings{errorLine("Task permission needs to be in application too: Location"),
                       errorLine("Permission not allowed for tasks: Audio")}));
}

TEST(BackgroundTasks, WithoutASandboxSectionTheApplicationHasNoPermissions) {
    EXPECT_EQ(findings("[X-Task sync]\nType=worker\nPermissions=Location\n", {"X-Task sync"}, ""),
              Strings{errorLine("Task permission needs to be in application too: Location")});
}

TEST(BackgroundTasks, ThePermissionsAreThoseOfTheChosenSection) {
    EXPECT_EQ(findings("[X-Application]\nPermissions=Internet\n[Pinfold]\nPermissions=Location\n"
                       "[X-Task sync]\nType=worker\nPermissions=Internet;Location\n",
                       {"X-Task sync"}, "Pinfold"),
              Strings{errorLine("Task permission needs to be in application too: Internet")});
}

TEST(BackgroundTasks, GroupsAreJudgedInTheOrderInWhichTheyWereNoted) {
    EXPECT_EQ(findings("[X-Task x-y]\nType=a\n[X-Service two]\nType=b\n[X-Task ]\nType=c\n",
                       {"X-Task x-y", "X-Service two", "X-Task "}, ""),
              (Strings{errorLine("Invalid background task specification: X-Task x-y"),
                       errorLine("Unsupported background task type: a"),
                       errorLine("Unsupported background task type: b"),
                       errorLine("Invalid background task specification: X-Task "),
                       errorLine("Unsupported background task type: c")}));
}

TEST(BackgroundTasks, AGroupThatWasNotNotedIsNotJudged) {
    EXPECT_EQ(findings("[X-Task x-y]\n", {}, ""), Strings());
}

// The time would grow with the product if each task made its own set of the permissions.
TEST(BackgroundTasks, ManyTasksAndManyPermissionsAreJudged) {
    std::string permissions = "Permissions=";
    std::string tasks;
    Strings groups;
    for (int i = 0; i < 20000; ++i) {
        const std::string number = std::to_string(i);
        permissions.append("x@").append(number).append(";");
        groups.push_back("X-Task t" + number);
        tasks.append("[").append(groups.back()).append("]\nType=worker\n");
        tasks.append("Permissions=x@").append(number).append("\n");
    }
    EXPECT_EQ(
        findings(std::string(kGoodSection) + permissions + "\n" + tasks, groups, "X-Application"),
        Strings());
}

}  // namespace
