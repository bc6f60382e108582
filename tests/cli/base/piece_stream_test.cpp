// A stream whose text is handed on.
#include "cli/base/piece_stream.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using pkgvet::cli::PieceStream;

TEST(PieceStream, HandsOnWhatIsWritten) {
    std::string text;
    std::size_t largest = 0;
    PieceStream pieces([&](std::string_view piece) {
        text += piece;
        largest = std::max(largest, piece.size());
    });
    std::string expected;
    for (int i = 0; i < 100'000; ++i) {
        pieces.stream() << i << '\n';
        expected += std::to_string(i) + "\n";
    }
    EXPECT_GT(text.size(), expected.size() / 2);
    pieces.finish();
    EXPECT_TRUE(text == expected);
    EXPECT_LT(largest, expected.size() / 4);
}

TEST(PieceStream, FailureOfTheReceiverComesOut) {
    PieceStream pieces([](std::string_view) { throw std::runtime_error("full"); });
    const std::string large(1'000'000, 'a');
    EXPECT_THROW(pieces.stream() << large, std::runtime_error);
}

}  // namespace
