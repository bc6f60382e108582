// The run as data for the scripts of the page.
#pragma once

#include <ostream>

#include "cli/model/model.h"

namespace pkgvet::cli {

// One JSON object, written package by package. What packages share stands behind them:
//   packages: key, path, name, version, release, arch, and sha256 where it is not the key;
//     judgements, one number for each profile (see JudgementBits), and profiles where they are not
//     the usual ones; findings, a list of kinds and how many there are of each, in turns; prints,
//     the beginnings of their fingerprints one after the other; or cause, code, last, incomplete.
//     What is empty is left out.
//   kinds: what findings have in common (see FindingKind); profiles, by name, of which so many as
//     usual says hold for most packages; rules and chapters as the catalogue has them.
// The subjects of findings stand in what writeWithoutScripts() writes, in the same order.
void writePageData(const RunReport& run, bool showTimings, std::ostream& stream);

}  // namespace pkgvet::cli
