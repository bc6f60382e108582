// The formats in which an effect is told.
#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "cli/effect/effect.h"

namespace pkgvet::cli {

enum class EffectFormat { Text, Json, Markdown, Html };

// The same byte for byte for the same effect, and legal in its format whatever bytes a package
// holds.
void writeEffect(const Effect& effect, EffectFormat format, std::ostream& stream);

// For a person: the verdicts that turn, and the rules whose findings appear and vanish.
void writeEffectText(const Effect& effect, std::ostream& stream);
// One document, described by docs/effect.schema.json.
void writeEffectJson(const Effect& effect, std::ostream& stream);
// The same as the text for services that show Markdown, as far as they take it.
void writeEffectMarkdown(const Effect& effect, std::ostream& stream);
// For a browser: one file without scripts that fetches nothing.
void writeEffectHtml(const Effect& effect, std::ostream& stream);

// What a reader must know of an effect that is partial.
inline constexpr std::string_view kPartialEffect =
    "Not all packages were judged: a run was interrupted. What was not reached by then is not told "
    "here.";

// The path, and whether the run was interrupted; fit for a terminal.
std::string sideText(const EffectSide& side);
// Why a package was not judged, on the side or the sides on which it was not.
std::string causeText(const UnjudgedPackage& package);
// "12 findings in 4 packages".
std::string countsOf(const RuleChange& rule);
// "a.rpm [libx.so.1]", fit for a terminal.
std::string placeText(const RuleChange::Place& place);
// "3 packages compared, 1 not judged; 2 verdicts turn".
std::string summaryOf(const Effect& effect);
// How many findings all of rules have together.
std::size_t findingsOf(const std::vector<RuleChange>& rules);

}  // namespace pkgvet::cli
