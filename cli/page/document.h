// What all pages share.
#pragma once

#include <functional>
#include <ostream>
#include <string_view>

namespace pkgvet::cli {

// Writes text, and in the place of each "{{name}}" what writePart writes for that name.
void fillTemplate(std::string_view text,
                  const std::function<void(std::string_view name)>& writePart,
                  std::ostream& stream);

// The beginning of a page, up to its body, with the styles that pages have in common. The content
// security policy lets nothing run but script, which is empty where there is none, and nothing be
// fetched.
void writePageHead(std::string_view headline, std::string_view script, std::ostream& stream);

}  // namespace pkgvet::cli
