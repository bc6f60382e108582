// Gathers text into pieces.
#include "cli/base/piece_stream.h"

#include <utility>

namespace pkgvet::cli {

namespace {

constexpr std::size_t kPieceSize = std::size_t{1} << 16U;

}  // namespace

// Without exceptions a stream would keep for itself that the disk is full.
PieceStream::PieceStream(Receiver receive) : receive_(std::move(receive)), stream_(this) {
    stream_.exceptions(std::ios::badbit);
}

void PieceStream::finish() {
    receive_(text_);
    text_.clear();
}

PieceStream::int_type PieceStream::overflow(int_type c) {
    if (c != traits_type::eof()) {
        text_ += traits_type::to_char_type(c);
        handOnIfLarge();
    }
    return traits_type::not_eof(c);
}

std::streamsize PieceStream::xsputn(const char* text, std::streamsize size) {
    text_.append(text, static_cast<std::size_t>(size));
    handOnIfLarge();
    return size;
}

void PieceStream::handOnIfLarge() {
    if (text_.size() >= kPieceSize) {
        finish();
    }
}

}  // namespace pkgvet::cli
