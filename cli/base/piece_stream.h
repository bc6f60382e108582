// A stream whose text is handed on.
#pragma once

#include <functional>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

namespace pkgvet::cli {

// Hands on what is written to stream(), in pieces of a size that is worth it. What the receiver
// throws comes out of the writing.
class PieceStream : private std::streambuf {
public:
    using Receiver = std::function<void(std::string_view piece)>;

    explicit PieceStream(Receiver receive);

    std::ostream& stream() { return stream_; }
    // Hands on the rest.
    void finish();

private:
    int_type overflow(int_type c) override;
    std::streamsize xsputn(const char* text, std::streamsize size) override;
    void handOnIfLarge();

    Receiver receive_;
    std::string text_;
    std::ostream stream_;
};

}  // namespace pkgvet::cli
