// The size of PNG images.
#include "pkgvet/files/png_size.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include "pkgvet/base/regular_file.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/package/png_image.h"

namespace {

bool hasSize(const std::string& bytes, std::uint32_t size) {
    const TemporaryDirectory directory;
    const pkgvet::StreamHandle stream =
        pkgvet::openRegularStream(directory.write("image.png", bytes));
    return pkgvet::pngHasSize(stream.get(), size);
}

// What is behind the header, as far as it takes to get past it.
std::string dataChunk() {
    return pngChunk("IDAT", "\x78\x9C");
}

TEST(PngSize, BothMeasuresHaveToMatch) {
    EXPECT_TRUE(hasSize(pngImage(86, 86), 86));
    EXPECT_FALSE(hasSize(pngImage(86, 86), 108));
    EXPECT_FALSE(hasSize(pngImage(100, 86), 86));
    EXPECT_FALSE(hasSize(pngImage(86, 100), 86));
    EXPECT_TRUE(hasSize(pngImage(1, 1), 1));
    EXPECT_FALSE(hasSize(pngImage(1, 1), 0));
}

TEST(PngSize, DataOfTheImageIsNotLookedAt) {
    const std::string image = pngSignature() + pngHeader(86, 86) + dataChunk();
    EXPECT_TRUE(hasSize(image, 86));
    EXPECT_TRUE(hasSize(image.substr(0, image.size() - 6), 86));
    EXPECT_TRUE(hasSize(image + "anything", 86));
}

TEST(PngSize, WhatIsNotAPngHasNoSize) {
    const CapturedDescriptor descriptor;
    struct Case {
        const char* name;
        std::string bytes;
    };
    const std::string image = pngImage(86, 86);
    std::string damaged = image;
    damaged[17] = '\x01';
    for (const Case& test : {
             Case{"an empty file", ""},
             Case{"a JPEG file", "\xFF\xD8\xFF\xE0\x00\x10JFIF\x00 and so on"},
             Case{"a single byte", "\x89"},
             Case{"seven bytes of the signature", pngSignature().substr(0, 7)},
             Case{"the signature alone", pngSignature()},
             Case{"a signature with a wrong end", "\x89PNG\r\n\x1A\r" + image.substr(8)},
             Case{"a header without data behind it", pngSignature() + pngHeader(86, 86)},
             Case{"half a header", image.substr(0, 20)},
             Case{"a header whose checksum is wrong", damaged},
             Case{"data without a header", pngSignature() + dataChunk()},
             Case{"another chunk first",
                  pngSignature() + pngChunk("tEXt", "a") + pngHeader(86, 86) + dataChunk()},
             Case{"an unknown chunk that is critical",
                  pngSignature() + pngHeader(86, 86) + pngChunk("XXXX", "") + dataChunk()},
             Case{"no width", pngSignature() + pngHeader(0, 86) + dataChunk()},
         }) {
        SCOPED_TRACE(test.name);
        EXPECT_FALSE(hasSize(test.bytes, 86));
    }
}

TEST(PngSize, LibraryComplainsOnStandardError) {
    const CapturedDescriptor descriptor;
    EXPECT_FALSE(hasSize(pngSignature() + pngHeader(0, 86) + dataChunk(), 86));
    EXPECT_TRUE(
        hasSize(pngSignature() + pngHeader(86, 86) + pngChunk("gAMA", "short") + dataChunk(), 86));
    EXPECT_THAT(descriptor.text(), testing::HasSubstr("libpng error: Invalid IHDR data\n"));
    EXPECT_THAT(descriptor.text(), testing::HasSubstr("libpng warning: gAMA: invalid\n"));
}

// The stream has to be at the end of the signature when libpng gets it, wherever it began.
TEST(PngSize, ReadsFromWhereTheStreamStands) {
    const TemporaryDirectory directory;
    const pkgvet::StreamHandle stream =
        pkgvet::openRegularStream(directory.write("image.png", "xyz" + pngImage(86, 86)));
    ASSERT_EQ(std::fseek(stream.get(), 3, SEEK_SET), 0);
    EXPECT_TRUE(pkgvet::pngHasSize(stream.get(), 86));
    EXPECT_NE(std::ftell(stream.get()), -1);
}

long peakMemory() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

TEST(PngSize, LargeMeasuresCostNoMemory) {
    const CapturedDescriptor descriptor;
    const std::string image = pngSignature() + pngHeader(1000000, 1000000) + dataChunk();
    const long before = peakMemory();
    EXPECT_TRUE(hasSize(image, 1000000));
    EXPECT_FALSE(
        hasSize(pngSignature() + pngHeader(0x7FFFFFFF, 0x7FFFFFFF) + dataChunk(), 0x7FFFFFFF));
    EXPECT_LT(peakMemory() - before, 20 * 1024);
}

// Seven megabytes of text, a hundred times over.
TEST(PngSize, CompressedTextsCostNoMemory) {
    const CapturedDescriptor descriptor;
    const std::string text = pngText(std::string(7000000, 'x'));
    std::string image = pngSignature() + pngHeader(86, 86);
    for (int i = 0; i < 100; ++i) {
        image += text;
    }
    const long before = peakMemory();
    EXPECT_TRUE(hasSize(image + dataChunk(), 86));
    EXPECT_LT(peakMemory() - before, 100 * 1024);
}

TEST(PngSize, AChunkThatClaimsGigabytesCostsNoMemory) {
    const CapturedDescriptor descriptor;
    const long before = peakMemory();
    for (const char* type : {"tEXt", "zTXt", "iTXt", "iCCP", "sPLT", "eXIf", "abCd"}) {
        const std::string claim = std::string("\x7F\xFF\xFF\xFF", 4) + type + "Title";
        EXPECT_FALSE(hasSize(pngSignature() + pngHeader(86, 86) + claim, 86)) << type;
    }
    EXPECT_LT(peakMemory() - before, 20 * 1024);
}

}  // namespace
