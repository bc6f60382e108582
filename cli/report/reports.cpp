// Writes the reports of a run.
#include "cli/report/reports.h"

#include <exception>
#include <sstream>

namespace pkgvet::cli {

namespace {

// Whoever reads a file does not see what went to standard error, so a file holds the notices as
// well.
ReportStyle styleOfFiles(ReportStyle style) {
    style.color = false;
    style.notices = true;
    return style;
}

void writeFile(Format format, const RunReport& run, const ReportStyle& style, OutputFile* file) {
    std::ostringstream content;
    writeReport(format, run, style, content);
    file->write(content.str());
    file->commit();
}

}  // namespace

Reports::Reports(Format format, const ReportStyle& style, std::ostream& stream,
                 const std::vector<Output>& files)
    : steps_(stepsOf(format)), style_(style), stream_(stream) {
    for (const Output& output : files) {
        files_.push_back({output.format, OutputFile(output.path)});
    }
}

void Reports::add(const PackageReport& package) {
    if (steps_.add != nullptr) {
        steps_.add(package, style_, stream_);
        stream_.flush();
    }
}

void Reports::finish(const RunReport& run) {
    steps_.finish(run, style_, stream_);
    stream_.flush();
    // All files are tried before the first failure counts: one full disk must not cost the reports
    // on others.
    std::exception_ptr failure;
    for (File& file : files_) {
        try {
            writeFile(file.format, run, styleOfFiles(style_), &file.file);
        } catch (const std::exception&) {
            failure = std::current_exception();
        }
    }
    if (failure) {
        std::rethrow_exception(failure);
    }
}

void writeReport(Format format, const RunReport& run, const ReportStyle& style,
                 std::ostream& stream) {
    const FormatSteps steps = stepsOf(format);
    if (steps.add != nullptr) {
        for (const PackageReport& package : run.packages) {
            steps.add(package, style, stream);
        }
    }
    steps.finish(run, style, stream);
}

}  // namespace pkgvet::cli
