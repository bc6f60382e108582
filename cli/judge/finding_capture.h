// The library's lines, caught piece by piece.
#pragma once

#include <ostream>
#include <streambuf>
#include <string>
#include <vector>

#include "cli/model/model.h"

namespace pkgvet::cli {

// While it lives, what goes to a stream is gathered as lines and not shown. The library writes each
// piece in one go and flushes once, at the end of a line, so that a line feed in a name makes no
// second line. A line without a label is a remark of one or more pieces.
class FindingCapture {
public:
    explicit FindingCapture(std::ostream& stream);
    FindingCapture(const FindingCapture&) = delete;
    FindingCapture(FindingCapture&&) = delete;
    FindingCapture& operator=(const FindingCapture&) = delete;
    FindingCapture& operator=(FindingCapture&&) = delete;
    ~FindingCapture();

    // The lines since the last call, which are handed over.
    std::vector<LogLine> take();

private:
    class Buffer : public std::streambuf {
    public:
        std::vector<LogLine> lines;

    protected:
        int_type overflow(int_type character) override;
        std::streamsize xsputn(const char* text, std::streamsize size) override;
        int sync() override;

    private:
        std::vector<std::string> pieces_;
    };

    std::ostream& stream_;
    Buffer buffer_;
    std::streambuf* formerBuffer_;
    std::ios_base::fmtflags formerFlags_;
};

}  // namespace pkgvet::cli
