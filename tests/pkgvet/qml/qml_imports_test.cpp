// What counts as an import in QML files.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "pkgvet/qml/qml_facts.h"
#include "pkgvet/qml/qml_rules.h"
#include "tests/support/base/bytes_read.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/rules/rule_run.h"
#include "tests/support/rules/rule_tree.h"

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

// What the rule says of a package with these paths, and what it leaves behind.
struct Judgement {
    Judgement(const std::vector<std::string>& paths, const TemporaryDirectory& root,
              bool isOstrandQt5Application = false) {
        const Configuration configuration = load(disallowingTree());
        lines = linesOf([&](pkgvet::Findings* findings) {
            pkgvet::checkQmlImports("app", paths, isOstrandQt5Application, configuration,
                                    root.path(), &facts, findings);
        });
    }

    pkgvet::QmlFacts facts;
    std::vector<std::string> lines;
};

Judgement checkText(const std::string& text, bool isOstrandQt5Application = false) {
    const TemporaryDirectory root;
    root.write(std::string(kFile).substr(1), text);
    return Judgement({kFile}, root, isOstrandQt5Application);
}

// The texts of the imports that a file with this content has, in the order of the lines.
std::vector<std::string> importsIn(const std::string& text) {
    const std::string begin = errorLine("[");
    const std::string end = "] Import is not allowed";
    std::vector<std::string> imports;
    for (const std::string& line : checkText(text).lines) {
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

TEST(QmlImports, BytesThatAreNotTextHideNoImport) {
    expectImports({
        {"import A 1.0 // \xFF", {"A 1.0"}},
        {"import \"a\xFF\"", {"\"a\xFF\""}},
        {"\xFF\xFE\nimport A 1.0", {"A 1.0"}},
    });
    EXPECT_THAT(importsIn(std::string("import A 1.0\0\n", 14)), ElementsAre("A 1.0"));
    EXPECT_THAT(importsIn(std::string("\0\0\nimport A 1.0", 15)), ElementsAre("A 1.0"));
}

TEST(QmlImports, TextsAreSortedByByteAndJudgedOnce) {
    EXPECT_THAT(importsIn("import b 1\nimport \xC3\xA9 1\nimport B 1\nimport a 1\nimport b 1\n"),
                ElementsAre("B 1", "a 1", "b 1", "\xC3\xA9 1"));
}

TEST(QmlImports, TheSameImportInTwoFilesIsJudgedOnce) {
    const TemporaryDirectory root;
    root.write("a.qml", "import B 1\nimport A 1\n");
    root.write("b.qml", "import B 1\n");
    EXPECT_THAT(Judgement({"/a.qml", "/b.qml"}, root).lines,
                ElementsAre(errorLine("[A 1] Import is not allowed"),
                            errorLine("[B 1] Import is not allowed")));
}

TEST(QmlImports, ToolkitIsAWarningInAnApplicationOfAnotherType) {
    const Judgement judgement = checkText("import Lumbra.Ostrand 1.0\nItem {}\n");
    EXPECT_THAT(judgement.lines, ElementsAre(ostrandWarning()));
    EXPECT_TRUE(judgement.facts.ostrandImport);
    EXPECT_FALSE(judgement.facts.xmlListModelImport);
}

TEST(QmlImports, ToolkitIsReportedForEachLineOfEachFile) {
    EXPECT_THAT(checkText("import Lumbra.Ostrand 1.05\nimport Lumbra.Ostrand 1.0.3 as S").lines,
                ElementsAre(ostrandWarning(), ostrandWarning()));
    const TemporaryDirectory root;
    root.write("a.qml", "import Lumbra.Ostrand 1.0\n");
    root.write("b.qml", "import Lumbra.Ostrand 1.0\n");
    EXPECT_THAT(Judgement({"/a.qml", "/b.qml"}, root).lines,
                ElementsAre(ostrandWarning(), ostrandWarning()));
}

TEST(QmlImports, ToolkitIsFineInAnApplicationOfItsType) {
    const Judgement judgement = checkText("import Lumbra.Ostrand 1.0\n", true);
    EXPECT_THAT(judgement.lines, IsEmpty());
    EXPECT_TRUE(judgement.facts.ostrandImport);
}

TEST(QmlImports, ToolkitInAnotherFormIsAnOrdinaryImport) {
    for (const char* line :
         {" import Lumbra.Ostrand 1.0", "import  Lumbra.Ostrand 1.0", "import Lumbra.Ostrand  1.0",
          "import Lumbra.Ostrand 2.0", "import Lumbra.Ostrand.Effects 1.0"}) {
        SCOPED_TRACE(line);
        const Judgement judgement = checkText(line);
        EXPECT_THAT(judgement.lines, ElementsAre(testing::EndsWith("] Import is not allowed")));
        EXPECT_FALSE(judgement.facts.ostrandImport);
    }
}

TEST(QmlImports, ListModelNeverReachesTheLists) {
    expectImports({
        {"import QtQuick.XmlListModel 2.0", {}},
        {"import QtQuick.XmlListModelX 2.0", {}},
        {" import QtQuick.XmlListModel 2.0", {"QtQuick.XmlListModel 2.0"}},
    });
    EXPECT_TRUE(checkText("import QtQuick.XmlListModel 2.0").facts.xmlListModelImport);
    EXPECT_FALSE(checkText(" import QtQuick.XmlListModel 2.0").facts.xmlListModelImport);
}

TEST(QmlImports, PathThatEndsInQmlIsAQmlFile) {
    const TemporaryDirectory root;
    root.write("a.qml", "import A 1\n");
    root.write("b.QML", "import B 1\n");
    root.write("c.qml.in", "import C 1\n");
    root.write("d/qml", "import D 1\n");
    root.write("e/.qml", "import E 1\n");
    root.write("i.qml", "import I 1\n");
    std::filesystem::create_directory(root / "f.qml");
    std::filesystem::create_symlink("/dev/zero", root / "g.qml");
    EXPECT_THAT(Judgement({"/a.qml", "/b.QML", "/c.qml.in", "/d/qml", "/e/.qml", "/f.qml", "/g.qml",
                           "/h.qml"},
                          root)
                    .lines,
                ElementsAre(errorLine("[A 1] Import is not allowed"),
                            errorLine("[E 1] Import is not allowed")));
}

TEST(QmlImports, PackageWithoutQmlFilesHasNoImports) {
    const TemporaryDirectory root;
    root.write("a.js", "import Lumbra.Ostrand 1.0\nimport A 1\n");
    const Judgement judgement({"/a.js"}, root);
    EXPECT_THAT(judgement.lines, IsEmpty());
    EXPECT_FALSE(judgement.facts.ostrandImport);
}

TEST(QmlImports, ListedFileThatIsNotThereHasNoLines) {
    const TemporaryDirectory root;
    EXPECT_THAT(Judgement({kFile}, root).lines, IsEmpty());
    std::filesystem::create_directories(root / "usr/share/app/qml");
    ASSERT_EQ(mkfifo((root.path().string() + kFile).c_str(), 0644), 0);
    EXPECT_THAT(Judgement({kFile}, root).lines, IsEmpty());
}

TEST(QmlImports, LongLinesAreJudged) {
    const std::string blanks(1000000, ' ');
    EXPECT_THAT(importsIn(blanks + "import A 1.0"), ElementsAre("A 1.0"));
    EXPECT_THAT(importsIn("import " + blanks + "A 1.0" + blanks), ElementsAre("A 1.0"));
    EXPECT_THAT(importsIn("import A 1.0 //" + std::string(1000000, 'x')), ElementsAre("A 1.0"));
    EXPECT_THAT(importsIn("import \"" + std::string(1000000, 'x')), IsEmpty());
}

TEST(QmlImports, AFileIsReadOnceWhateverTheNumberOfItsPaths) {
    const TemporaryDirectory root;
    const std::string text =
        std::string(100000, '\n') + "import Lumbra.Ostrand 1.0\nimport A 1.0\n";
    root.write(std::string(kFile).substr(1), text);
    std::filesystem::create_symlink("main.qml", root / "usr/share/app/qml/other.qml");
    std::vector<std::string> paths(50, kFile);
    paths.push_back("/usr/share/app/qml/other.qml");
    std::vector<std::string> lines;
    const std::uint64_t bytes = bytesReadBy([&] { lines = Judgement(paths, root).lines; });
    std::vector<std::string> expected(
        paths.size(), warningLine("[desktop] X-Dorrit-Application-Type should be ostrand-qt5 for "
                                  "apps importing Lumbra.Ostrand in QML"));
    expected.push_back(errorLine("[A 1.0] Import is not allowed"));
    EXPECT_EQ(lines, expected);
    EXPECT_LT(bytes, 2 * text.size());
}

}  // namespace
