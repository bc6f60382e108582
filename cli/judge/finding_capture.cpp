// Catches what the library writes.
#include "cli/judge/finding_capture.h"

#include <algorithm>
#include <array>
#include <utility>

#include "pkgvet/report/log_line.h"

namespace pkgvet::cli {

namespace {

// Indexed by the numeric LogLevel, as the labels are.
constexpr std::array<Severity, kLogLabels.size()> kSeverities = {
    Severity::Warning, Severity::Error, Severity::Critical, Severity::Info};

// The label is the first piece of a line, and the line feed its last.
LogLine lineOf(std::vector<std::string> pieces) {
    if (!pieces.empty() && pieces.back() == "\n") {
        pieces.pop_back();
    }
    const auto label = pieces.empty() ? kLogLabels.end()
                                      : std::find(kLogLabels.begin(), kLogLabels.end(), pieces[0]);
    if (label != kLogLabels.end()) {
        pieces.erase(pieces.begin());
        return {kSeverities[static_cast<std::size_t>(label - kLogLabels.begin())],
                std::move(pieces)};
    }
    return {Severity::Info, std::move(pieces)};
}

}  // namespace

FindingCapture::FindingCapture(std::ostream& stream, Receiver receive)
    : stream_(stream),
      buffer_(std::move(receive)),
      formerBuffer_(stream.rdbuf(&buffer_)),
      formerFlags_(stream.flags()) {
    // With this flag, which standard error has, every piece of a line would be flushed.
    stream_.unsetf(std::ios_base::unitbuf);
}

FindingCapture::~FindingCapture() {
    stream_.flags(formerFlags_);
    stream_.rdbuf(formerBuffer_);
}

FindingCapture::Buffer::int_type FindingCapture::Buffer::overflow(int_type character) {
    if (character != traits_type::eof()) {
        pieces_.emplace_back(1, traits_type::to_char_type(character));
    }
    return traits_type::not_eof(character);
}

std::streamsize FindingCapture::Buffer::xsputn(const char* text, std::streamsize size) {
    pieces_.emplace_back(text, static_cast<std::size_t>(size));
    return size;
}

int FindingCapture::Buffer::sync() {
    if (!pieces_.empty()) {
        receive_(lineOf(std::exchange(pieces_, {})));
    }
    return 0;
}

}  // namespace pkgvet::cli
