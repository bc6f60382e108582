// Writes what commands on rule trees have to say.
#include "cli/rules/rules_output.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <ostream>
#include <set>
#include <utility>

#include "cli/base/escape.h"
#include "cli/base/text.h"
#include "pkgvet/base/utf8.h"

namespace pkgvet::cli {

namespace {

using OrderedJson = nlohmann::ordered_json;

// Raised when a reader of the former form would go wrong; new keys alone do not raise it.
constexpr int kSchemaVersion = 1;
// One long pattern must not push the file names of all others out of sight.
constexpr std::size_t kWidestColumn = 60;
// Values come as text. The keys that begin like this, and no others, are true or false.
constexpr const char* kFlagPrefix = "require_";

void writeFaults(const std::vector<Fault>& faults, const char* label, std::ostream& stream) {
    for (const Fault& fault : faults) {
        stream << label << ": " << describe(fault) << '\n';
    }
}

void writeList(const RuleList& list, std::ostream& stream) {
    const std::vector<RuleElement> elements = withoutRepeats(list);
    std::size_t width = 0;
    for (const RuleElement& element : elements) {
        width = std::max(width, printable(element.text).size());
    }
    width = std::min(width, kWidestColumn);
    stream << '\n' << list.name << " (" << elements.size() << ")\n";
    for (const RuleElement& element : elements) {
        const std::string text = printable(element.text);
        const std::string padding(width - std::min(width, text.size()), ' ');
        stream << "  " << text << padding << "  " << printable(element.file) << '\n';
    }
}

OrderedJson toJson(const RuleScalar& scalar) {
    if (scalar.name.starts_with(kFlagPrefix)) {
        return scalar.value == "true";
    }
    return validUtf8(scalar.value);
}

OrderedJson toJson(const RuleList& list) {
    OrderedJson elements = OrderedJson::array();
    for (const RuleElement& element : withoutRepeats(list)) {
        elements.push_back({{"text", validUtf8(element.text)}, {"file", validUtf8(element.file)}});
    }
    return elements;
}

std::set<std::string> textsOf(const RuleList& list) {
    std::set<std::string> texts;
    for (const RuleElement& element : list.elements) {
        texts.insert(element.text);
    }
    return texts;
}

// Scalars as lists of one element, and all lists: what changed is then found in one way.
std::vector<RuleList> comparable(const RuleSet& rules) {
    std::vector<RuleList> lists;
    for (const RuleScalar& scalar : rules.scalars) {
        lists.push_back({scalar.name, {{scalar.value, std::string(), scalar.key}}});
    }
    lists.insert(lists.end(), rules.lists.begin(), rules.lists.end());
    return lists;
}

// The elements of list that are not among texts, in the order of list.
std::vector<std::string> missingFrom(const std::set<std::string>& texts, const RuleList& list) {
    std::vector<std::string> missing;
    for (const RuleElement& element : withoutRepeats(list)) {
        if (texts.count(element.text) == 0) {
            missing.push_back(element.text);
        }
    }
    return missing;
}

OrderedJson toJson(const std::vector<std::string>& texts) {
    OrderedJson array = OrderedJson::array();
    for (const std::string& text : texts) {
        array.push_back(validUtf8(text));
    }
    return array;
}

}  // namespace

void writeRuleCheck(const std::vector<Fault>& faults, const std::vector<Fault>& warnings,
                    std::ostream& stream) {
    writeFaults(faults, "error", stream);
    writeFaults(warnings, "warning", stream);
    stream << counted(faults.size(), "error") << ", " << counted(warnings.size(), "warning")
           << '\n';
}

void writeRulesAsText(const RuleSet& rules, std::ostream& stream) {
    for (const RuleScalar& scalar : rules.scalars) {
        stream << scalar.name << ": " << printable(scalar.value) << '\n';
    }
    for (const RuleList& list : rules.lists) {
        writeList(list, stream);
    }
}

void writeRulesAsJson(const RuleSet& rules, std::ostream& stream) {
    OrderedJson values = OrderedJson::object();
    for (const RuleScalar& scalar : rules.scalars) {
        values[scalar.name] = toJson(scalar);
    }
    OrderedJson lists = OrderedJson::object();
    for (const RuleList& list : rules.lists) {
        lists[list.name] = toJson(list);
    }
    const OrderedJson root = {
        {"schema_version", kSchemaVersion}, {"values", values}, {"lists", lists}};
    stream << root.dump(2) << '\n';
}

// Trees without faults have the same keys and lists in the same order, so that positions match.
std::vector<ListDifference> compareRules(const RuleSet& before, const RuleSet& after) {
    const std::vector<RuleList> old = comparable(before);
    const std::vector<RuleList> updated = comparable(after);
    std::vector<ListDifference> differences;
    for (std::size_t i = 0; i < std::min(old.size(), updated.size()); ++i) {
        ListDifference difference{old[i].name, missingFrom(textsOf(updated[i]), old[i]),
                                  missingFrom(textsOf(old[i]), updated[i])};
        if (!difference.removed.empty() || !difference.added.empty()) {
            differences.push_back(std::move(difference));
        }
    }
    return differences;
}

void writeDifferencesAsText(const std::vector<ListDifference>& differences, std::ostream& stream) {
    for (const ListDifference& difference : differences) {
        stream << difference.name << '\n';
        for (const std::string& text : difference.removed) {
            stream << "  - " << printable(text) << '\n';
        }
        for (const std::string& text : difference.added) {
            stream << "  + " << printable(text) << '\n';
        }
    }
}

void writeDifferencesAsJson(const std::vector<ListDifference>& differences, std::ostream& stream) {
    OrderedJson lists = OrderedJson::object();
    for (const ListDifference& difference : differences) {
        lists[difference.name] = {{"removed", toJson(difference.removed)},
                                  {"added", toJson(difference.added)}};
    }
    const OrderedJson root = {{"schema_version", kSchemaVersion}, {"differences", lists}};
    stream << root.dump(2) << '\n';
}

}  // namespace pkgvet::cli
