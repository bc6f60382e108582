// Takes the library's lines apart.
#include "cli/finding.h"

#include <array>
#include <utility>

namespace pkgvet::cli {

namespace {

struct Label {
    Severity severity;
    std::string_view text;
    std::string_view name;
};

// Indexed by Severity.
constexpr std::array<Label, 4> kLabels = {{
    {Severity::Info, "(INFO)\t\t", "info"},
    {Severity::Warning, "(WARNING)\t", "warning"},
    {Severity::Error, "(ERROR)\t\t", "error"},
    {Severity::Critical, "(CRITICAL)\t", "critical"},
}};

}  // namespace

Finding parseFinding(std::string_view line) {
    if (line.ends_with('\n')) {
        line.remove_suffix(1);
    }
    for (const Label& label : kLabels) {
        if (line.starts_with(label.text)) {
            return {label.severity, std::string(line.substr(label.text.size()))};
        }
    }
    return {Severity::Info, std::string(line)};
}

std::string_view severityName(Severity severity) {
    return kLabels[static_cast<std::size_t>(severity)].name;
}

FindingCapture::FindingCapture(std::ostream& stream)
    : stream_(stream), formerBuffer_(stream.rdbuf(&buffer_)), formerFlags_(stream.flags()) {
    // With this flag, which standard error has, every piece of a line would be flushed.
    stream_.unsetf(std::ios_base::unitbuf);
}

FindingCapture::~FindingCapture() {
    stream_.flags(formerFlags_);
    stream_.rdbuf(formerBuffer_);
}

std::vector<Finding> FindingCapture::take() {
    return std::exchange(buffer_.findings, {});
}

FindingCapture::Buffer::int_type FindingCapture::Buffer::overflow(int_type character) {
    if (character != traits_type::eof()) {
        line_ += traits_type::to_char_type(character);
    }
    return traits_type::not_eof(character);
}

std::streamsize FindingCapture::Buffer::xsputn(const char* text, std::streamsize size) {
    line_.append(text, static_cast<std::size_t>(size));
    return size;
}

int FindingCapture::Buffer::sync() {
    if (!line_.empty()) {
        findings.push_back(parseFinding(std::exchange(line_, std::string())));
    }
    return 0;
}

}  // namespace pkgvet::cli
