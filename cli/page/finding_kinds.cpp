// Sorts findings into kinds.
#include "cli/page/finding_kinds.h"

#include <algorithm>
#include <tuple>

#include "cli/base/escape.h"

namespace pkgvet::cli {

namespace {

// A shorter subject may stand in a message as a part of another word.
constexpr std::size_t kLeastSubject = 4;
constexpr std::string_view kEllipsis = "…";

void replaceAll(const std::string& what, const std::string& replacement, std::size_t from,
                std::string* text) {
    for (std::size_t at = text->find(what, from); at != std::string::npos;
         at = text->find(what, at + replacement.size())) {
        text->replace(at, what.size(), replacement);
    }
}

std::string frontOf(const std::string& subject) {
    return "[" + subject + "] ";
}

std::string textOf(const Finding& finding) {
    std::string text = printable(finding.message);
    const std::string subject = printable(finding.subject.value_or(std::string()));
    if (subject.empty()) {
        return text;
    }
    const std::string mark(1, kSubjectMark);
    std::size_t rest = 0;
    if (text.starts_with(frontOf(subject))) {
        text.replace(0, frontOf(subject).size(), frontOf(mark));
        rest = frontOf(mark).size();
    }
    if (subject.size() >= kLeastSubject) {
        replaceAll(subject, mark, rest, &text);
    }
    return text;
}

}  // namespace

bool FindingKind::operator<(const FindingKind& other) const {
    return std::tie(rule, severity, standing, reason, hasSubject, text, profiles, count) <
           std::tie(other.rule, other.severity, other.standing, other.reason, other.hasSubject,
                    other.text, other.profiles, other.count);
}

std::size_t Numbers::of(const std::string& text) {
    const auto [place, isNew] = numbers_.try_emplace(text, texts_.size());
    if (isNew) {
        texts_.push_back(text);
    }
    return place->second;
}

FindingKinds::FindingKinds(const RunReport& run) {
    for (const ProfileRules& profile : run.provenance.profiles) {
        profiles_.of(profile.name);
    }
}

std::size_t FindingKinds::of(const MergedFinding& merged) {
    const Finding& finding = *merged.finding;
    FindingKind kind = {finding.rule,
                        finding.severity,
                        finding.standing,
                        finding.reason,
                        !finding.subject.value_or(std::string()).empty(),
                        textOf(finding),
                        {},
                        finding.count};
    for (const std::string_view profile : merged.profiles) {
        kind.profiles.push_back(profiles_.of(std::string(profile)));
    }
    const auto [place, isNew] = numbers_.try_emplace(std::move(kind), kinds_.size());
    if (isNew) {
        kinds_.push_back(&place->first);
    }
    return place->second;
}

std::string textWithoutSubject(const FindingKind& kind) {
    const std::string front = frontOf(std::string(1, kSubjectMark));
    std::string text = kind.text.starts_with(front) ? kind.text.substr(front.size()) : kind.text;
    replaceAll(std::string(1, kSubjectMark), std::string(kEllipsis), 0, &text);
    return text;
}

}  // namespace pkgvet::cli
