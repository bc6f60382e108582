#include "tests/support/package/png_image.h"

#include <png.h>
#include <zlib.h>

#include <stdexcept>
#include <vector>

namespace {

std::string bigEndian(std::uint32_t number) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes += static_cast<char>(number >> shift & 0xFF);
    }
    return bytes;
}

std::string checksum(const std::string& bytes) {
    return bigEndian(static_cast<std::uint32_t>(
        crc32(0, reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uInt>(bytes.size()))));
}

}  // namespace

std::string pngImage(std::uint32_t width, std::uint32_t height) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = width;
    image.height = height;
    image.format = PNG_FORMAT_RGB;
    const std::vector<png_byte> pixels(PNG_IMAGE_SIZE(image));
    std::string bytes(PNG_IMAGE_PNG_SIZE_MAX(image), '\0');
    png_alloc_size_t size = bytes.size();
    if (png_image_write_to_memory(&image, bytes.data(), &size, 0, pixels.data(), 0, nullptr) == 0) {
        throw std::runtime_error(image.message);
    }
    bytes.resize(size);
    return bytes;
}

std::string pngSignature() {
    return "\x89PNG\r\n\x1A\n";
}

std::string pngChunk(const std::string& type, const std::string& data) {
    return bigEndian(static_cast<std::uint32_t>(data.size())) + type + data + checksum(type + data);
}

std::string pngHeader(std::uint32_t width, std::uint32_t height) {
    return pngChunk("IHDR",
                    bigEndian(width) + bigEndian(height) + std::string("\x08\x02\0\0\0", 5));
}

std::string pngText(const std::string& text) {
    uLongf size = compressBound(text.size());
    std::string data(size, '\0');
    if (compress(reinterpret_cast<Bytef*>(data.data()), &size,
                 reinterpret_cast<const Bytef*>(text.data()), text.size()) != Z_OK) {
        throw std::runtime_error("cannot compress");
    }
    data.resize(size);
    const std::string keyword("x\0", 2);
    const std::string method("\0", 1);
    return pngChunk("zTXt", keyword + method + data);
}
