// What the formats that are JSON share.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

#include "cli/model/model.h"

namespace pkgvet::cli {

inline constexpr int kJsonIndent = 2;
inline constexpr int kJsonOneLine = -1;

// json as ASCII. Bytes that are not UTF-8, which a package may hold anywhere, become U+FFFD.
std::string jsonText(const nlohmann::ordered_json& json, int indent);

// Puts text under key, null where it is empty. Where it is not UTF-8, key and "_escaped" has the
// exact bytes, as bytesEscaped() writes them.
void putText(const std::string& key, const std::string& text, nlohmann::ordered_json* json);

// "counts", "waived", "known".
std::string_view standingName(Standing standing);

}  // namespace pkgvet::cli
