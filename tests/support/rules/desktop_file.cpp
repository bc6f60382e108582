#include "tests/support/rules/desktop_file.h"

#include <map>

#include "tests/support/base/temporary_directory.h"
#include "tests/support/rules/rule_tree.h"

DesktopEntry desktopEntry(const std::string& content) {
    const TemporaryDirectory directory;
    return DesktopEntry(directory.write("application.desktop", content));
}

const Configuration& rulesNamed(const std::string& name) {
    static std::map<std::string, Configuration> rules;
    const auto known = rules.find(name);
    if (known != rules.end()) {
        return known->second;
    }
    RuleTree tree;
    tree.regular().name = name;
    tree.regular().permissions = {"Internet", "Location"};
    return rules.emplace(name, load(tree)).first->second;
}
