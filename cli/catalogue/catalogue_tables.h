// The tables of which the catalogue is made, and what they share.
#pragma once

#include "cli/catalogue/catalogue.h"

namespace pkgvet::cli {

constexpr Piece words(std::string_view text) {
    Piece piece(Piece::Kind::Words);
    piece.words = text;
    return piece;
}

inline constexpr Piece kData{Piece::Kind::Detail};
inline constexpr Piece kOpen{"["};

Chapter headerChapter();
Chapter desktopChapter();
Chapter sandboxChapter();
Chapter taskChapter();
Chapter qmlChapter();
Chapter binaryChapter();
Chapter pathChapter();
Chapter fileChapter();

}  // namespace pkgvet::cli
