// Findings as the library writes them, taken back from its lines.
#pragma once

#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

namespace pkgvet::cli {

enum class Severity { Info, Warning, Error, Critical };

struct Finding {
    Severity severity;
    std::string message;  // the library's line without its label; may hold line feeds
};

// The finding that one line of the library tells. A line without a label is a remark.
Finding parseFinding(std::string_view line);

std::string_view severityName(Severity severity);

// While it lives, what goes to a stream is gathered as findings and not shown. The library flushes
// once at the end of each line and not in between, so that a name with a line feed in it, chosen by
// the package, cannot pass for two findings.
class FindingCapture {
public:
    explicit FindingCapture(std::ostream& stream);
    FindingCapture(const FindingCapture&) = delete;
    FindingCapture(FindingCapture&&) = delete;
    FindingCapture& operator=(const FindingCapture&) = delete;
    FindingCapture& operator=(FindingCapture&&) = delete;
    ~FindingCapture();

    // The findings so far, which are handed over.
    std::vector<Finding> take();

private:
    class Buffer : public std::streambuf {
    public:
        std::vector<Finding> findings;

    protected:
        int_type overflow(int_type character) override;
        std::streamsize xsputn(const char* text, std::streamsize size) override;
        int sync() override;

    private:
        std::string line_;
    };

    std::ostream& stream_;
    Buffer buffer_;
    std::streambuf* formerBuffer_;
    std::ios_base::fmtflags formerFlags_;
};

}  // namespace pkgvet::cli
