// Reads the header of PNG images through libpng.
#include "pkgvet/files/png_size.h"

#include <png.h>

#include <array>
#include <csetjmp>
#include <cstdlib>

namespace pkgvet {

namespace {

constexpr std::size_t kSignatureSize = 8;

// Texts beyond this number are skipped. libpng unpacks and keeps each, up to 8 MB of it, and by
// default a thousand of them. It cannot be told to skip them all and still refuse one in front of
// the header.
constexpr png_uint_32 kMaxTexts = 4;

// A block that is larger is refused, and libpng then skips the chunk that it was for or gives the
// image up. A chunk that claims 2 GiB would get them before its first byte is read.
constexpr png_alloc_size_t kMaxBlock = png_alloc_size_t{8} << 20U;

png_voidp allocate(png_structp /*png*/, png_alloc_size_t size) {
    return size > kMaxBlock ? nullptr : std::malloc(size);
}

void release(png_structp /*png*/, png_voidp block) {
    std::free(block);
}

// The two structures of a reader, released together. libpng's own handlers write its errors and
// warnings to standard error.
class PngReader {
public:
    PngReader()
        : png_(png_create_read_struct_2(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr, nullptr,
                                        allocate, release)),
          info_(png_ != nullptr ? png_create_info_struct(png_) : nullptr) {}
    PngReader(const PngReader&) = delete;
    PngReader(PngReader&&) = delete;
    PngReader& operator=(const PngReader&) = delete;
    PngReader& operator=(PngReader&&) = delete;
    ~PngReader() { png_destroy_read_struct(&png_, &info_, nullptr); }

    bool isReady() const { return info_ != nullptr; }
    png_structp png() const { return png_; }
    png_infop info() const { return info_; }

private:
    png_structp png_;
    png_infop info_;
};

bool hasSignature(std::FILE* stream) {
    std::array<png_byte, kSignatureSize> signature{};
    return std::fread(signature.data(), 1, signature.size(), stream) > 0 &&
           png_sig_cmp(signature.data(), 0, signature.size()) == 0;
}

// libpng leaves by longjmp at an error. Nothing in here has a destructor or changes in between, so
// that this is as good as a return. The caller owns the structures and releases them.
bool readInfo(png_structp png, png_infop info, std::FILE* stream) {
    if (setjmp(*png_set_longjmp_fn(png, longjmp, sizeof(jmp_buf))) != 0) {
        return false;
    }
    png_set_chunk_cache_max(png, kMaxTexts);
    png_init_io(png, stream);
    png_set_sig_bytes(png, kSignatureSize);
    png_read_info(png, info);
    return true;
}

}  // namespace

bool pngHasSize(std::FILE* stream, std::uint32_t size) {
    if (!hasSignature(stream)) {
        return false;
    }
    const PngReader reader;
    if (!reader.isReady() || !readInfo(reader.png(), reader.info(), stream)) {
        return false;
    }
    return png_get_image_width(reader.png(), reader.info()) == size &&
           png_get_image_height(reader.png(), reader.info()) == size;
}

}  // namespace pkgvet
