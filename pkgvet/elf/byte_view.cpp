// The only place that takes an offset from a file to its bytes.
#include "pkgvet/elf/byte_view.h"

namespace pkgvet {

std::optional<std::uint64_t> ByteView::number(std::uint64_t offset, unsigned width) const {
    if (offset > bytes_.size() || width > bytes_.size() - offset) {
        return std::nullopt;
    }
    const std::string_view digits = bytes_.substr(offset, width);
    std::uint64_t value = 0;
    for (unsigned i = 0; i < width; ++i) {
        const char digit = digits[order_ == ByteOrder::Big ? i : width - 1 - i];
        value = value << 8U | static_cast<unsigned char>(digit);
    }
    return value;
}

std::string_view ByteView::text(std::uint64_t offset) const {
    if (offset >= bytes_.size()) {
        return {};
    }
    const std::string_view rest = bytes_.substr(offset);
    return rest.substr(0, rest.find('\0'));
}

}  // namespace pkgvet
