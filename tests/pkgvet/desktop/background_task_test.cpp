// The judgement of one background task.
#include "pkgvet/desktop/background_task.h"

#include <gtest/gtest.h>

#include "tests/support/base/captured_log.h"

namespace {

using Strings = std::vector<std::string>;

BackgroundTask goodTask() {
    return {"X-Task sync", "periodic", "", {}, {}};
}

void expectFinding(const BackgroundTask& task, const Strings& lines) {
    const CapturedLog log;
    EXPECT_EQ(validateBackgroundTask(task, "foo", {"Internet"}), lines.empty());
    EXPECT_EQ(log.lines(), lines);
}

Strings finding(const std::string& text) {
    return {errorLine(text)};
}

TEST(BackgroundTask, TheNameIsAWordBehindThePrefixAndBlanks) {
    for (const char* group :
         {"X-Task ab", "X-Service ab", "X-Service  two", "X-Task   A1", "X-Task sync\n"}) {
        SCOPED_TRACE(group);
        BackgroundTask task = goodTask();
        task.group = group;
        expectFinding(task, {});
    }
    for (const char* group : {"X-Task a", "X-Task ", "X-Task", "X-Service x-y", "X-Task 1a",
                              "X-Task a b", "X-Task ab ", "X-Taskab", "X-Service x_y", " X-Task ab",
                              "X-Task \tab", "X-Task \xC3\xA4\xC3\xA4", ""}) {
        SCOPED_TRACE(group);
        BackgroundTask task = goodTask();
        task.group = group;
        expectFinding(task,
                      finding(std::string("Invalid background task specification: ") + group));
    }
}

TEST(BackgroundTask, TheTypeIsOneOfFour) {
    for (const char* type : {"worker", "periodic", "scheduled", "session-start"}) {
        BackgroundTask task = goodTask();
        task.type = type;
        expectFinding(task, {});
    }
    for (const char* type : {"", "Worker", "hourly", "worker "}) {
        SCOPED_TRACE(type);
        BackgroundTask task = goodTask();
        task.type = type;
        expectFinding(task, finding(std::string("Unsupported background task type: ") + type));
    }
}

TEST(BackgroundTask, TheProgramIsTheMainOneOrOneBesideIt) {
    for (const char* exec : {"", "foo", "foo --daemon", "/usr/bin/foo", "/usr/bin/foo --daemon",
                             "foo.sync", "/usr/bin/foo.sync-all arg", "foo.a_", "foo.Ab9-_ x y"}) {
        SCOPED_TRACE(exec);
        BackgroundTask task = goodTask();
        task.exec = exec;
        expectFinding(task, {});
    }
}

TEST(BackgroundTask, OtherProgramsAreWrong) {
    struct Case {
        const char* exec;
        const char* line;
    };
    const Case cases[] = {
        {"/usr/libexec/foo", "Executable missing or in wrong path: /usr/libexec/foo"},
        {"foobar --x", "Executable missing or in wrong path: foobar"},
        {" foo", "Executable missing or in wrong path: "},
        {"foo\tx", "Executable missing or in wrong path: foo\tx"},
        {"/usr/bin/foobar", "Executable missing or in wrong path: /usr/bin/foobar"},
        {"bin/foo", "Executable missing or in wrong path: bin/foo"},
        {"foo.a", "Invalid characters in executable name: foo.a"},
        {"foo.", "Invalid characters in executable name: foo."},
        {"foo.1a", "Invalid characters in executable name: foo.1a"},
        {"/usr/bin/foo.a.b x", "Invalid characters in executable name: /usr/bin/foo.a.b"},
        {"foo.sync/../../sh", "Invalid characters in executable name: foo.sync/../../sh"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.exec);
        BackgroundTask task = goodTask();
        task.exec = test.exec;
        expectFinding(task, finding(test.line));
    }
}

TEST(BackgroundTask, EverythingIsJudgedInItsOrder) {
    expectFinding({"X-Task x-y", "hourly", "sh", {"Audio"}, {"Charging"}},
                  {errorLine("Invalid background task specification: X-Task x-y"),
                   errorLine("Unsupported background task type: hourly"),
                   errorLine("Executable missing or in wrong path: sh"),
                   errorLine("Permission not allowed for tasks: Audio"),
                   errorLine("Invalid condition specification: Charging")});
}

TEST(BackgroundTask, AnyOneFindingMakesTheAnswerFalse) {
    BackgroundTask permission = goodTask();
    permission.permissions = {"Audio", "Internet"};
    expectFinding(permission, finding("Permission not allowed for tasks: Audio"));
    BackgroundTask condition = goodTask();
    condition.conditions = {"moon", "idle"};
    expectFinding(condition, finding("Unknown task condition: moon"));
}

TEST(BackgroundTask, OnlyATypeIsMandatory) {
    expectFinding({"X-Task sync", "", "", {}, {}}, finding("Unsupported background task type: "));
}

TEST(TaskPermissions, MustBeThoseOfTheApplication) {
    const CapturedLog log;
    EXPECT_TRUE(validateTaskPermissions({}, {}));
    EXPECT_TRUE(validateTaskPermissions({"Internet", "Internet"}, {"Location", "Internet"}));
    EXPECT_EQ(log.lines(), Strings());
    EXPECT_FALSE(validateTaskPermissions({"Location"}, {}));
    EXPECT_FALSE(validateTaskPermissions({"Location", "Internet", "internet"}, {"Internet"}));
    EXPECT_EQ(log.lines(),
              (Strings{errorLine("Task permission needs to be in application too: Location"),
                       errorLine("Task permission needs to be in application too: Location"),
                       errorLine("Task permission needs to be in application too: internet")}));
}

TEST(TaskPermissions, SomeAreForbiddenEvenIfTheApplicationHasThem) {
    for (const char* permission : {"Base", "Audio", "Camera", "Microphone"}) {
        SCOPED_TRACE(permission);
        const CapturedLog log;
        EXPECT_FALSE(validateTaskPermissions({permission}, {permission}));
        EXPECT_EQ(log.lines(),
                  finding(std::string("Permission not allowed for tasks: ") + permission));
    }
}

TEST(TaskPermissions, TheImplicitOneIsNotToBeListed) {
    const CapturedLog log;
    EXPECT_FALSE(validateTaskPermissions({"BaseTask"}, {}));
    EXPECT_FALSE(validateTaskPermissions({"BaseTask"}, {"BaseTask"}));
    const std::string line = errorLine("BaseTask permission is implicit, please remove it");
    EXPECT_EQ(log.lines(), (Strings{line, line}));
}

TEST(TaskConditions, AcceptedWithoutALine) {
    const CapturedLog log;
    EXPECT_TRUE(validateTaskConditions({}));
    EXPECT_TRUE(validateTaskConditions({"internet:wifi-or-ethernet", "charging"}));
    EXPECT_TRUE(validateTaskConditions({"internet", "internet:wifi", "internet:ethernet",
                                        "internet:cellular", "battery-not-low", "idle"}));
    EXPECT_EQ(log.lines(), Strings());
}

TEST(TaskConditions, EachBadOneHasItsLine) {
    struct Case {
        const char* condition;
        const char* line;
    };
    const Case cases[] = {
        {"charging:fast", "Unknown charging condition subtype: fast"},
        {"idle:wifi", "Unknown idle condition subtype: wifi"},
        {"battery-not-low:wifi", "Unknown battery-not-low condition subtype: wifi"},
        {"internet:bluetooth", "Unknown internet condition subtype: bluetooth"},
        {"moonlight", "Unknown task condition: moonlight"},
        {"moonlight:full", "Unknown task condition: moonlight"},
        {"Charging", "Invalid condition specification: Charging"},
        {"internet:", "Invalid condition specification: internet:"},
        {"internet:w", "Invalid condition specification: internet:w"},
        {"internet:wifi:x", "Invalid condition specification: internet:wifi:x"},
        {" idle", "Invalid condition specification:  idle"},
        {"i", "Invalid condition specification: i"},
        {"", "Invalid condition specification: "},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.condition);
        const CapturedLog log;
        EXPECT_FALSE(validateTaskConditions({test.condition}));
        EXPECT_EQ(log.lines(), finding(test.line));
    }
}

TEST(TaskConditions, ABadOneDoesNotStopTheWalk) {
    const CapturedLog log;
    EXPECT_FALSE(validateTaskConditions({"A", "idle", "moon", "charging:fast", "internet"}));
    EXPECT_EQ(log.lines(), (Strings{errorLine("Invalid condition specification: A"),
                                    errorLine("Unknown task condition: moon"),
                                    errorLine("Unknown charging condition subtype: fast")}));
}

}  // namespace
