// Sums up the rules of a profile.
#include "cli/rules/rule_digest.h"

#include <set>
#include <string_view>

#include "cli/base/checksum.h"
#include "pkgvet/rules/rule_tree_format.h"

namespace pkgvet::cli {

namespace {

// Stands behind each text, and no text of a JSON file that the library takes holds it. Two of them
// end a list.
constexpr std::string_view kEnd("\0", 1);

void add(std::string_view text, Checksum* sum) {
    sum->add(text);
    sum->add(kEnd);
}

}  // namespace

std::string digestOf(const RuleSet& rules) {
    Checksum sum;
    for (const RuleScalar& scalar : rules.scalars) {
        // What is inherited stands in the lists already.
        if (scalar.name != kInheritanceKey) {
            add(scalar.name, &sum);
            add(scalar.value, &sum);
        }
    }
    for (const RuleList& list : rules.lists) {
        std::set<std::string> texts;
        for (const RuleElement& element : list.elements) {
            texts.insert(element.text);
        }
        add(list.name, &sum);
        for (const std::string& text : texts) {
            add(text, &sum);
        }
        sum.add(kEnd);
    }
    return sum.finish();
}

}  // namespace pkgvet::cli
