// Numbers and texts as bytes.
#include "cli/base/byte_coding.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace pkgvet::cli;

constexpr std::uint64_t kLarge = std::numeric_limits<std::uint64_t>::max() - 1;
const std::string kBytes("\xff\0\n", 3);

std::string sample() {
    Encoder encoder;
    encoder.number(4'000'000'000U);
    encoder.wideNumber(kLarge);
    encoder.flag(true);
    encoder.text(kBytes);
    encoder.text("");
    return encoder.take();
}

TEST(ByteCoding, ValuesComeBackInTheirOrder) {
    const std::string bytes = sample();
    Decoder decoder(bytes);
    EXPECT_EQ(decoder.number(), 4'000'000'000U);
    EXPECT_EQ(decoder.wideNumber(), kLarge);
    EXPECT_TRUE(decoder.flag());
    EXPECT_EQ(decoder.text(), kBytes);
    EXPECT_FALSE(decoder.isAtEnd());
    EXPECT_EQ(decoder.text(), "");
    EXPECT_TRUE(decoder.isAtEnd());
    EXPECT_TRUE(decoder.isSound());
}

TEST(ByteCoding, WhatIsCutShortIsNotSound) {
    const std::string bytes = sample();
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        SCOPED_TRACE(size);
        Decoder decoder(std::string_view(bytes).substr(0, size));
        decoder.number();
        decoder.wideNumber();
        decoder.flag();
        decoder.text();
        decoder.text();
        EXPECT_FALSE(decoder.isSound());
        EXPECT_EQ(decoder.number(), 0U);
    }
}

TEST(ByteCoding, FlagIsOneOfTwoBytes) {
    Decoder decoder("\2");
    decoder.flag();
    EXPECT_FALSE(decoder.isSound());
}

}  // namespace
