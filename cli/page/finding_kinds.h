// What findings have in common, told once: a night's run has a hundred thousand of them and a few
// hundred kinds.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "cli/model/model.h"
#include "cli/model/summary.h"

namespace pkgvet::cli {

// Stands for the subject in the text of a kind. printable() leaves no such byte in a text.
inline constexpr char kSubjectMark = '\x01';

// All of a finding but its subject.
struct FindingKind {
    std::string rule;
    Severity severity = Severity::Info;
    Standing standing = Standing::Counts;
    std::string reason;                 // of the waiver
    bool hasSubject = false;            // one that is not empty
    std::string text;                   // the message with kSubjectMark where the subject stands
    std::vector<std::size_t> profiles;  // by their numbers, in order
    std::size_t count = 1;              // of the findings that it stands for

    bool operator<(const FindingKind& other) const;
};

// The texts of the table in the order in which they were first asked for.
class Numbers {
public:
    std::size_t of(const std::string& text);
    const std::vector<std::string>& texts() const { return texts_; }

private:
    std::map<std::string, std::size_t> numbers_;
    std::vector<std::string> texts_;
};

class FindingKinds {
public:
    explicit FindingKinds(const RunReport& run);

    // The number of the finding's kind, which is new if none like it came before.
    std::size_t of(const MergedFinding& merged);

    const std::vector<const FindingKind*>& all() const { return kinds_; }
    // The names of profiles that kinds refer to.
    const std::vector<std::string>& profiles() const { return profiles_.texts(); }
    std::size_t profile(const std::string& name) { return profiles_.of(name); }

private:
    std::map<FindingKind, std::size_t> numbers_;
    std::vector<const FindingKind*> kinds_;  // into the keys of numbers_
    Numbers profiles_;
};

// What a reader sees of the message in the place of the subject's own list: without the subject in
// brackets at its front, and with an ellipsis where it stands further on.
std::string textWithoutSubject(const FindingKind& kind);

}  // namespace pkgvet::cli
