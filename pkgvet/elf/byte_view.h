// Checked access to bytes from a stranger.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace pkgvet {

enum class ByteOrder { Little, Big };

// Numbers and texts in bytes that stay the caller's. Offsets may have any value: nothing outside
// the bytes is ever looked at.
class ByteView {
public:
    ByteView(std::string_view bytes, ByteOrder order) : bytes_(bytes), order_(order) {}

    std::uint64_t size() const { return bytes_.size(); }
    // The unsigned number of width bytes, at most 8, at offset; nothing unless all of them are
    // there.
    std::optional<std::uint64_t> number(std::uint64_t offset, unsigned width) const;
    // The text at offset, up to a NUL or the end of the bytes; empty behind the end.
    std::string_view text(std::uint64_t offset) const;

private:
    std::string_view bytes_;
    ByteOrder order_;
};

}  // namespace pkgvet
