// Writes bytes as "%NN".
#include "cli/base/percent.h"

namespace pkgvet::cli {

std::string percentEncoded(std::string_view text, bool (*keeps)(char byte)) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string result;
    for (const char c : text) {
        if (keeps(c)) {
            result += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        result += {'%', kDigits[byte >> 4U], kDigits[byte & 0xfU]};
    }
    return result;
}

}  // namespace pkgvet::cli
