// Counts texts.
#include "cli/base/text_counts.h"

#include <sys/random.h>

#include <charconv>
#include <string>

#include "cli/base/checksum.h"

namespace pkgvet::cli {

namespace {

constexpr int kHexadecimal = 16;
constexpr std::size_t kDigits = 16;  // of a number of 64 bits
constexpr std::size_t kSaltSize = 16;

std::uint64_t numberAt(const std::string& digits, std::size_t offset) {
    std::uint64_t number = 0;
    const char* begin = digits.data() + offset;
    std::from_chars(begin, begin + kDigits, number, kHexadecimal);
    return number;
}

}  // namespace

// Without chance it still counts right.
TextCounts::TextCounts() : salt_(kSaltSize, '\0') {
    static_cast<void>(getrandom(salt_.data(), salt_.size(), 0));
}

std::size_t TextCounts::add(std::string_view text) {
    return ++counts_[digestOf(text)];
}

TextCounts::Digest TextCounts::digestOf(std::string_view text) const {
    Checksum sum;
    sum.add(salt_);
    sum.add(text);
    const std::string digits = sum.finish();
    return {numberAt(digits, 0), numberAt(digits, kDigits)};
}

}  // namespace pkgvet::cli
