// A report that takes packages one by one.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "cli/base/spool.h"
#include "cli/report/format_junit.h"
#include "cli/report/formats.h"

namespace pkgvet::cli {

// One report in any format; of SARIF one document. No package stays in memory: what has to wait for
// the head of the report waits on disk.
class StreamedReport {
public:
    // Takes a piece of the report.
    using Receiver = std::function<void(std::string_view piece)>;

    StreamedReport(Format format, const ReportStyle& style);

    // Whether the format is written in the end, out of packages that somebody kept.
    static bool needsKeptPackages(Format format);

    // What the package adds, as far as it can be written already.
    std::string add(const PackageReport& package);
    // Hands the rest on, piece by piece. run has the packages once more where they are needed.
    void finish(const RunReport& run, const Receiver& receive);

private:
    FormatSteps steps_;
    ReportStyle style_;
    std::optional<Spool> spool_;
    std::optional<JunitReport> junit_;
    bool isFirst_ = true;
};

}  // namespace pkgvet::cli
