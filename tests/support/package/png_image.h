// PNG files, by libpng and by hand.
#pragma once

#include <cstdint>
#include <string>

// A whole image of these measures, written by libpng.
std::string pngImage(std::uint32_t width, std::uint32_t height);

// The eight bytes in front of every image.
std::string pngSignature();
// One chunk with its length and checksum.
std::string pngChunk(const std::string& type, const std::string& data);
// The chunk that states the measures, of an image of 8 bits in RGB.
std::string pngHeader(std::uint32_t width, std::uint32_t height);
// A chunk that holds text compressed.
std::string pngText(const std::string& text);
