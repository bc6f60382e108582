// One SARIF document.
#pragma once

#include <cstddef>
#include <nlohmann/json_fwd.hpp>
#include <span>

#include "cli/report/formats.h"
#include "cli/report/sarif_parts.h"

namespace pkgvet::cli {

// The document of run that tells of results. It is the one of that number, from 1, of those that
// the run is divided into.
nlohmann::ordered_json sarifDocument(const RunReport& run, std::span<const SarifResult> results,
                                     std::size_t number, const ReportStyle& style);

}  // namespace pkgvet::cli
