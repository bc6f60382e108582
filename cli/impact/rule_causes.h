// What in the rules makes findings come and go.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cli/model/model.h"
#include "cli/rules/rule_changes.h"

namespace pkgvet::cli {

// Names the changes of a rule tree under one profile that make a finding appear or vanish: the
// entries of the lists that bear on its rule which match its subject, and the values of the keys
// that do. For one thread.
class RuleCauses {
public:
    explicit RuleCauses(std::vector<TreeChange> changes);
    RuleCauses(const RuleCauses&) = delete;
    RuleCauses(RuleCauses&& other) noexcept;
    RuleCauses& operator=(const RuleCauses&) = delete;
    RuleCauses& operator=(RuleCauses&&) = delete;
    ~RuleCauses();

    const std::vector<TreeChange>& changes() const { return changes_; }

    // Where they stand and what they are, such as "rules/libraries.json:5:9: libfoo.* removed from
    // libraries.allowed". Empty where none can be named.
    std::string of(const Finding& finding) const;

private:
    struct Patterns;

    bool isCause(std::size_t index, const Finding& finding) const;
    bool isAbout(std::size_t index, const Finding& finding) const;

    std::vector<TreeChange> changes_;
    std::unique_ptr<Patterns> patterns_;
};

}  // namespace pkgvet::cli
