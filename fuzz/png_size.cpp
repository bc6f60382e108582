// The measures of a PNG image.
#include "pkgvet/files/png_size.h"

#include "fuzz/fuzz_target.h"
#include "pkgvet/base/regular_file.h"

void pkgvet::fuzz::run(std::string_view input) {
    std::string bytes(input);
    const StreamHandle stream(fmemopen(bytes.data(), bytes.size() + 1, "r"));
    const StreamHandle again(fmemopen(bytes.data(), bytes.size() + 1, "r"));
    expect(!(pngHasSize(stream.get(), 86) && pngHasSize(again.get(), 108)),
           "an image has one size");
}
