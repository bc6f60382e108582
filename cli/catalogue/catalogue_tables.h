// The tables of which the catalogue is made, and what they share.
#pragma once

#include "cli/catalogue/catalogue.h"

namespace pkgvet::cli {

// In front of a name that is the subject of a finding.
inline constexpr std::string_view kOpenBracket = "[";

constexpr Piece words(std::string_view text) {
    return {Piece::Kind::Words, text};
}

inline constexpr Piece kData = {Piece::Kind::Data};
inline constexpr Piece kSubject = {Piece::Kind::Subject};
inline constexpr Piece kOpen = words(kOpenBracket);

Chapter headerChapter();
Chapter desktopChapter();
Chapter sandboxChapter();
Chapter taskChapter();
Chapter qmlChapter();
Chapter binaryChapter();
Chapter pathChapter();
Chapter fileChapter();

}  // namespace pkgvet::cli
