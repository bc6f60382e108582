// Writes the reports of a run.
#include "cli/report/reports.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "cli/base/escape.h"
#include "cli/base/terminal.h"
#include "cli/model/summary.h"
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

// What other steps of the job wrote into the file stays.
void addStepSummary(const RunReport& run, const std::string& path) {
    std::ofstream file(path, std::ios::app);
    finishMarkdown(run, {}, file);
    file.flush();
    if (!file) {
        complain("cannot write " + printable(path));
    }
}

void copy(const Spool& document, OutputFile* file) {
    document.read([file](std::string_view piece) { file->write(piece); });
    file->commit();
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
    : format_(format), style_(style), stream_(stream), streamed_(format, style) {
    for (const Output& output : files) {
        if (output.format == Format::InToto) {
            makeRecordDirectory(output.path);
            recordDirectories_.push_back(output.path);
        } else {
            files_.push_back({output, OutputFile(output.path),
                              StreamedReport(output.format, styleOfFiles(style))});
        }
    }
    if (needsKeptPackages()) {
        kept_.emplace();
    }
}

bool Reports::needsKeptPackages() const {
    return StreamedReport::needsKeptPackages(format_) || !recordDirectories_.empty() ||
           std::any_of(files_.begin(), files_.end(), [](const File& file) {
               return StreamedReport::needsKeptPackages(file.output.format);
           });
}

void Reports::add(const PackageReport& package) {
    attempt(&streamFailure_, [&] {
        stream_ << streamed_.add(package);
        stream_.flush();
    });
    for (File& file : files_) {
        attempt(&file.failure, [&] { file.file.write(file.report.add(package)); });
    }
    if (kept_) {
        attempt(&keptFailure_, [&] { kept_->add(package); });
    }
}

void Reports::finish(const RunReport& run) {
    RunReport all = run;
    all.dropped = tallyOf(run);
    all.packages.clear();
    all.kept = kept_ ? &*kept_ : nullptr;
    if (StreamedReport::needsKeptPackages(format_) && !streamFailure_) {
        streamFailure_ = keptFailure_;
    }
    attempt(&streamFailure_, [&] { finishStream(all); });
    finishFiles(all);
}

void Reports::finishFiles(const RunReport& run) {
    std::exception_ptr failure = streamFailure_;
    for (File& file : files_) {
        if (StreamedReport::needsKeptPackages(file.output.format) && !file.failure) {
            file.failure = keptFailure_;
        }
        attempt(&file.failure, [&] { finishFile(run, &file); });
        failure = failure ? failure : file.failure;
    }
    for (const std::string& directory : recordDirectories_) {
        std::exception_ptr ofRecords = keptFailure_;
        attempt(&ofRecords, [&] { writeRecords(run, directory); });
        failure = failure ? failure : ofRecords;
    }
    if (failure) {
        std::rethrow_exception(failure);
    }
}

// All that is to be written is tried before a failure counts: one full disk must not cost the
// reports on others. Nothing more is written behind one.
void Reports::attempt(std::exception_ptr* failure, const std::function<void()>& write) {
    if (*failure) {
        return;
    }
    try {
        write();
    } catch (const std::exception&) {
        *failure = std::current_exception();
    }
}

void Reports::finishFile(const RunReport& run, File* file) {
    if (file->output.format == Format::Sarif) {
        finishSarifFile(run, file);
        return;
    }
    file->report.finish(run, [file](std::string_view piece) { file->file.write(piece); });
    file->file.commit();
}

// Further documents have files of their own.
void Reports::finishSarifFile(const RunReport& run, File* file) const {
    std::size_t number = 0;
    const SarifDocuments documents = writeSarifDocuments(
        run, styleOfFiles(style_), style_.split ? kAllDocuments : 1, [&](const Spool& document) {
            if (++number == 1) {
                copy(document, &file->file);
            } else {
                OutputFile part(pathOfPart(file->output.path, number));
                copy(document, &part);
            }
        });
    complainOfLimits(documents, file->output.path);
}

// There is one stream, whatever the limits.
void Reports::finishStream(const RunReport& run) {
    const auto receive = [this](std::string_view piece) { stream_ << piece; };
    if (format_ == Format::Sarif) {
        complainOfLimits(
            writeSarifDocuments(run, style_, 1,
                                [&receive](const Spool& document) { document.read(receive); }),
            kStandardOutput);
    } else {
        streamed_.finish(run, receive);
    }
    if (format_ == Format::Github && !style_.stepSummary.empty()) {
        addStepSummary(run, style_.stepSummary);
    }
    stream_.flush();
}

void writeReport(Format format, const RunReport& run, const ReportStyle& style,
                 std::ostream& stream) {
    StreamedReport report(format, style);
    for (const PackageReport& package : run.packages) {
        stream << report.add(package);
    }
    report.finish(run, [&stream](std::string_view piece) { stream << piece; });
}

}  // namespace pkgvet::cli
