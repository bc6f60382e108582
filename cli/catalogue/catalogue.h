// Every rule of the library and of the program by its permanent id, with what a developer needs to
// satisfy it.
#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "cli/model/model.h"
#include "pkgvet/report/message.h"

namespace pkgvet::cli {

// The id of what no rule of the library stands behind.
inline constexpr std::string_view kOtherRemark = "other-remark";

// A message of the library, or one of the program's own. Ids are never reused and never change
// their meaning: waivers, baselines and other people's pages refer to them. Entries live as long as
// the process.
struct Entry {
    std::string_view id = {};  // kebab-case
    Severity severity = Severity::Error;
    // Rejects a package even where validation is switched off. Such a finding cannot be waived.
    bool grave = false;
    std::string_view title = {};
    std::string_view demand = {};   // what the rule asks for
    std::string_view why = {};      // why it asks
    std::string_view fix = {};      // how to put it right in the package's sources
    std::string_view example = {};  // lines of those sources; ends in a line feed
    // Ids that it often comes with, filled up with empty ones.
    std::array<std::string_view, 4> relatedIds = {};
    // What is written. Null for what no rule writes.
    const Message* message = nullptr;

    std::span<const std::string_view> related() const;
    std::span<const Piece> pieces() const;
};

// Entries that belong together, in the order in which the library reports them.
struct Chapter {
    std::string_view title;
    std::span<const Entry> entries;
};

// The whole catalogue.
const std::vector<Chapter>& chapters();

// All entries in the order of the chapters.
const std::vector<const Entry*>& entries();

// The chapter that entry, one of the catalogue, stands in.
const Chapter& chapterOf(const Entry& entry);

// Where the entry of this id can be read.
std::string helpUri(std::string_view id);

// The entry with this id, null when there is none.
const Entry* findEntry(std::string_view id);

// The entry that has this message, which is told by its address; null when there is none.
const Entry* findEntry(const Message& message);

// The ids that are most like a word that is not one of them, the best first, three at the most.
std::vector<std::string> nearestIds(std::string_view word);

// Whether findings of the rule reject a package in any case. False for what is not an id.
bool isGrave(std::string_view id);

// Whether the finding rejects a package whatever waivers, baseline and validation mode say:
// scripts, setuid, setgid and sticky bits, and what the program itself finds on integrity.
bool isGrave(const Finding& finding);

}  // namespace pkgvet::cli
