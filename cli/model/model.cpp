// What follows from the data of a run.
#include "cli/model/model.h"

#include <algorithm>
#include <array>

namespace pkgvet::cli {

namespace {

// Indexed by Severity.
constexpr std::array<std::string_view, 4> kSeverityNames = {"info", "warning", "error", "critical"};

}  // namespace

bool PackageReport::passes() const {
    return judged() && std::all_of(judgements.begin(), judgements.end(),
                                   [](const Judgement& judgement) { return judgement.passes; });
}

std::string_view severityName(Severity severity) {
    return kSeverityNames[static_cast<std::size_t>(severity)];
}

}  // namespace pkgvet::cli
