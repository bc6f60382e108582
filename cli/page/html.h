// Text out of packages made safe for HTML.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

namespace pkgvet::cli {

// text as it should be read, in an element or a quoted attribute. What turns the direction of
// writing or cannot be seen is shown as printable() shows it.
std::string htmlText(std::string_view text);

// Prose of the catalogue: what stands between backticks becomes a code element.
std::string htmlProse(std::string_view text);

// json for a script element: nothing in it can end the element or begin a comment. Texts went
// through printable().
std::string scriptJson(const nlohmann::ordered_json& json);

// What a content security policy knows an inline style or script by: "'sha256-...'".
std::string policySource(std::string_view content);

}  // namespace pkgvet::cli
