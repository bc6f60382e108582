// The parts of the page that are the same for every run: head.html, page.html, its styles and its
// scripts, as they stand beside this file. The build puts them into the program. All pages have the
// head and the styles in common.
#pragma once

#include <string_view>

namespace pkgvet::cli {

// With "{{name}}" where a run's own parts go.
extern const std::string_view kPageHead;
extern const std::string_view kPageTemplate;
extern const std::string_view kPageStyle;
extern const std::string_view kPageScript;

}  // namespace pkgvet::cli
