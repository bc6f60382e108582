// A SARIF report in documents that its readers take.
#pragma once

#include <cstddef>
#include <functional>
#include <limits>

#include "cli/base/spool.h"
#include "cli/report/formats.h"

namespace pkgvet::cli {

// What the best-known reader takes of one document. It measures the document packed by gzip.
struct SarifLimits {
    std::size_t results = 25'000;
    std::size_t packedBytes = 10'000'000;
};

struct SarifDocuments {
    std::size_t documents = 0;
    std::size_t told = 0;     // how many results stand in documents
    std::size_t results = 0;  // how many there are
    // Whether what is said beside results, or a single result, is more than a document takes.
    bool areTooLarge = false;
};

using DocumentReceiver = std::function<void(const Spool& document)>;

inline constexpr std::size_t kAllDocuments = std::numeric_limits<std::size_t>::max();

// Hands on the report in most documents at the most, and one at least. As long as one document
// keeps to limits, it is the only one and in the order of the packages; otherwise the worst results
// come first. A single result is told whatever its size.
SarifDocuments writeSarifDocuments(const RunReport& run, const ReportStyle& style, std::size_t most,
                                   const DocumentReceiver& receive, const SarifLimits& limits = {});

}  // namespace pkgvet::cli
