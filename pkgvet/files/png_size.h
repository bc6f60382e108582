// The size of PNG images.
#pragma once

#include <cstdint>
#include <cstdio>

namespace pkgvet {

// Whether stream, from where it stands, holds a PNG image whose width and height both equal size.
// Only what stands in front of the image data is read, so that an image which breaks off behind
// that passes. The stream stays open and is the caller's to close.
bool pngHasSize(std::FILE* stream, std::uint32_t size);

}  // namespace pkgvet
