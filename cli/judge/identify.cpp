// Finds the entry of the catalogue that a line stands for.
#include "cli/judge/identify.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <span>

#include "cli/catalogue/catalogue.h"

namespace pkgvet::cli {

namespace {

// Piece by piece, so that a name out of a package never counts as words of a rule. The library ends
// some lines with pieces that say nothing.
bool isComposedAs(const LogLine& line, const Entry& entry) {
    const std::span<const Piece> pieces = entry.pieces();
    if (pieces.empty() || line.pieces.size() < pieces.size()) {
        return false;
    }
    const auto rest = line.pieces.begin() + static_cast<std::ptrdiff_t>(pieces.size());
    return std::equal(pieces.begin(), pieces.end(), line.pieces.begin(),
                      [](const Piece& piece, const std::string& text) {
                          return piece.kind != Piece::Kind::Words || text == piece.words;
                      }) &&
           std::all_of(rest, line.pieces.end(),
                       [](const std::string& text) { return text.empty(); });
}

// An entry has one piece at the most that is its subject.
std::optional<std::string> subjectOf(const LogLine& line, const Entry& entry) {
    const std::span<const Piece> pieces = entry.pieces();
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        if (pieces[i].kind == Piece::Kind::Subject) {
            return line.pieces[i];
        }
    }
    return std::nullopt;
}

}  // namespace

Finding identify(const LogLine& line) {
    Finding finding;
    finding.severity = line.severity;
    finding.message = line.text();
    const auto found =
        std::find_if(entries().begin(), entries().end(),
                     [&line](const Entry* entry) { return isComposedAs(line, *entry); });
    if (found == entries().end()) {
        finding.rule = kOtherRemark;
    } else {
        finding.rule = (*found)->id;
        finding.subject = subjectOf(line, **found);
    }
    return finding;
}

}  // namespace pkgvet::cli
