// The rule on QML imports among the others, on a real package.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "pkgvet/content/content_validator.h"
#include "pkgvet/package/rpm_meta.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/package/package_builder.h"
#include "tests/support/rules/rule_tree.h"

namespace {

using testing::ElementsAre;

struct Judgement {
    bool accepted;
    bool ostrandImport;
    std::vector<std::string> lines;
};

// A QML-only application whose desktop file names this type, with two QML files.
Judgement judge(const std::string& applicationType) {
    const TemporaryDirectory directory;
    const std::string path =
        PackageBuilder("org.example.app")
            .tag("Requires: libtessaraapp-launcher")
            .file("/usr/share/applications/org.example.app.desktop",
                  "[Desktop Entry]\nType=Application\nName=App\nIcon=org.example.app\n"
                  "Exec=lumbra-qml org.example.app\nX-Dorrit-Application-Type=" +
                      applicationType +
                      "\n[X-Application]\nOrganizationName=org.example\nApplicationName=app\n")
            .file("/usr/share/org.example.app/qml/main.qml",
                  "import QtQuick 2.6\nimport Lumbra.Ostrand 1.0\nimport \"pages\"\n")
            .file("/usr/share/org.example.app/qml/pages/First.qml", "import QtQuick 3.0\n")
            .directory("/usr/share/org.example.app/qml/pages")
            .build(directory);
    RuleTree tree;
    tree.regular().qmlimports.allowed = {"QtQuick 2.*"};
    tree.disallowedPatterns = {".*"};
    const Configuration rules = load(tree);
    const CapturedDescriptor noise;  // of the programs that unpack
    const CapturedLog log;
    ContentValidator validator(path);
    const bool accepted = validator.validateContent(rules, RpmMeta(path.c_str()));
    return {accepted, validator.ostrandImport(), log.lines()};
}

const std::string kIsQmlOnly = infoLine("[desktop] Application is a QML-only app");
const std::string kNotAllowed = errorLine("[QtQuick 3.0] Import is not allowed");

TEST(QmlPackage, ImportsAreJudgedOnceTheApplicationTypeIsKnown) {
    const Judgement judgement = judge("ostrand-qt5");
    EXPECT_THAT(judgement.lines, ElementsAre(kIsQmlOnly, kNotAllowed));
    EXPECT_TRUE(judgement.ostrandImport);
    EXPECT_FALSE(judgement.accepted);
}

TEST(QmlPackage, TheToolkitWantsItsApplicationType) {
    EXPECT_THAT(judge("generic").lines,
                ElementsAre(kIsQmlOnly,
                            errorLine("[desktop] X-Dorrit-Application-Type must be ostrand-qt5 for "
                                      "lumbra-qml apps"),
                            warningLine("[desktop] X-Dorrit-Application-Type should be ostrand-qt5 "
                                        "for apps importing Lumbra.Ostrand in QML"),
                            kNotAllowed));
}

}  // namespace
