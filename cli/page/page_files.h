// The parts of the page that are the same for every run: page.html, its styles and its scripts, as
// they stand beside this file. The build puts them into the program.
#pragma once

#include <string_view>

namespace pkgvet::cli {

extern const std::string_view kPageTemplate;  // with "{{name}}" where a run's own parts go
extern const std::string_view kPageStyle;
extern const std::string_view kPageScript;

}  // namespace pkgvet::cli
