// Puts the steps of a format together.
#include "cli/report/streamed_report.h"

#include <sstream>

namespace pkgvet::cli {

StreamedReport::StreamedReport(Format format, const ReportStyle& style)
    : steps_(stepsOf(format)), style_(style) {
    if (steps_.head != nullptr) {
        spool_.emplace();
    }
}

bool StreamedReport::canWrite(Format format) {
    return stepsOf(format).add != nullptr;
}

std::string StreamedReport::add(const PackageReport& package) {
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
    std::ostringstream text;
    if (spool_) {
        steps_.head(run, style_, text);
        receive(text.view());
        text.str(std::string());
        spool_->read(receive);
    }
    steps_.finish(run, style_, text);
    receive(text.view());
}

}  // namespace pkgvet::cli
