// Where the differences of two trees stand.
#include "cli/rules/rule_changes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/rules/rule_tree.h"

namespace {

using namespace pkgvet::cli;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> linesOf(const std::vector<TreeChange>& changes) {
    std::vector<std::string> lines;
    for (const TreeChange& change : changes) {
        lines.push_back((change.isAdded ? "+ " : "- ") + change.list + " " + change.text + " " +
                        std::filesystem::path(change.file).filename().string() + ":" +
                        std::to_string(change.position.line));
    }
    return lines;
}

TEST(RuleChanges, EachEntryHasItsFileAndLine) {
    const TemporaryDirectory before;
    const TemporaryDirectory after;
    RuleTree tree;
    tree.regular().libraries.allowed = {"liba", "libb"};
    tree.regular().permissions = {"Audio"};
    const std::string old = tree.write(before);
    writeFile(before / "profile-0/libraries.json",
              "{\"libraries\": [{\"name\": \"allowed\",\n \"list\": [\"liba\",\n\"libb\"]}]}");
    tree.regular().libraries.allowed = {"libb"};
    tree.regular().permissions = {"Audio", "Location"};
    tree.regular().requireIcons = true;
    const std::string updated = tree.write(after);
    const std::vector<TreeChange> changes =
        ruleChanges(loadRuleSet(old, Profiles::Regular), loadRuleSet(updated, Profiles::Regular));
    EXPECT_THAT(linesOf(changes), ElementsAre("- require_icons false configuration.json:22",
                                              "+ require_icons true configuration.json:22",
                                              "- libraries.allowed liba libraries.json:2",
                                              "+ permissions Location permissions.json:1"));
    EXPECT_THAT(changes[2].file, testing::StartsWith(before.path().string()));
    EXPECT_THAT(changes[3].file, testing::StartsWith(after.path().string()));
}

TEST(RuleChanges, OrderAndRepeatsMakeNone) {
    const TemporaryDirectory before;
    const TemporaryDirectory after;
    RuleTree tree;
    tree.regular().permissions = {"A", "B"};
    const RuleSet old = loadRuleSet(tree.write(before), Profiles::Regular);
    tree.regular().permissions = {"B", "A", "B"};
    const RuleSet updated = loadRuleSet(tree.write(after), Profiles::Regular);
    EXPECT_THAT(ruleChanges(old, updated), IsEmpty());
}

}  // namespace
