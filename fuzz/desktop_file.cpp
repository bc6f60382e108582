// A desktop file through all rules on it.
#include "fuzz/fuzz_target.h"
#include "pkgvet/desktop/desktop_entry.h"
#include "pkgvet/desktop/desktop_facts.h"
#include "pkgvet/desktop/desktop_rules.h"
#include "pkgvet/report/findings.h"
#include "tests/support/rules/rule_tree.h"

namespace {

const std::string kPath = "/usr/share/applications/app.desktop";

RuleTree rules() {
    RuleTree tree;
    tree.regular().permissions = {"Internet", "Audio", "Documents"};
    tree.disallowedHandlers = {"x-scheme-handler/tel.*"};
    return tree;
}

}  // namespace

void pkgvet::fuzz::run(std::string_view input) {
    static const Configuration configuration = load(rules());
    static const TemporaryDirectory directory;
    const std::string name = "app";
    const DesktopEntry entry(directory.write(kPath.substr(1), input));
    DesktopFacts facts;
    Findings findings;
    checkDesktop({kPath}, kPath, configuration, &facts, &findings);
    processDesktopFile(name, entry, &facts, &findings);
    processPinfold(name, entry, configuration, directory.path(), &facts, &findings);
    processBackgroundTasks(name, entry, facts, &findings);
    for (const std::string& group : entry.groups()) {
        expect(entry.hasGroup(group), "a group that is listed is there");
    }
}
