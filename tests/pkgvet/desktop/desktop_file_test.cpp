// The rules on the desktop file as a whole.
#include "tests/support/rules/desktop_file.h"

#include <gtest/gtest.h>

#include "pkgvet/desktop/desktop_facts.h"
#include "pkgvet/desktop/desktop_rules.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/rules/rule_run.h"
#include "tests/support/rules/rule_tree.h"

namespace {

using pkgvet::DesktopFacts;
using pkgvet::Findings;

using Strings = std::vector<std::string>;

const char* const kIsQmlOnly = "[desktop] Application is a QML-only app";
const char* const kNotDeclared =
    "[desktop] X-Dorrit-Application-Type not declared (use ostrand-qt5 for QML apps)";
const char* const kMustBeOstrand =
    "[desktop] X-Dorrit-Application-Type must be ostrand-qt5 for lumbra-qml apps";
const char* const kShouldBeOstrand =
    "[desktop] X-Dorrit-Application-Type should be ostrand-qt5 (not a Ostrand app?)";
const char* const kNoName = "[desktop] Missing valid Name declaration inside";
const char* const kIllegalName = "[desktop] Name contains illegal characters";
const char* const kNoExec = "[desktop] Missing valid Exec declaration inside";
const char* const kNoType = "[desktop] Missing valid Type declaration inside";

std::string noIcon(const std::string& package) {
    return "[desktop] Missing valid Icon declaration inside, must be Icon=" + package;
}

// The rule on one desktop file.
struct Judgement {
    explicit Judgement(const std::string& content, const std::string& package = "foo")
        : lines(linesOf([&](Findings* findings) {
              pkgvet::processDesktopFile(package, desktopEntry(content), &facts, findings);
          })) {}

    DesktopFacts facts;
    Strings lines;
};

// The first group with one key replaced; a null value leaves the key out.
std::string entryWith(const std::string& key = "", const char* value = nullptr) {
    const std::pair<std::string, std::string> keys[] = {
        {"Type", "Application"},
        {"Name", "Foo"},
        {"Icon", "foo"},
        {"Exec", "foo"},
        {"X-Dorrit-Application-Type", "ostrand-qt5"}};
    std::string content = "[Desktop Entry]\n";
    for (const auto& [name, usual] : keys) {
        if (name != key) {
            content.append(name).append("=").append(usual).append("\n");
        } else if (value != nullptr) {
            content.append(name).append("=").append(value).append("\n");
        }
    }
    return content;
}

// Whether a file is required, and what the rule says of a package with these paths.
Strings check(const std::string& desktopPath, bool isRequired, DesktopFacts* facts) {
    RuleTree tree;
    tree.regular().requireDesktop = isRequired;
    const Configuration configuration = load(tree);
    const Strings paths = {"/usr/bin/foo", "/usr/share/applications/foo.desktop",
                           "/usr/share/foo/x"};
    return linesOf([&](Findings* findings) {
        pkgvet::checkDesktop(paths, desktopPath, configuration, facts, findings);
    });
}

TEST(CheckDesktop, FindsTheFileAmongThePathsOfThePackage) {
    for (const bool isRequired : {false, true}) {
        DesktopFacts facts;
        EXPECT_EQ(check("/usr/share/applications/foo.desktop", isRequired, &facts), Strings());
        EXPECT_TRUE(facts.desktop);
    }
}

TEST(CheckDesktop, AMissingFileIsAWarningWhereNoneIsRequired) {
    for (const char* path : {"/usr/share/applications/Foo.desktop", "/applications/foo.desktop",
                             "/usr/share/applications/foo.desktop2", ""}) {
        SCOPED_TRACE(path);
        DesktopFacts facts;
        EXPECT_EQ(
            check(path, false, &facts),
            Strings{warningLine("Desktop file is missing, no validation for pinfold section")});
        EXPECT_FALSE(facts.desktop);
    }
}

TEST(CheckDesktop, AMissingFileIsAnErrorWhereOneIsRequired) {
    DesktopFacts facts;
    EXPECT_EQ(check("/other.desktop", true, &facts),
              Strings{errorLine("[desktop] Desktop file is missing")});
    EXPECT_FALSE(facts.desktop);
}

TEST(DesktopFile, AGoodOneHasNoFinding) {
    const Judgement judgement(entryWith());
    EXPECT_EQ(judgement.lines, Strings());
    EXPECT_TRUE(judgement.facts.desktopName);
    EXPECT_TRUE(judgement.facts.desktopIcon);
    EXPECT_TRUE(judgement.facts.desktopExec);
    EXPECT_TRUE(judgement.facts.desktopType);
    EXPECT_TRUE(judgement.facts.ostrandQt5Application);
    EXPECT_FALSE(judgement.facts.knownApplicationType);
    EXPECT_FALSE(judgement.facts.qmlOnly);
}

TEST(DesktopFile, AnEmptyOrMalformedOneLacksEverything) {
    for (const std::string& content :
         {std::string(), std::string("[X-Application]\n"), entryWith() + "malformed\n"}) {
        const Judgement judgement(content);
        EXPECT_EQ(judgement.lines,
                  (Strings{errorLine(kNotDeclared), errorLine(kNoName), errorLine(noIcon("foo")),
                           errorLine(kNoExec), errorLine(kNoType)}));
        EXPECT_FALSE(judgement.facts.desktopName || judgement.facts.desktopIcon ||
                     judgement.facts.desktopExec || judgement.facts.desktopType ||
                     judgement.facts.ostrandQt5Application ||
                     judgement.facts.knownApplicationType || judgement.facts.qmlOnly);
    }
}

TEST(DesktopFile, GroupsOutsideTheVocabularyAreDisallowed) {
    struct Case {
        const char* group;
        bool permitted;
    };
    const Case cases[] = {{"X-Application", true},
                          {"X-Pinfold", true},
                          {"Pinfold", true},
                          {"X-Tessara-Application", true},
                          {"X-Tessara-SplashScreen", true},
                          {"X-Share Method mail", true},
                          {"X-Share Method ", true},
                          {"X-Share Method other", false},
                          {"X-Share Method mail2", false},
                          {"X-Task x", true},
                          {"X-Task x-y", true},
                          {"X-Task ", true},
                          {"X-Service ", true},
                          {"X-Service x", true},
                          {"X-Task", false},
                          {"X-Taskx", false},
                          {"X-Service", false},
                          {" X-Task x", false},
                          {"x-application", false},
                          {"Desktop entry", false},
                          {"X-Launcher", false}};
    for (const Case& test : cases) {
        SCOPED_TRACE(test.group);
        const std::string group = test.group;
        const Judgement judgement(entryWith() + "X-Share-Methods=mail;;sms\n[" + group + "]\n");
        EXPECT_EQ(judgement.lines,
                  test.permitted
                      ? Strings()
                      : Strings{errorLine("[desktop] '" + group + "' group is disallowed")});
    }
}

TEST(DesktopFile, BackgroundTasksAreNotedInTheOrderOfTheFile) {
    const Judgement judgement(
        "[X-Service b]\nAnything=goes\n" + entryWith() +
        "X-Share-Methods=x\n[X-Task a]\n[X-Application]\n[X-Task ]\n[X-Share Method x]\n");
    EXPECT_EQ(judgement.facts.backgroundTaskGroups,
              (Strings{"X-Service b", "X-Task a", "X-Task "}));
    EXPECT_EQ(judgement.lines, Strings());
}

TEST(DesktopFile, KeysOfAShareMethodAreNotLookedAt) {
    EXPECT_EQ(
        Judgement(entryWith() + "X-Share-Methods=mail\n[X-Share Method mail]\nAnything=goes\n")
            .lines,
        Strings());
}

TEST(DesktopFile, EveryDisallowedGroupIsReportedInTheOrderOfTheFile) {
    EXPECT_EQ(Judgement("[B]\n[X-Task x]\n" + entryWith() + "[A]\n").lines,
              (Strings{errorLine("[desktop] 'B' group is disallowed"),
                       errorLine("[desktop] 'A' group is disallowed")}));
}

TEST(DesktopFile, TheNameNeedsOnePrintableCharacter) {
    struct Case {
        const char* name;
        const char* finding;
    };
    const Case cases[] = {
        {"Foo", nullptr},
        {"~", nullptr},
        {"\xC3\xA4\xC3\xB6x", nullptr},
        {"\xC3\xA4\xC3\xB6 ", nullptr},
        {"\xC3\xA4\xC3\xB6", kIllegalName},
        {"\\t", kIllegalName},
        {"\x7F", kIllegalName},
        {"", kNoName},
        {nullptr, kNoName},
        {"Foo\xFF", kNoName},  // refused whole, as it is not UTF-8
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name == nullptr ? "no name" : test.name);
        const Judgement judgement(entryWith("Name", test.name));
        EXPECT_EQ(judgement.lines,
                  test.finding == nullptr ? Strings() : Strings{errorLine(test.finding)});
        EXPECT_EQ(judgement.facts.desktopName, test.finding != kNoName);
        EXPECT_EQ(judgement.facts.desktopNameIllegal, test.finding == kIllegalName);
    }
}

TEST(DesktopFile, TheIconIsTheBarePackageName) {
    for (const char* icon : {"foo.png", "/usr/share/foo", "Foo", "foo ", ""}) {
        SCOPED_TRACE(icon);
        const Judgement judgement(entryWith("Icon", icon));
        EXPECT_EQ(judgement.lines, Strings{errorLine(noIcon("foo"))});
        EXPECT_FALSE(judgement.facts.desktopIcon);
    }
}

TEST(DesktopFile, TheTypeIsApplication) {
    for (const char* type : {"Link", "application", "Application ", ""}) {
        SCOPED_TRACE(type);
        const Judgement judgement(entryWith("Type", type));
        EXPECT_EQ(judgement.lines, Strings{errorLine(kNoType)});
        EXPECT_FALSE(judgement.facts.desktopType);
    }
}

TEST(DesktopFile, AcceptedProgramLines) {
    for (const char* exec : {"foo", "foo ", "foo %U", "/usr/bin/foo", "/usr/bin/foo --flag"}) {
        SCOPED_TRACE(exec);
        const Judgement judgement(entryWith("Exec", exec));
        EXPECT_EQ(judgement.lines, Strings());
        EXPECT_TRUE(judgement.facts.desktopExec);
        EXPECT_FALSE(judgement.facts.qmlOnly);
    }
}

TEST(DesktopFile, AcceptedLauncherLinesMakeAQmlOnlyApplication) {
    for (const char* exec :
         {"lumbra-qml foo", "lumbra-qml foo %U", "tessara-qml foo", "tessara-qml foo --x"}) {
        SCOPED_TRACE(exec);
        const Judgement judgement(entryWith("Exec", exec));
        EXPECT_EQ(judgement.lines, Strings{infoLine(kIsQmlOnly)});
        EXPECT_TRUE(judgement.facts.desktopExec);
        EXPECT_TRUE(judgement.facts.qmlOnly);
    }
}

// The line is accepted as that of the package's own program, and begins like that of a launcher.
TEST(DesktopFile, APackageThatIsCalledLikeALauncherIsQmlOnlyOnceItHasArguments) {
    const std::string start =
        "[Desktop Entry]\nType=Application\nName=Foo\nIcon=lumbra-qml\n"
        "X-Dorrit-Application-Type=ostrand-qt5\nExec=lumbra-qml";
    const Judgement alone(start + "\n", "lumbra-qml");
    EXPECT_EQ(alone.lines, Strings());
    EXPECT_FALSE(alone.facts.qmlOnly);
    const Judgement withArgument(start + " x\n", "lumbra-qml");
    EXPECT_EQ(withArgument.lines, Strings{infoLine(kIsQmlOnly)});
    EXPECT_TRUE(withArgument.facts.qmlOnly);
}

TEST(DesktopFile, OtherProgramLinesAreNotAccepted) {
    for (const char* exec :
         {"foobar", "/opt/foo", "lumbra-qml", "lumbra-qml bar", "lumbra-qml  foo", "lumbra-qmlfoo",
          "tessara-qml foobar", "/usr/bin/foobar", "/usr/bin/lumbra-qml foo", "foo\\tx", "foo.x",
          "Foo", "\"foo\"", ""}) {
        SCOPED_TRACE(exec);
        const Judgement judgement(entryWith("Exec", exec));
        EXPECT_EQ(judgement.lines, Strings{errorLine(kNoExec)});
        EXPECT_FALSE(judgement.facts.desktopExec);
        EXPECT_FALSE(judgement.facts.qmlOnly);
    }
}

TEST(DesktopFile, TheApplicationTypeOfAProgram) {
    struct Case {
        const char* type;
        std::string line;
        bool known;
    };
    const Case cases[] = {
        {"no-invoker", warningLine(kShouldBeOstrand), true},
        {"generic", warningLine(kShouldBeOstrand), true},
        {"qtquick2", warningLine(kShouldBeOstrand), true},
        {"qt5", warningLine(kShouldBeOstrand), true},
        {"widget", errorLine(kNotDeclared), false},
        {"Generic", errorLine(kNotDeclared), false},
        {"", errorLine(kNotDeclared), false},
        {nullptr, errorLine(kNotDeclared), false},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.type == nullptr ? "no type" : test.type);
        const Judgement judgement(entryWith("X-Dorrit-Application-Type", test.type));
        EXPECT_EQ(judgement.lines, Strings{test.line});
        EXPECT_EQ(judgement.facts.knownApplicationType, test.known);
        EXPECT_FALSE(judgement.facts.ostrandQt5Application);
    }
}

TEST(DesktopFile, AQmlOnlyApplicationHasOneType) {
    for (const char* type : {"generic", "widget", ""}) {
        for (const char* launcher : {"lumbra-qml", "tessara-qml"}) {
            SCOPED_TRACE(std::string(launcher) + " " + type);
            const Judgement judgement(
                std::string("[Desktop Entry]\nType=Application\nName=Foo\nIcon=foo\n") +
                "Exec=" + launcher + " foo\nX-Dorrit-Application-Type=" + type + "\n");
            EXPECT_EQ(judgement.lines, (Strings{infoLine(kIsQmlOnly), errorLine(kMustBeOstrand)}));
        }
    }
}

TEST(DesktopFile, KeysWithALanguageAreNotTheKeysThatAreRead) {
    EXPECT_EQ(Judgement("[Desktop Entry]\nType=Application\nName[de]=Foo\nIcon=foo\nExec=foo\n"
                        "X-Dorrit-Application-Type=ostrand-qt5\n")
                  .lines,
              Strings{errorLine(kNoName)});
}

TEST(DesktopFile, TheGroupsOfThePlatformAreJudgedLast) {
    const Judgement judgement(
        "[X-Tessara-Application]\nOrientation=Portrait;Sideways\nIconMode[de]=Crop\nColour=x\n"
        "IconMode=Portrait\n[X-Tessara-SplashScreen]\nGradientStartColor=blue\n"
        "GradientEndColor=#FFF\nColour=#FFF\n[X-Launcher]\n" +
        entryWith("Name"));
    EXPECT_EQ(
        judgement.lines,
        (Strings{
            errorLine("[desktop] 'X-Launcher' group is disallowed"), errorLine(kNoName),
            errorLine("[desktop] invalid value 'blue' in "
                      "'X-Tessara-SplashScreen/GradientStartColor' field. "),
            "The expected value is a color in hex format (#RRGGBB).",
            errorLine("[desktop] invalid field name 'Colour' in 'X-Tessara-SplashScreen' group"),
            errorLine(
                "[desktop] invalid value 'Sideways' in 'X-Tessara-Application/Orientation' field"),
            errorLine(
                "[desktop] invalid field name 'IconMode[de]' in 'X-Tessara-Application' group"),
            errorLine("[desktop] invalid field name 'Colour' in 'X-Tessara-Application' group"),
            errorLine(
                "[desktop] invalid value 'Portrait' in 'X-Tessara-Application/IconMode' field")}));
}

TEST(DesktopFile, EveryOrientationIsPermittedForEveryScreen) {
    std::string content = entryWith() + "[X-Tessara-Application]\nIconMode=Scale;Crop\n";
    for (const char* screen :
         {"", "SmallScreen", "MediumScreen", "LargeScreen", "ExtraLargeScreen"}) {
        content += std::string(screen) +
                   "Orientation=None;All;PortraitMask;LandscapeMask;Portrait;Landscape;"
                   "PortraitInverted;LandscapeInverted\n";
    }
    EXPECT_EQ(Judgement(content + "[X-Tessara-SplashScreen]\nGradientStartColor=#186090\n"
                                  "GradientEndColor=#CDE\n")
                  .lines,
              Strings());
}

TEST(DesktopFile, ThousandsOfGroupsAndShareMethodsAreJudged) {
    std::string methods = "X-Share-Methods=";
    std::string groups;
    for (int i = 0; i < 20000; ++i) {
        const std::string number = std::to_string(i);
        methods.append("m").append(number).append(";");
        groups.append("[X-Share Method m").append(number).append("]\n");
    }
    EXPECT_EQ(Judgement(entryWith() + methods + "\n" + groups).lines, Strings());
}

}  // namespace
