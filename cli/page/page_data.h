// The run as data for the scripts of the page.
#pragma once

#include <ostream>

#include "cli/model/model.h"

namespace pkgvet::cli {

// One JSON object, written package by package. What packages share stands behind them:
//   packages: key, path, name, version, release, arch; judgements, one number for each profile (see
//     JudgementBits); findings, a flat list of kind and subject in turns; prints, the beginnings of
//     their fingerprints one after the other; or cause, code, last and incomplete. What is empty is
//     left out.
//   kinds: what findings have in common (see FindingKind); profiles, by name; rules and chapters as
//     the catalogue has them.
void writePageData(const RunReport& run, bool showTimings, std::ostream& stream);

}  // namespace pkgvet::cli
