// Judging the imports of QML files by the lists of a rule set, and those that lead to files.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>

#include "pkgvet/qml/qml_facts.h"
#include "pkgvet/qml/qml_rules.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/rules/rule_run.h"
#include "tests/support/rules/rule_tree.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kFile = "/usr/share/app/qml/pages/main.qml";

std::string notAllowed(const std::string& import) {
    return errorLine("[" + import + "] Import is not allowed");
}

std::string unstable(const std::string& import) {
    return warningLine("[" + import + "] Import is unstable or deprecated");
}

// What the rule says of a package with one QML file of this text, which lists paths besides.
std::vector<std::string> check(const std::string& text, const RuleTree& tree,
                               std::vector<std::string> paths = {}) {
    paths.emplace_back(kFile);
    const TemporaryDirectory root;
    root.write(std::string(kFile).substr(1), text);
    const Configuration configuration = load(tree);
    pkgvet::QmlFacts facts;
    return linesOf([&](pkgvet::Findings* findings) {
        pkgvet::checkQmlImports("app", paths, false, configuration, root.path(), &facts, findings);
    });
}

RuleTree treeWith(const TierLists& lists, const std::vector<std::string>& disallowed = {}) {
    RuleTree tree;
    tree.regular().qmlimports = lists;
    tree.disallowedPatterns = disallowed;
    return tree;
}

TEST(QmlImportLists, ImportOnNoListPassesWithoutAWord) {
    EXPECT_THAT(check("import Foo 1.0", RuleTree()), IsEmpty());
}

TEST(QmlImportLists, AllowedEntryHasToMatchTheVersionAsWell) {
    const RuleTree tree = treeWith({{R"(Foo 2\.[0-9]+)"}, {}, {}}, {"Foo.*"});
    EXPECT_THAT(check("import Foo 2.6\nimport Foo 3.0\nimport Foo  2.6", tree),
                ElementsAre(notAllowed("Foo  2.6"), notAllowed("Foo 3.0")));
}

TEST(QmlImportLists, DisallowedPatternIsAnError) {
    EXPECT_THAT(check("import Foo 1.0\nimport Bar 1.0", treeWith({}, {"Foo.*"})),
                ElementsAre(notAllowed("Foo 1.0")));
}

TEST(QmlImportLists, UnstableAndDeprecatedImportsAreOneWarning) {
    const RuleTree tree = treeWith({{}, {"Foo 1.0", "Both 1.0"}, {"Bar 1.0", "Both 1.0"}}, {".*"});
    EXPECT_THAT(check("import Foo 1.0\nimport Bar 1.0\nimport Both 1.0", tree),
                ElementsAre(unstable("Bar 1.0"), unstable("Both 1.0"), unstable("Foo 1.0")));
}

// An import is judged by the first of the two lists that has it, and never by the patterns then.
TEST(QmlImportLists, UnstableAndDeprecatedGoBeforeDisallowed) {
    EXPECT_THAT(check("import Foo 1.0", treeWith({{}, {".*"}, {}}, {".*"})),
                ElementsAre(unstable("Foo 1.0")));
    EXPECT_THAT(check("import Foo 1.0", treeWith({{}, {}, {".*"}}, {".*"})),
                ElementsAre(unstable("Foo 1.0")));
}

TEST(QmlImportLists, AllowedGoesBeforeAllOthers) {
    const RuleTree tree = treeWith({{"Foo 1.0"}, {"Foo 1.0"}, {"Foo 1.0"}}, {".*"});
    EXPECT_THAT(check("import Foo 1.0", tree), IsEmpty());
}

TEST(QmlImportLists, BadPatternThrowsWhenAnImportGetsToIt) {
    const RuleTree tree = treeWith({{"Foo 1.0", "("}, {}, {}});
    EXPECT_NO_THROW(check("import Foo 1.0", tree));
    EXPECT_NO_THROW(check("Item {}", tree));
    EXPECT_THROW(check("import Bar 1.0", tree), std::regex_error);
}

struct Case {
    const char* name;
    const char* import;
    std::vector<std::string> paths;
    std::vector<std::string> lines;
};

// With everything disallowed, an import that leads to a file is the one that draws no line.
TEST(QmlImportLists, QuotedImportsLeadToFilesOfThePackage) {
    const std::vector<Case> cases = {
        {"one step up", "\"../components\"", {"/usr/share/app/qml/components"}, {}},
        {"in the QML directory, wherever the file lies",
         "\"parts\"",
         {"/usr/share/app/qml/parts"},
         {}},
        {"beside the file",
         "\"parts\"",
         {"/usr/share/app/qml/pages/parts"},
         {notAllowed("\"parts\"")}},
        {"a part of a path", "\"part\"", {"/usr/share/app/qml/parts"}, {notAllowed("\"part\"")}},
        {"two steps up", "\"../../x\"", {"/usr/share/app/qml/x"}, {notAllowed("\"../../x\"")}},
        {"the directory itself", "\"./x\"", {"/usr/share/app/qml/x"}, {notAllowed("\"./x\"")}},
        {"with a blank inside", "\"x y\"", {"/usr/share/app/qml/x"}, {notAllowed("\"x y\"")}},
        {"with more behind it", "\"x\" // \"y\"", {"/usr/share/app/qml/x"}, {}},
        {"of another package", "\"x\"", {"/usr/share/other/qml/x"}, {notAllowed("\"x\"")}},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        EXPECT_EQ(check(std::string("import ") + test.import, treeWith({}, {".*"}), test.paths),
                  test.lines);
    }
}

TEST(QmlImportLists, QuotedImportThatLeadsNowherePasses) {
    EXPECT_THAT(check("import \"nowhere\"", RuleTree()), IsEmpty());
}

TEST(QmlImportLists, AbsolutePathIsAnErrorAndStillGoesToTheLists) {
    const std::string import = "\"/usr/share/app/qml/x\"";
    EXPECT_THAT(check("import " + import, RuleTree(), {"/usr/share/app/qml/x"}),
                ElementsAre(notAllowed(import)));
    EXPECT_THAT(check("import " + import, treeWith({}, {".*"})),
                ElementsAre(notAllowed(import), notAllowed(import)));
    EXPECT_THAT(check("import " + import, treeWith({{".*"}, {}, {}}, {".*"})),
                ElementsAre(notAllowed(import)));
}

TEST(QmlImportLists, DirectoryIsThatOfTheRuleSet) {
    RuleTree tree = treeWith({}, {".*"});
    tree.shareDir = "/opt/share-";
    EXPECT_THAT(check("import \"x\"", tree, {"/opt/share-app/qml/x"}), IsEmpty());
}

// An import that leads to a file is a pattern for all others.
TEST(QmlImportLists, PackagedImportsArePatterns) {
    const RuleTree tree = treeWith({}, {".*"});
    EXPECT_THAT(check("import \"a.b\"\nimport \"axb\"", tree, {"/usr/share/app/qml/a.b"}),
                IsEmpty());
    EXPECT_THAT(check("import \"a+b\"\nimport \"aab\"", tree, {"/usr/share/app/qml/a+b"}),
                ElementsAre(notAllowed("\"a+b\"")));
    EXPECT_THROW(check("import \"a(\"", tree, {"/usr/share/app/qml/a("}), std::regex_error);
}

}  // namespace
