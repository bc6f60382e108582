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

// The text of json inside a document: every line but the first is indented by margin spaces.
std::string jsonTextWithin(const nlohmann::ordered_json& json, std::size_t margin);

// Writes a list element by element. margin is the indent of the line that the list begins in.
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
