// Holds the chapters of the catalogue and finds entries by their ids.
#include "cli/catalogue/catalogue.h"

#include <algorithm>
#include <functional>
#include <tuple>
#include <unordered_map>

#include "cli/base/nearest.h"
#include "cli/base/version.h"
#include "cli/catalogue/catalogue_tables.h"

namespace pkgvet::cli {

namespace {

constexpr std::size_t kMostSuggestions = 3;
constexpr const char* kFindingsPage = "docs/findings.md#";

constexpr Entry kOtherRemarks[] = {
    {.id = kOtherRemark,
     .severity = Severity::Info,
     .title = "Remark that belongs to no rule",
     .demand = "Nothing: no rule of pkgvet stands behind this line.",
     .why = "A library that pkgvet works with, such as the platform's own validator of managed "
            "configuration files, had something to say while the package was judged.",
     .fix = "Nothing is to be done on account of this line alone. If another finding stands beside "
            "it, the remark may name its cause."},
    {.id = "not-judged",
     .severity = Severity::Error,
     .title = "Package could not be judged",
     .demand =
         "A package can be read and unpacked, and all rules run on it to their end within the "
         "limits of the run. One that is not judged is never accepted, and nothing excuses "
         "that.",
     .why = "What was not looked at may hold anything. The line behind `not judged` says what "
            "stood in the way, and `cause_code` in JSON says it in a word.",
     .fix =
         "`unreadable` and `not-a-package`: hand in the file that rpmbuild wrote, whole, and not "
         "an archive, a link to nowhere or a source package (`.src.rpm`): of a source package "
         "build the binary one with `rpmbuild --rebuild` and hand in that. `unpack-failed`: the "
         "payload is damaged or of a kind that `rpm2cpio` does not know here; build the package "
         "anew. `too-large`, `too-many-files`, `out-of-time` and `out-of-memory`: the cause "
         "names the option that raises the limit, and a package that meets one is seldom meant "
         "to be so large. `crashed` and `rule-failed`: report the package to the developers of "
         "pkgvet. `interrupted`: judge it again.",
     .example = "pkgvet check --timeout 600 --max-unpacked 8G my-app.rpm\n"},
};

std::vector<const Entry*> flattened(const std::vector<Chapter>& chapters) {
    std::vector<const Entry*> result;
    for (const Chapter& chapter : chapters) {
        for (const Entry& entry : chapter.entries) {
            result.push_back(&entry);
        }
    }
    return result;
}

}  // namespace

std::span<const std::string_view> Entry::related() const {
    return {relatedIds.begin(),
            std::find(relatedIds.begin(), relatedIds.end(), std::string_view())};
}

std::span<const Piece> Entry::pieces() const {
    return message == nullptr ? std::span<const Piece>() : message->pieces();
}

const std::vector<Chapter>& chapters() {
    static const std::vector<Chapter> all = {
        headerChapter(),    desktopChapter(),
        sandboxChapter(),   taskChapter(),
        qmlChapter(),       binaryChapter(),
        pathChapter(),      fileChapter(),
        integrityChapter(), {"Other remarks", kOtherRemarks},
    };
    return all;
}

const std::vector<const Entry*>& entries() {
    static const std::vector<const Entry*> all = flattened(chapters());
    return all;
}

const Chapter& chapterOf(const Entry& entry) {
    const auto holds = [&entry](const Chapter& chapter) {
        return std::less_equal<>()(chapter.entries.data(), &entry) &&
               std::less<>()(&entry, chapter.entries.data() + chapter.entries.size());
    };
    return *std::find_if(chapters().begin(), chapters().end(), holds);
}

std::string helpUri(std::string_view id) {
    return (programHomepage() + kFindingsPage).append(id);
}

// Every finding of a judge's answer is looked up.
const Entry* findEntry(std::string_view id) {
    static const auto byId = [] {
        std::unordered_map<std::string_view, const Entry*> map;
        for (const Entry* entry : entries()) {
            map.emplace(entry->id, entry);
        }
        return map;
    }();
    const auto found = byId.find(id);
    return found == byId.end() ? nullptr : found->second;
}

const Entry* findEntry(const Message& message) {
    const auto found =
        std::find_if(entries().begin(), entries().end(),
                     [&message](const Entry* entry) { return entry->message == &message; });
    return found == entries().end() ? nullptr : *found;
}

// A word that is part of an id, such as "setuid", is nearer to it than any misspelling. Where
// distances are equal, the alphabet decides, so that the answer is the same each time.
std::vector<std::string> nearestIds(std::string_view word) {
    std::vector<std::tuple<bool, std::size_t, std::string_view>> ranked;
    for (const Entry* entry : entries()) {
        const bool isElsewhere = entry->id.find(word) == std::string_view::npos;
        ranked.emplace_back(isElsewhere, editDistance(word, entry->id), entry->id);
    }
    std::sort(ranked.begin(), ranked.end());
    std::vector<std::string> nearest;
    for (std::size_t i = 0; i < std::min(ranked.size(), kMostSuggestions); ++i) {
        nearest.emplace_back(std::get<std::string_view>(ranked[i]));
    }
    return nearest;
}

bool isGrave(std::string_view id) {
    const Entry* entry = findEntry(id);
    return entry != nullptr && entry->grave;
}

bool isGrave(const Finding& finding) {
    return finding.severity == Severity::Critical || isGrave(finding.rule);
}

}  // namespace pkgvet::cli
