// Writes the reports of a run.
#include "cli/report/reports.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "cli/base/escape.h"
#include "cli/base/terminal.h"
#include "cli/report/record_files.h"
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
    if (documents.areTooLarge) {
        complain(printable(name) +
                 ": is larger than readers of SARIF take, by what it says of the packages "
                 "themselves; judge fewer packages in one run");
    }
}

// A report that is written whole, as the contents of one file or more. name is told where something
// is left out.
std::vector<std::string> contentsOf(Format format, const RunReport& run, const ReportStyle& style,
                                    std::string_view name) {
    if (format == Format::Sarif) {
        SarifDocuments documents = sarifDocuments(run, style, style.split ? kAllDocuments : 1);
        complainOfLimits(documents, name);
        return std::move(documents.texts);
    }
    std::ostringstream content;
    stepsOf(format).finish(run, style, content);
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

void writePart(const std::string& path, const std::string& content) {
    OutputFile part(path);
    part.write(content);
    part.commit();
}

std::optional<StreamedReport> streamedIn(Format format, const ReportStyle& style) {
    return StreamedReport::canWrite(format)
               ? std::optional<StreamedReport>(std::in_place, format, style)
               : std::nullopt;
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
    : format_(format), style_(style), stream_(stream), streamed_(streamedIn(format, style)) {
    for (const Output& output : files) {
        if (output.format == Format::InToto) {
            makeRecordDirectory(output.path);
            recordDirectories_.push_back(output.path);
        } else {
            files_.push_back(
                {output, OutputFile(output.path), streamedIn(output.format, styleOfFiles(style))});
        }
    }
}

bool Reports::needsPackages() const {
    return !streamed_ || !recordDirectories_.empty() ||
           std::any_of(files_.begin(), files_.end(),
                       [](const File& file) { return !file.streamed; });
}

void Reports::add(const PackageReport& package) {
    if (streamed_) {
        stream_ << streamed_->add(package);
        stream_.flush();
    }
    for (File& file : files_) {
        if (file.streamed && !file.failure) {
            attempt(&file, [&] { file.file.write(file.streamed->add(package)); });
        }
    }
}

void Reports::finish(const RunReport& run) {
    finishStream(run);
    std::exception_ptr failure;
    for (File& file : files_) {
        if (!file.failure) {
            attempt(&file, [&] { finishFile(run, &file); });
        }
        failure = file.failure ? file.failure : failure;
    }
    for (const std::string& directory : recordDirectories_) {
        try {
            writeRecords(run, directory);
        } catch (const std::exception&) {
            failure = std::current_exception();
        }
    }
    if (failure) {
        std::rethrow_exception(failure);
    }
}

// All files are tried before the first failure counts: one full disk must not cost the reports on
// others.
void Reports::attempt(File* file, const std::function<void()>& write) {
    try {
        write();
    } catch (const std::exception&) {
        file->failure = std::current_exception();
    }
}

void Reports::finishFile(const RunReport& run, File* file) {
    if (file->streamed) {
        file->streamed->finish(run, [file](std::string_view piece) { file->file.write(piece); });
        file->file.commit();
        return;
    }
    const Output& output = file->output;
    const std::vector<std::string> contents =
        contentsOf(output.format, run, styleOfFiles(style_), output.path);
    file->file.write(contents.front());
    file->file.commit();
    for (std::size_t i = 1; i < contents.size(); ++i) {
        writePart(pathOfPart(output.path, i + 1), contents[i]);
    }
}

// There is one stream, whatever the limits.
void Reports::finishStream(const RunReport& run) {
    if (streamed_) {
        streamed_->finish(run, [this](std::string_view piece) { stream_ << piece; });
    } else {
        ReportStyle style = style_;
        style.split = false;
        stream_ << contentsOf(format_, run, style, kStandardOutput).front();
    }
    if (format_ == Format::Github && !style_.stepSummary.empty()) {
        addStepSummary(run, style_.stepSummary);
    }
    stream_.flush();
}

void writeReport(Format format, const RunReport& run, const ReportStyle& style,
                 std::ostream& stream) {
    std::optional<StreamedReport> streamed = streamedIn(format, style);
    if (!streamed) {
        stepsOf(format).finish(run, style, stream);
        return;
    }
    for (const PackageReport& package : run.packages) {
        stream << streamed->add(package);
    }
    streamed->finish(run, [&stream](std::string_view piece) { stream << piece; });
}

}  // namespace pkgvet::cli
