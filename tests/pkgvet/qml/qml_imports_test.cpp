// What counts as an import in QML files.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "pkgvet/rules/configuration.h"
#include "tests/support/captured_log.h"
#include "tests/support/rule_run.h"
#include "tests/support/rule_tree.h"
#include "tests/support/validator_record.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kFile = "/usr/share/app/qml/main.qml";

// Every import is disallowed, so that each that is seen draws a line with its text.
RuleTree disallowingTree() {
    RuleTree tree;
    tree.disallowedPatterns = {"[^]*"};
    return tree;
}

RuleRun check(ContentValidator& validator, const RpmMeta& meta, const std::string& root) {
    const Configuration configuration = load(disallowingTree());
    return runRule(validator, [&] { validator.checkQmlImports(configuration, meta, root); });
}

const RpmMeta& metaWithOneFile() {
    static const RpmMeta meta = metaOf(PackageBuilder("app").ghost(kFile));
    return meta;
}

RuleRun checkText(ContentValidator& validator, const std::string& text) {
    const TemporaryDirectory root;
    root.write(std::string(kFile).substr(1), text);
    return check(validator, metaWithOneFile(), root.path());
}

// The texts of the imports that a file with this content has, in the order of the lines.
std::vector<std::string> importsIn(const std::string& text) {
    ContentValidator validator = validatorOfNothing();
    const std::string begin = errorLine("[");
    const std::string end = "] Import is not allowed";
    std::vector<std::string> imports;
    for (const std::string& line : checkText(validator, text).lines) {
        EXPECT_TRUE(line.starts_with(begin) && line.ends_with(end)) << line;
        imports.push_back(line.substr(begin.size(), line.size() - begin.size() - end.size()));
    }
    return imports;
}

std::string ostrandWarning() {
    return warningLine(
        "[desktop] X-Dorrit-Application-Type should be ostrand-qt5 for apps importing "
        "Lumbra.Ostrand in QML");
}

struct Case {
    const char* line;
    std::vector<std::string> imports;
};

void expectImports(const std::vector<Case>& cases) {
    for (const Case& test : cases) {
        SCOPED_TRACE(test.line);
        EXPECT_EQ(importsIn(test.line), test.imports);
    }
}

TEST(QmlImports, ModulesHaveAVersion) {
    expectImports({
        {"import QtQuick 2.0", {"QtQuick 2.0"}},
        {"import QtQuick 2", {"QtQuick 2"}},
        {"import QtQuick 2.0.1", {"QtQuick 2.0.1"}},
        {"import QtQuick 2.", {"QtQuick 2"}},
        {"import QtQuick 2.0beta", {"QtQuick 2.0"}},
        {"import QtQuick  2.0", {"QtQuick  2.0"}},
        {"import QtQuick\t2.0", {"QtQuick\t2.0"}},
        {"import   QtQuick 2.0", {"QtQuick 2.0"}},
        {"import QtQuick 2.0 as Q", {"QtQuick 2.0"}},
        {"import QtQuick 2.0 // the toolkit", {"QtQuick 2.0"}},
        {"import QtQuick", {}},
        {"import QtQuick as Q", {}},
        {"import QtQuick.Controls as Q 2", {}},
        {"importQtQuick 2.0", {}},
        {"Import QtQuick 2.0", {}},
    });
}

TEST(QmlImports, BlanksAndSemicolonsMayStandInFront) {
    expectImports({
        {"    import A 1.0", {"A 1.0"}},
        {"\t;; import A 1.0", {"A 1.0"}},
        {";import A 1.0", {"A 1.0"}},
        {"// import A 1.0", {}},
        {"/* import A 1.0 */", {}},
        {"x import A 1.0", {}},
        {"/*\nimport A 1.0\n*/", {"A 1.0"}},
    });
}

TEST(QmlImports, QuotedTextGoesToTheLastQuote) {
    expectImports({
        {"import \"components\"", {"\"components\""}},
        {"import \"components\" as C", {"\"components\""}},
        {"import \"a\" // \"b\"", {"\"a\" // \"b\""}},
        {"import \"a b\"", {"\"a b\""}},
        {"import \"a", {}},
        {"import \"\"", {}},
        {"import 'a'", {}},
        {"import \"\" 2", {"\"\" 2"}},
    });
}

TEST(QmlImports, OnlyTheFirstImportOfALineIsSeen) {
    expectImports({
        {"import A 1.0; import B 1.0", {"A 1.0"}},
        {"import A 1.0\rimport B 1.0", {"A 1.0"}},
        {"import A 1.0\r\nimport B 1.0\r\n", {"A 1.0", "B 1.0"}},
    });
}

TEST(QmlImports, BytesThatAreNoTextHideNoImport) {
    expectImports({
        {"import A 1.0 // \xFF", {"A 1.0"}},
        {"import \"a\xFF\"", {"\"a\uFFFD\""}},
        {"\xFF\xFE\nimport A 1.0", {"A 1.0"}},
    });
    EXPECT_THAT(importsIn(std::string("import A 1.0\0\n", 14)), ElementsAre("A 1.0"));
    EXPECT_THAT(importsIn(std::string("\0\0\nimport A 1.0", 15)), ElementsAre("A 1.0"));
}

TEST(QmlImports, TextsAreSortedByByteAndJudgedOnce) {
    EXPECT_THAT(importsIn("import b 1\nimport \xC3\xA9 1\nimport B 1\nimport a 1\nimport b 1\n"),
                ElementsAre("B 1", "a 1", "b 1", "\xC3\xA9 1"));
}

TEST(QmlImports, ToolkitIsAWarningInAnApplicationOfAnotherType) {
    ContentValidator validator = validatorOfNothing();
    const RuleRun run = checkText(validator, "import Lumbra.Ostrand 1.0\nItem {}\n");
    EXPECT_THAT(run.lines, ElementsAre(ostrandWarning()));
    EXPECT_EQ(run.failures, 0U);
    EXPECT_TRUE(validator.ostrandImport());
}

TEST(QmlImports, ToolkitIsReportedForEachLine) {
    ContentValidator validator = validatorOfNothing();
    EXPECT_THAT(
        checkText(validator, "import Lumbra.Ostrand 1.05\nimport Lumbra.Ostrand 1.0.3 as S").lines,
        ElementsAre(ostrandWarning(), ostrandWarning()));
}

TEST(QmlImports, ToolkitIsFineInAnApplicationOfItsType) {
    ContentValidator validator = validatorOfNothing();
    recordOf(validator).desktopFacts.ostrandQt5Application = true;
    const RuleRun run = checkText(validator, "import Lumbra.Ostrand 1.0\n");
    EXPECT_THAT(run.lines, IsEmpty());
    EXPECT_TRUE(validator.ostrandImport());
}

TEST(QmlImports, ToolkitInAnotherFormIsAnOrdinaryImport) {
    for (const char* line :
         {" import Lumbra.Ostrand 1.0", "import  Lumbra.Ostrand 1.0", "import Lumbra.Ostrand  1.0",
          "import Lumbra.Ostrand 2.0", "import Lumbra.Ostrand.Effects 1.0"}) {
        SCOPED_TRACE(line);
        ContentValidator validator = validatorOfNothing();
        EXPECT_THAT(checkText(validator, line).lines,
                    ElementsAre(testing::EndsWith("] Import is not allowed")));
        EXPECT_FALSE(validator.ostrandImport());
    }
}

TEST(QmlImports, ListModelNeverReachesTheLists) {
    expectImports({
        {"import QtQuick.XmlListModel 2.0", {}},
        {"import QtQuick.XmlListModelX 2.0", {}},
        {" import QtQuick.XmlListModel 2.0", {"QtQuick.XmlListModel 2.0"}},
    });
    ContentValidator validator = validatorOfNothing();
    checkText(validator, "import QtQuick.XmlListModel 2.0");
    EXPECT_TRUE(recordOf(validator).qmlFacts.xmlListModelImport);
}

TEST(QmlImports, PathThatEndsInQmlIsAQmlFile) {
    const UnpackedPackage package(PackageBuilder("app")
                                      .file("/a.qml", "import A 1\n")
                                      .file("/b.QML", "import B 1\n")
                                      .file("/c.qml.in", "import C 1\n")
                                      .file("/d/qml", "import D 1\n")
                                      .file("/e/.qml", "import E 1\n")
                                      .directory("/f.qml")
                                      .link("/g.qml", "/dev/zero")
                                      .ghost("/h.qml"));
    ContentValidator validator = validatorOfNothing();
    EXPECT_THAT(check(validator, package.meta(), package.root()).lines,
                ElementsAre(errorLine("[A 1] Import is not allowed"),
                            errorLine("[E 1] Import is not allowed")));
}

TEST(QmlImports, ListedFileThatIsNotThereHasNoLines) {
    ContentValidator validator = validatorOfNothing();
    const TemporaryDirectory root;
    EXPECT_THAT(check(validator, metaWithOneFile(), root.path()).lines, IsEmpty());
    std::filesystem::create_directories(root / "usr/share/app/qml");
    ASSERT_EQ(mkfifo((root.path().string() + kFile).c_str(), 0644), 0);
    EXPECT_THAT(check(validator, metaWithOneFile(), root.path()).lines, IsEmpty());
}

TEST(QmlImports, LongLinesAreJudged) {
    const std::string blanks(1000000, ' ');
    EXPECT_THAT(importsIn(blanks + "import A 1.0"), ElementsAre("A 1.0"));
    EXPECT_THAT(importsIn("import " + blanks + "A 1.0" + blanks), ElementsAre("A 1.0"));
    EXPECT_THAT(importsIn("import A 1.0 //" + std::string(1000000, 'x')), ElementsAre("A 1.0"));
    EXPECT_THAT(importsIn("import \"" + std::string(1000000, 'x')), IsEmpty());
}

}  // namespace
