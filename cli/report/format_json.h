// What the formats that are JSON share.
#pragma once

#include <cstddef>
#include <nlohmann/json_fwd.hpp>
#include <ostream>
#include <string>
#include <string_view>

#include "cli/model/model.h"

namespace pkgvet::cli {

inline constexpr int kJsonIndent = 2;
inline constexpr int kJsonOneLine = -1;

// json as ASCII. Bytes that are not UTF-8, which a package may hold anywhere, become U+FFFD.
std::string jsonText(const nlohmann::ordered_json& json, int indent);

// json as jsonText() has it within a document, so many spaces from the margin but for its first
// line.
std::string jsonTextWithin(const nlohmann::ordered_json& json, std::size_t margin);

// Writes a list an element at a time, as jsonText() writes it within a document whose line it
// begins in is so many spaces from the margin.
class JsonList {
public:
    explicit JsonList(std::size_t margin) : margin_(margin) {}

    void add(const nlohmann::ordered_json& element, std::ostream* stream);
    void finish(std::ostream* stream) const;

private:
    std::size_t margin_;
    bool isEmpty_ = true;
};

// Puts text under key, null where it is empty. Where it is not UTF-8, key and "_escaped" has the
// exact bytes, as bytesEscaped() writes them.
void putText(const std::string& key, const std::string& text, nlohmann::ordered_json* json);

// "counts", "waived", "known".
std::string_view standingName(Standing standing);

}  // namespace pkgvet::cli
