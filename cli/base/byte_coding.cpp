// Turns numbers and texts into bytes and back.
#include "cli/base/byte_coding.h"

namespace pkgvet::cli {

namespace {

constexpr std::size_t kNumberSize = 4;
constexpr std::size_t kWideNumberSize = 8;
constexpr unsigned kByteBits = 8;

}  // namespace

void Encoder::number(std::size_t value) {
    append(value, kNumberSize);
}

void Encoder::wideNumber(std::uint64_t value) {
    append(value, kWideNumberSize);
}

void Encoder::flag(bool value) {
    bytes_.push_back(value ? 1 : 0);
}

void Encoder::text(std::string_view value) {
    number(value.size());
    bytes_.append(value);
}

void Encoder::append(std::uint64_t value, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) {
        bytes_.push_back(static_cast<char>(value >> (i * kByteBits) & 0xffU));
    }
}

std::uint32_t Decoder::number() {
    return static_cast<std::uint32_t>(value(kNumberSize));
}

std::uint64_t Decoder::wideNumber() {
    return value(kWideNumberSize);
}

bool Decoder::flag() {
    const std::uint64_t flag = value(1);
    sound_ = sound_ && flag <= 1;
    return flag == 1;
}

std::string_view Decoder::text() {
    return take(number());
}

std::uint64_t Decoder::value(std::size_t size) {
    std::uint64_t value = 0;
    const std::string_view bytes = take(size);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        value |= std::uint64_t{static_cast<unsigned char>(bytes[i])} << (i * kByteBits);
    }
    return value;
}

std::string_view Decoder::take(std::size_t size) {
    sound_ = sound_ && size <= rest_.size();
    if (!sound_) {
        return {};
    }
    const std::string_view taken = rest_.substr(0, size);
    rest_.remove_prefix(size);
    return taken;
}

}  // namespace pkgvet::cli
