// Numbers and texts as bytes, and back.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace pkgvet::cli {

// Puts values one after the other.
class Encoder {
public:
    void number(std::size_t value);  // of 32 bits
    void wideNumber(std::uint64_t value);
    void flag(bool value);
    void text(std::string_view value);

    std::string take() { return std::move(bytes_); }

private:
    void append(std::uint64_t value, std::size_t size);

    std::string bytes_;
};

// Reads what an Encoder wrote. Once something is amiss it yields nothing but zeros.
class Decoder {
public:
    explicit Decoder(std::string_view bytes) : rest_(bytes) {}

    std::uint32_t number();
    std::uint64_t wideNumber();
    bool flag();
    std::string_view text();

    bool isSound() const { return sound_; }
    bool isAtEnd() const { return rest_.empty(); }
    void fail() { sound_ = false; }

private:
    std::uint64_t value(std::size_t size);
    std::string_view take(std::size_t size);

    std::string_view rest_;
    bool sound_ = true;
};

}  // namespace pkgvet::cli
