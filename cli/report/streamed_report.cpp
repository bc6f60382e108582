// Puts the steps of a format together.
#include "cli/report/streamed_report.h"

#include <sstream>

#include "cli/base/piece_stream.h"

namespace pkgvet::cli {

StreamedReport::StreamedReport(Format format, const ReportStyle& style)
    : steps_(stepsOf(format)), style_(style) {
    if (steps_.head != nullptr) {
        spool_.emplace();
    }
    if (format == Format::Junit) {
        junit_.emplace(style_);
    }
}

bool StreamedReport::needsKeptPackages(Format format) {
    return format != Format::Junit && stepsOf(format).add == nullptr;
}

std::string StreamedReport::add(const PackageReport& package) {
    if (junit_) {
        junit_->add(package);
        return std::string();
    }
    if (steps_.add == nullptr) {
        return std::string();
    }
    std::ostringstream text;
    text << (isFirst_ ? std::string_view() : steps_.between);
    isFirst_ = false;
    steps_.add(package, style_, text);
    if (!spool_) {
        return text.str();
    }
    spool_->write(text.view());
    return std::string();
}

void StreamedReport::finish(const RunReport& run, const Receiver& receive) {
    if (junit_) {
        junit_->finish(run, receive);
        return;
    }
    PieceStream pieces(receive);
    if (spool_) {
        steps_.head(run, style_, pieces.stream());
        pieces.finish();
        spool_->read(receive);
    }
    steps_.finish(run, style_, pieces.stream());
    pieces.finish();
}

}  // namespace pkgvet::cli
