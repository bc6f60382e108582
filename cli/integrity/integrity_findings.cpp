// Makes findings of the program's own messages.
#include "cli/integrity/integrity_findings.h"

#include <cassert>
#include <string>
#include <utility>

#include "cli/catalogue/catalogue.h"
#include "cli/catalogue/integrity_messages.h"

namespace pkgvet::cli {

namespace {

constexpr std::size_t kMostOfAKind = 100;

}  // namespace

Finding integrityFinding(const Message& message, Texts texts) {
    const Entry* const entry = findEntry(message);
    assert(entry != nullptr);
    Finding finding;
    finding.rule = entry->id;
    finding.severity = entry->severity;
    const auto* text = texts.begin();
    for (const Piece& piece : message.pieces()) {
        assert(piece.kind == Piece::Kind::Words || text != texts.end());
        const std::string_view words =
            piece.kind == Piece::Kind::Words ? piece.words : std::string_view(*text++);
        finding.message += words;
        if (piece.kind == Piece::Kind::Subject) {
            finding.subject = words;
        }
    }
    return finding;
}

void IntegrityFindings::add(const Message& message, Texts texts) {
    if (++counts_[&message] <= kMostOfAKind) {
        findings_.push_back(integrityFinding(message, texts));
    }
}

std::vector<Finding> IntegrityFindings::take() {
    for (const auto& [message, count] : counts_) {
        if (count > kMostOfAKind) {
            findings_.push_back(integrityFinding(
                kFindingsLeftOut, {std::to_string(count - kMostOfAKind), findEntry(*message)->id}));
            findings_.back().count = count - kMostOfAKind;
        }
    }
    counts_.clear();
    return std::exchange(findings_, {});
}

}  // namespace pkgvet::cli
