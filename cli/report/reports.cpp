// Writes the reports of a run.
#include "cli/report/reports.h"

#include <exception>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "cli/base/escape.h"
#include "cli/base/terminal.h"
#include "cli/report/sarif_documents.h"

namespace pkgvet::cli {

namespace {

constexpr std::string_view kStandardOutput = "standard output";

// Whoever reads a file does not see what went to standard error, so a file holds the notices as
// well.
ReportStyle styleOfFiles(ReportStyle style) {
    style.color = false;
    style.columns = 0;
    style.notices = true;
    return style;
}

void complainOfLimits(const SarifDocuments& documents, std::string_view name) {
    if (documents.told < documents.results) {
        complain(printable(name) + ": holds the worst " + std::to_string(documents.told) + " of " +
                 std::to_string(documents.results) +
                 " results, which is what readers of SARIF take; --split writes further files");
    }
}

// The report as the contents of one file or more. name is told where something is left out.
std::vector<std::string> contentsOf(Format format, const RunReport& run, const ReportStyle& style,
                                    std::string_view name) {
    if (format == Format::Sarif) {
        SarifDocuments documents = sarifDocuments(run, style, style.split ? kAllDocuments : 1);
        complainOfLimits(documents, name);
        return std::move(documents.texts);
    }
    std::ostringstream content;
    writeReport(format, run, style, content);
    return {content.str()};
}

// What other steps of the job wrote into the file stays.
void addStepSummary(const RunReport& run, const std::string& path) {
    std::ofstream file(path, std::ios::app);
    finishMarkdown(run, {}, file);
    file.flush();
    if (!file) {
        complain("cannot write " + printable(path));
    }
}

void writeWhole(const std::string& content, OutputFile* file) {
    file->write(content);
    file->commit();
}

void writeFile(const Output& output, const RunReport& run, const ReportStyle& style,
               OutputFile* file) {
    const std::vector<std::string> contents = contentsOf(output.format, run, style, output.path);
    writeWhole(contents.front(), file);
    for (std::size_t i = 1; i < contents.size(); ++i) {
        OutputFile part(pathOfPart(output.path, i + 1));
        writeWhole(contents[i], &part);
    }
}

}  // namespace

std::string pathOfPart(const std::string& path, std::size_t number) {
    std::filesystem::path part(path);
    part.replace_filename(part.stem().string() + "-" + std::to_string(number) +
                          part.extension().string());
    return part;
}

Reports::Reports(Format format, const ReportStyle& style, std::ostream& stream,
                 const std::vector<Output>& files)
    : format_(format), steps_(stepsOf(format)), style_(style), stream_(stream) {
    for (const Output& output : files) {
        files_.push_back({output, OutputFile(output.path)});
    }
}

void Reports::add(const PackageReport& package) {
    if (steps_.add != nullptr) {
        steps_.add(package, style_, stream_);
        stream_.flush();
    }
}

void Reports::finish(const RunReport& run) {
    finishStream(run);
    // All files are tried before the first failure counts: one full disk must not cost the reports
    // on others.
    std::exception_ptr failure;
    for (File& file : files_) {
        try {
            writeFile(file.output, run, styleOfFiles(style_), &file.file);
        } catch (const std::exception&) {
            failure = std::current_exception();
        }
    }
    if (failure) {
        std::rethrow_exception(failure);
    }
}

// There is one stream, whatever the limits.
void Reports::finishStream(const RunReport& run) {
    if (format_ == Format::Sarif) {
        ReportStyle style = style_;
        style.split = false;
        stream_ << contentsOf(format_, run, style, kStandardOutput).front();
    } else {
        steps_.finish(run, style_, stream_);
    }
    if (format_ == Format::Github && !style_.stepSummary.empty()) {
        addStepSummary(run, style_.stepSummary);
    }
    stream_.flush();
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
