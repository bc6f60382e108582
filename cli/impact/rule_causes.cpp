// Finds causes by the subjects of findings.
#include "cli/impact/rule_causes.h"

#include <array>
#include <regex>
#include <string_view>
#include <utility>

#include "cli/base/text.h"
#include "pkgvet/pattern/pattern_list.h"

namespace pkgvet::cli {

namespace {

// Which lists of a tree bear on which rules, by what their names begin with.
struct Bearing {
    std::string_view rules;
    std::string_view lists;
    bool bySubject;  // only entries that match the subject of the finding
};

constexpr std::array<Bearing, 13> kBearings = {{
    {"library-", "libraries.", true},
    {"dependency-", "requires.", true},
    {"dependency-", "libraries.", true},
    {"qml-import-", "qmlimports.", true},
    {"permission-", "permissions", true},
    {"task-permission-", "permissions", true},
    {"provide-", "patterns", true},
    {"provide-", "mimehandlers", true},
    {"mandatory-", "provides", false},
    {"icon-", "icon_sizes", true},
    {"icon-", "require_icons", false},
    {"desktop-file-", "require_desktop", false},
    {"qml-only", "require_desktop", false},
}};
// What is about a file can depend on the list of paths, whatever the rule.
constexpr std::string_view kPaths = "paths";
constexpr std::string_view kIconSizes = "icon_sizes";

bool matches(WholePattern* pattern, const std::string& text) {
    try {
        return pattern->matches(text);
    } catch (const std::regex_error&) {
        return false;
    }
}

std::string describe(const TreeChange& change) {
    std::string text = change.file;
    if (change.position.line != 0) {
        text.append(":").append(std::to_string(change.position.line));
        text.append(":").append(std::to_string(change.position.column));
    }
    text.append(": ").append(change.text);
    return text.append(change.isAdded ? " added to " : " removed from ").append(change.list);
}

}  // namespace

struct RuleCauses::Patterns {
    std::vector<WholePattern> all;  // of the changes
};

RuleCauses::RuleCauses(std::vector<TreeChange> changes)
    : changes_(std::move(changes)), patterns_(std::make_unique<Patterns>()) {
    for (const TreeChange& change : changes_) {
        patterns_->all.emplace_back(change.text);
    }
}

RuleCauses::RuleCauses(RuleCauses&& other) noexcept = default;
RuleCauses::~RuleCauses() = default;

std::string RuleCauses::of(const Finding& finding) const {
    std::vector<std::string> causes;
    for (std::size_t i = 0; i < changes_.size(); ++i) {
        if (isCause(i, finding)) {
            causes.push_back(describe(changes_[i]));
        }
    }
    return joined(causes, "; ");
}

bool RuleCauses::isCause(std::size_t index, const Finding& finding) const {
    const TreeChange& change = changes_[index];
    for (const Bearing& bearing : kBearings) {
        if (finding.rule.starts_with(bearing.rules) && change.list.starts_with(bearing.lists)) {
            return !bearing.bySubject || isAbout(index, finding);
        }
    }
    return change.list == kPaths && isAbout(index, finding);
}

bool RuleCauses::isAbout(std::size_t index, const Finding& finding) const {
    const TreeChange& change = changes_[index];
    if (!finding.subject) {
        return false;
    }
    if (change.list == kIconSizes) {
        const std::string directory = "/" + change.text + "x" + change.text + "/";
        return finding.subject->find(directory) != std::string::npos;
    }
    // Of "libfoo.so.1()(64bit)" the rules look at what stands ahead of the parentheses.
    const std::string name = finding.subject->substr(0, finding.subject->find('('));
    WholePattern* const pattern = &patterns_->all[index];
    return change.text == *finding.subject || matches(pattern, *finding.subject) ||
           matches(pattern, name);
}

}  // namespace pkgvet::cli
