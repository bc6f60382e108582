// Escapes what HTML would act upon.
#include "cli/page/html.h"

#include <glib.h>

#include <array>
#include <memory>
#include <nlohmann/json.hpp>

#include "cli/base/escape.h"

namespace pkgvet::cli {

namespace {

constexpr int kOneLine = -1;
constexpr std::size_t kSha256Size = 32;

struct Escape {
    char character;
    std::string_view escape;
};

constexpr std::array<Escape, 5> kInHtml = {
    {{'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {'"', "&quot;"}, {'\'', "&#39;"}}};

// Outside the strings of JSON none of these stands.
constexpr std::array<Escape, 3> kInScripts = {
    {{'&', "\\u0026"}, {'<', "\\u003c"}, {'>', "\\u003e"}}};

template <std::size_t size>
std::string escaped(std::string_view text, const std::array<Escape, size>& escapes) {
    std::string result;
    result.reserve(text.size());
    for (const char c : text) {
        std::string_view piece(&c, 1);
        for (const Escape& escape : escapes) {
            piece = escape.character == c ? escape.escape : piece;
        }
        result += piece;
    }
    return result;
}

}  // namespace

std::string htmlText(std::string_view text) {
    return escaped(printable(text), kInHtml);
}

std::string htmlProse(std::string_view text) {
    std::string result;
    bool isCode = false;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find('`', begin), text.size());
        const std::string piece = htmlText(text.substr(begin, end - begin));
        result += isCode ? "<code>" + piece + "</code>" : piece;
        isCode = !isCode;
        begin = end + 1;
    }
    return result;
}

std::string scriptJson(const nlohmann::ordered_json& json) {
    // A line separator, which older scripts take for the end of a line, is shown as text by
    // printable().
    const std::string text =
        json.dump(kOneLine, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
    return escaped(text, kInScripts);
}

std::string policySource(std::string_view content) {
    const std::unique_ptr<GChecksum, decltype(&g_checksum_free)> checksum(
        g_checksum_new(G_CHECKSUM_SHA256), &g_checksum_free);
    g_checksum_update(checksum.get(), reinterpret_cast<const guchar*>(content.data()),
                      static_cast<gssize>(content.size()));
    std::array<guchar, kSha256Size> digest{};
    gsize size = digest.size();
    g_checksum_get_digest(checksum.get(), digest.data(), &size);
    const std::unique_ptr<char, decltype(&g_free)> encoded(g_base64_encode(digest.data(), size),
                                                           &g_free);
    return "'sha256-" + std::string(encoded.get()) + "'";
}

}  // namespace pkgvet::cli
