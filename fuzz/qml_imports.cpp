// QML files through the rule on imports: parts of the input are files.
#include <regex>

#include "fuzz/fuzz_target.h"
#include "pkgvet/qml/qml_facts.h"
#include "pkgvet/qml/qml_rules.h"
#include "pkgvet/report/findings.h"
#include "tests/support/rules/rule_tree.h"

namespace {

RuleTree rules() {
    RuleTree tree;
    tree.regular().qmlimports = {{R"(QtQuick 2\.\d+)"}, {"QtSensors.*"}, {"Qt\\.old.*"}};
    tree.disallowedPatterns = {R"(.*\.private.*)", "\"/.*"};
    return tree;
}

}  // namespace

void pkgvet::fuzz::run(std::string_view input) {
    static const Configuration configuration = load(rules());
    static const TemporaryDirectory directory;
    const std::vector<std::string> paths = {"/usr/share/app/qml/main.qml",
                                            "/usr/share/app/qml/pages/First.qml",
                                            "/usr/share/app/qml/(lib", "/usr/share/app/qml/lib"};
    const std::vector<std::string> files = partsOf(input, 2);
    directory.write(paths[0].substr(1), files[0]);
    directory.write(paths[1].substr(1), files[1]);
    QmlFacts facts;
    Findings findings;
    // The name of a packaged file serves as a pattern and may not be one.
    tolerate<std::regex_error>([&] {
        checkQmlImports("app", paths, false, configuration, directory.path(), &facts, &findings);
    });
}
