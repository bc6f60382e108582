// The rules on the desktop file in their order, on real packages.
#include <gtest/gtest.h>

#include <algorithm>

#include "pkgvet/content/content_validator.h"
#include "pkgvet/package/rpm_meta.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/package/package_builder.h"
#include "tests/support/rules/desktop_file.h"
#include "tests/support/rules/rule_tree.h"

namespace {

using Strings = std::vector<std::string>;

const char* const kDesktopPath = "/usr/share/applications/org.example.app.desktop";
const std::string kIsQmlOnly = infoLine("[desktop] Application is a QML-only app");

// A QML-only application needs nothing but its desktop file and the launcher, so that every other
// rule is content with these packages.
const std::string kQmlEntry =
    "[Desktop Entry]\nType=Application\nName=App\nIcon=org.example.app\n"
    "Exec=lumbra-qml org.example.app\nX-Dorrit-Application-Type=ostrand-qt5\n";

PackageBuilder package() {
    PackageBuilder builder(kPackage);
    builder.tag("Requires: libtessaraapp-launcher");
    return builder;
}

struct Judgement {
    bool accepted;
    bool acceptedWithoutValidation;
    Strings lines;
};

bool isAccepted(const std::string& path, const Configuration& rules) {
    const CapturedDescriptor noise;  // of the programs that unpack
    ContentValidator validator(path);
    return validator.validateContent(rules, RpmMeta(path.c_str()));
}

Judgement judge(const PackageBuilder& builder) {
    const TemporaryDirectory directory;
    const std::string path = builder.build(directory);
    RuleTree tree;
    tree.regular().permissions = {"Internet"};
    const Configuration rules = load(tree);
    const CapturedLog log;
    const bool accepted = isAccepted(path, rules);
    const Strings lines = log.lines();
    rules.setValidationEnabled(false);
    return {accepted, isAccepted(path, rules), lines};
}

Judgement judgeFile(const std::string& content) {
    return judge(package().file(kDesktopPath, content));
}

TEST(DesktopPackage, AGoodDesktopFileIsAccepted) {
    const Judgement judgement =
        judgeFile(kQmlEntry + kGoodSection +
                  "Permissions=Internet\nIntents=Start\n"
                  "[X-Tessara-Application]\nOrientation=All\n[X-Tessara-SplashScreen]\n"
                  "GradientStartColor=#FFF\n[X-Task sync]\nType=worker\nPermissions=Internet\n");
    EXPECT_EQ(judgement.lines, Strings{kIsQmlOnly});
    EXPECT_TRUE(judgement.accepted);
}

// Other rules have something to say of such a package as well, which does not matter here.
TEST(DesktopPackage, WithoutADesktopFileItsRulesDoNotRun) {
    const Judgement judgement = judge(package().file("/usr/share/org.example.app/readme", "text"));
    ASSERT_FALSE(judgement.lines.empty());
    EXPECT_EQ(judgement.lines[0],
              warningLine("Desktop file is missing, no validation for pinfold section"));
    for (const std::string& line : judgement.lines) {
        EXPECT_EQ(line.find("[pinfold]"), std::string::npos) << line;
        EXPECT_EQ(line.find("[desktop]"), std::string::npos) << line;
    }
}

const char* const kEverythingWrong = R"([Desktop Entry]
Type=Link
Name=
Icon=app.png
Exec=tessara-qml org.example.app %U
X-Dorrit-Application-Type=widget

[X-Application]
OrganizationName=org.example
ApplicationName=app

[Pinfold]
OrganizationName=1Example
ApplicationName=bad-app.task_x
Permissions=Internet;Audio;RootShell
ExecDBus=/opt/app/service --session
Intents=Start;open;Fly;OpenURI:fast
ExecSystemService=/opt/app/service

[X-Tessara-Application]
Orientation=Sideways
Colour=blue

[X-Tessara-SplashScreen]
GradientStartColor=blue

[X-Task x-y]
Type=hourly
Exec=/usr/libexec/org.example.app/sync
Permissions=Audio;BaseTask;Location
Conditions=Charging;internet:bluetooth;moonlight
Restart=always

[X-Launcher]
Autostart=true
)";

Strings everythingWrong() {
    return {
        errorLine("[desktop] 'X-Launcher' group is disallowed"),
        kIsQmlOnly,
        errorLine("[desktop] X-Dorrit-Application-Type must be ostrand-qt5 for lumbra-qml apps"),
        errorLine("[desktop] Missing valid Name declaration inside"),
        errorLine("[desktop] Missing valid Icon declaration inside, must be Icon=org.example.app"),
        errorLine("[desktop] Missing valid Type declaration inside"),
        errorLine("[desktop] invalid value 'blue' in 'X-Tessara-SplashScreen/GradientStartColor' "
                  "field. "),
        "The expected value is a color in hex format (#RRGGBB).",
        errorLine("[desktop] invalid value 'Sideways' in 'X-Tessara-Application/Orientation' "
                  "field"),
        errorLine("[desktop] invalid field name 'Colour' in 'X-Tessara-Application' group"),
        errorLine("[pinfold] Multiple pinfold sections are not allowed, please use only "
                  "\"X-Application\""),
        errorLine("[ExecSystemService] X-Pinfold key is not allowed"),
        errorLine("[pinfold] ApplicationName contains reserved prefix .task_"),
        "ExecDBus error: No such file or directory",
        errorLine("[Audio] Permission is not allowed"),
        errorLine("[RootShell] Permission is not allowed"),
        errorLine("Invalid intent specification: open"),
        errorLine("Non standard intent name: Fly"),
        errorLine("Unknown intent flag: fast"),
        errorLine("[pinfold] Pinfold section is not allowed (use X-Application instead)"),
        errorLine("[pinfold] OrganizationName and ApplicationName pair should form a package name "
                  "(e.g. for package \"com.example.app\" ApplicationName must be \"app\" and "
                  "OrganizationName must be \"com.example\")."),
        errorLine("[pinfold] OrganizationName contains illegal characters"),
        errorLine("[pinfold] OrganizationName may not start with a number"),
        errorLine("[pinfold] OrganizationName should follow reverse domain notation (at least up "
                  "to second-level domain), e.g.: \"org.example\"."),
        errorLine("[pinfold] ExecDBus is incorrect, template rules are equal to Exec section"),
        errorLine("[pinfold] Application name contains illegal \"-\" symbol. It will cause "
                  "ExecDBus and/or ExecSystemService failure in future"),
        errorLine("[desktop] Key 'Restart' disallowed for background tasks"),
        errorLine("Invalid background task specification: X-Task x-y"),
        errorLine("Unsupported background task type: hourly"),
        errorLine("Executable missing or in wrong path: /usr/libexec/org.example.app/sync"),
        errorLine("Permission not allowed for tasks: Audio"),
        errorLine("BaseTask permission is implicit, please remove it"),
        errorLine("Task permission needs to be in application too: Location"),
        errorLine("Invalid condition specification: Charging"),
        errorLine("Unknown internet condition subtype: bluetooth"),
        errorLine("Unknown task condition: moonlight")};
}

TEST(DesktopPackage, EverythingThatIsWrongIsReportedInOrder) {
    const Judgement judgement = judgeFile(kEverythingWrong);
    EXPECT_EQ(judgement.lines, everythingWrong());
    EXPECT_FALSE(judgement.accepted);
    EXPECT_TRUE(judgement.acceptedWithoutValidation);
}

TEST(DesktopPackage, ALaunchLineIsResolvedInTheUnpackedPackage) {
    const Judgement judgement =
        judge(package()
                  .file(kDesktopPath,
                        kQmlEntry + kGoodSection + "ExecDBus=/usr/share/org.example.app/run --x\n")
                  .file("/usr/libexec/org.example.app/run", "")
                  .link("/usr/share/org.example.app/run", "../../libexec/org.example.app/run"));
    EXPECT_EQ(judgement.lines, Strings{kIsQmlOnly});
    EXPECT_TRUE(judgement.accepted);
}

// What is listed and not there, or is not a file, reads as an empty one. Nothing waits for a fifo.
TEST(DesktopPackage, ADesktopFileThatCannotBeReadLacksEverything) {
    const std::string path = kDesktopPath;
    const PackageBuilder builders[] = {
        package().ghost(kDesktopPath),
        package().link(kDesktopPath, "/nowhere/org.example.app.desktop"),
        package()
            .file(kDesktopPath, "")
            .script("rm %{buildroot}" + path + "\nmkfifo %{buildroot}" + path),
    };
    const Strings expected = {
        errorLine("[desktop] X-Dorrit-Application-Type not declared (use ostrand-qt5 for QML "
                  "apps)"),
        errorLine("[desktop] Missing valid Name declaration inside"),
        errorLine("[desktop] Missing valid Icon declaration inside, must be Icon=org.example.app"),
        errorLine("[desktop] Missing valid Exec declaration inside"),
        errorLine("[desktop] Missing valid Type declaration inside"),
        errorLine("[pinfold] X-Application section should be specified in desktop file")};
    for (const PackageBuilder& builder : builders) {
        const Judgement judgement = judge(builder);
        ASSERT_GE(judgement.lines.size(), expected.size());
        EXPECT_TRUE(std::equal(expected.begin(), expected.end(), judgement.lines.begin()));
        EXPECT_FALSE(judgement.accepted);
    }
}

}  // namespace
