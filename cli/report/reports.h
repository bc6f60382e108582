// The reports of a run.
#pragma once

#include <exception>
#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "cli/base/output_file.h"
#include "cli/model/kept_packages.h"
#include "cli/model/model.h"
#include "cli/report/formats.h"
#include "cli/report/streamed_report.h"

namespace pkgvet::cli {

// One report on a stream and one in each output file, each written as packages come as far as its
// format allows, and otherwise at the end.
class Reports {
public:
    // Opens the files; std::runtime_error names one that cannot be written. style is that of the
    // stream: files are never coloured, and hold the notices.
    Reports(Format format, const ReportStyle& style, std::ostream& stream,
            const std::vector<Output>& files);

    // Packages come in input order, after the policy has been applied to them.
    void add(const PackageReport& package);
    // run is that of the packages that were added, be they among its packages or counted as
    // dropped. std::runtime_error says what could not be written; all else is. What the limits of a
    // format leave out is told on standard error.
    void finish(const RunReport& run);

private:
    struct File {
        Output output;
        OutputFile file;
        StreamedReport report;
        std::exception_ptr failure = nullptr;  // of an attempt to write it
    };

    static void attempt(std::exception_ptr* failure, const std::function<void()>& write);
    bool needsKeptPackages() const;
    void finishStream(const RunReport& run);
    void finishFile(const RunReport& run, File* file);
    void finishSarifFile(const RunReport& run, File* file) const;
    void finishFiles(const RunReport& run);

    Format format_;
    ReportStyle style_;
    std::ostream& stream_;
    StreamedReport streamed_;
    std::vector<File> files_;
    std::vector<std::string> recordDirectories_;
    std::optional<KeptPackages> kept_;  // where a format needs them
    std::exception_ptr keptFailure_ = nullptr;
    std::exception_ptr streamFailure_ = nullptr;
};

// Where a further file of the report at path goes: "report-2.sarif" beside "report.sarif".
std::string pathOfPart(const std::string& path, std::size_t number);

// The whole report at once.
void writeReport(Format format, const RunReport& run, const ReportStyle& style,
                 std::ostream& stream);

}  // namespace pkgvet::cli
