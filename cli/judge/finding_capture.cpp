// Catches what the library writes.
#include "cli/judge/finding_capture.h"

#include <array>
#include <utility>

namespace pkgvet::cli {

namespace {

struct Label {
    Severity severity;
    std::string_view text;
};

constexpr std::array<Label, 4> kLabels = {{
    {Severity::Info, "(INFO)\t\t"},
    {Severity::Warning, "(WARNING)\t"},
    {Severity::Error, "(ERROR)\t\t"},
    {Severity::Critical, "(CRITICAL)\t"},
}};

// The label is the first piece of a line, and the line feed its last.
LogLine lineOf(std::vector<std::string> pieces) {
    if (!pieces.empty() && pieces.back() == "\n") {
        pieces.pop_back();
    }
    for (const Label& label : kLabels) {
        if (!pieces.empty() && pieces.front() == label.text) {
            pieces.erase(pieces.begin());
            return {label.severity, std::move(pieces)};
        }
    }
    return {Severity::Info, std::move(pieces)};
}

}  // namespace

FindingCapture::FindingCapture(std::ostream& stream)
    : stream_(stream), formerBuffer_(stream.rdbuf(&buffer_)), formerFlags_(stream.flags()) {
    // With this flag, which standard error has, every piece of a line would be flushed.
    stream_.unsetf(std::ios_base::unitbuf);
}

FindingCapture::~FindingCapture() {
    stream_.flags(formerFlags_);
    stream_.rdbuf(formerBuffer_);
}

std::vector<LogLine> FindingCapture::take() {
    return std::exchange(buffer_.lines, {});
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
        lines.push_back(lineOf(std::exchange(pieces_, {})));
    }
    return 0;
}

}  // namespace pkgvet::cli
