// Finds entries of the catalogue, by their ids and by the lines that they stand for.
#include "cli/catalogue.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "cli/catalogue_tables.h"

namespace pkgvet::cli {

namespace {

constexpr std::string_view kOtherRemark = "other-remark";
constexpr std::size_t kMostSuggestions = 3;

Chapter otherChapter() {
    return {"Other remarks",
            {{.id = kOtherRemark,
              .severity = Severity::Info,
              .title = "A remark that belongs to no rule",
              .demand = "Nothing: no rule of pkgvet stands behind this line.",
              .why = "A library that pkgvet works with, such as the platform's own validator of "
                     "managed configuration files, had something to say while the package was "
                     "judged.",
              .fix = "Nothing is to be done on account of this line alone. If another finding "
                     "stands beside it, the remark may name its cause."}}};
}

std::vector<const Entry*> flattened(const std::vector<Chapter>& chapters) {
    std::vector<const Entry*> result;
    for (const Chapter& chapter : chapters) {
        for (const Entry& entry : chapter.entries) {
            result.push_back(&entry);
        }
    }
    return result;
}

// Piece by piece, so that a name out of a package never counts as words of a rule.
bool isComposedAs(const LogLine& line, const Entry& entry) {
    return !entry.pieces.empty() &&
           std::equal(line.pieces.begin(), line.pieces.end(), entry.pieces.begin(),
                      entry.pieces.end(), [](const std::string& text, const Piece& piece) {
                          return piece.kind != Piece::Kind::Words || text == piece.words;
                      });
}

// How many characters must be put in, taken out or replaced to make one word of the other.
std::size_t editDistance(std::string_view from, std::string_view to) {
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < from.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < to.size(); ++j) {
            const std::size_t replaced = diagonal + (from[i] == to[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

}  // namespace

const std::vector<Chapter>& chapters() {
    static const std::vector<Chapter> all = {headerChapter(), otherChapter()};
    return all;
}

const std::vector<const Entry*>& entries() {
    static const std::vector<const Entry*> all = flattened(chapters());
    return all;
}

const Entry* findEntry(std::string_view id) {
    const auto found = std::find_if(entries().begin(), entries().end(),
                                    [id](const Entry* entry) { return entry->id == id; });
    return found == entries().end() ? nullptr : *found;
}

std::vector<std::string> nearestIds(std::string_view word) {
    std::vector<std::pair<std::size_t, std::string>> ranked;
    for (const Entry* entry : entries()) {
        ranked.emplace_back(editDistance(word, entry->id), entry->id);
    }
    std::sort(ranked.begin(), ranked.end());
    std::vector<std::string> nearest;
    for (std::size_t i = 0; i < std::min(ranked.size(), kMostSuggestions); ++i) {
        nearest.push_back(ranked[i].second);
    }
    return nearest;
}

bool isGrave(std::string_view id) {
    const Entry* entry = findEntry(id);
    return entry != nullptr && entry->grave;
}

Finding identify(const LogLine& line) {
    Finding finding;
    finding.rule = kOtherRemark;
    finding.severity = line.severity;
    finding.message = line.text();
    const auto found =
        std::find_if(entries().begin(), entries().end(),
                     [&line](const Entry* entry) { return isComposedAs(line, *entry); });
    if (found == entries().end()) {
        return finding;
    }
    finding.rule = (*found)->id;
    for (std::size_t i = 0; i < line.pieces.size(); ++i) {
        if ((*found)->pieces[i].kind == Piece::Kind::Subject) {
            finding.subject = line.pieces[i];
        }
    }
    return finding;
}

}  // namespace pkgvet::cli
