// The library's lines, caught piece by piece.
#pragma once

#include <functional>
#include <ostream>
#include <streambuf>
#include <string>
#include <utility>
#include <vector>

#include "cli/model/model.h"

namespace pkgvet::cli {

// While it lives, what goes to a stream is told as lines and not shown. The library writes each
// piece in one go and flushes once, at the end of a line, so that a line feed in a name makes no
// second line. A line without a label is a remark of one or more pieces.
class FindingCapture {
public:
    using Receiver = std::function<void(const LogLine&)>;

    // receive gets each line at its end.
    FindingCapture(std::ostream& stream, Receiver receive);
    FindingCapture(const FindingCapture&) = delete;
    FindingCapture(FindingCapture&&) = delete;
    FindingCapture& operator=(const FindingCapture&) = delete;
    FindingCapture& operator=(FindingCapture&&) = delete;
    ~FindingCapture();

private:
    class Buffer : public std::streambuf {
    public:
        explicit Buffer(Receiver receive) : receive_(std::move(receive)) {}

    protected:
        int_type overflow(int_type character) override;
        std::streamsize xsputn(const char* text, std::streamsize size) override;
        int sync() override;

    private:
        Receiver receive_;
        std::vector<std::string> pieces_;
    };

    std::ostream& stream_;
    Buffer buffer_;
    std::streambuf* formerBuffer_;
    std::ios_base::fmtflags formerFlags_;
};

}  // namespace pkgvet::cli
