// The texts of findings, with places for what comes out of a package.
#pragma once

#include <algorithm>
#include <array>
#include <initializer_list>
#include <span>
#include <string_view>

namespace pkgvet {

// A part of a message: words of the rule, or a place for a text out of the package.
struct Piece {
    enum class Kind {
        None,     // no piece
        Words,    // this text and no other
        Subject,  // any text, which is what the finding is about
        Detail,   // any other text
    };

    constexpr Piece() = default;
    // Words stand among places in the list of a message, so they convert.
    constexpr Piece(const char* text)  // NOLINT(google-explicit-constructor)
        : kind(Kind::Words), words(text) {}
    constexpr explicit Piece(Kind place) : kind(place) {}

    Kind kind = Kind::None;
    std::string_view words;
};

inline constexpr Piece kSubject{Piece::Kind::Subject};
inline constexpr Piece kDetail{Piece::Kind::Detail};

// The text of a finding, piece by piece, as in {"[", kSubject, "] Library is not allowed"}. Who
// writes a line and who recognises it later use the same message, so that a name out of a package
// never counts as words of a rule. At most one piece is the subject.
class Message {
public:
    static constexpr std::size_t kMostPieces = 7;

    constexpr Message(std::initializer_list<Piece> pieces) : size_(pieces.size()) {
        std::copy(pieces.begin(), pieces.end(), pieces_.begin());
    }

    constexpr std::span<const Piece> pieces() const { return {pieces_.data(), size_}; }

private:
    std::array<Piece, kMostPieces> pieces_;
    std::size_t size_;
};

}  // namespace pkgvet
