// The words that several rules on the desktop file share, and how a word is looked up.
#pragma once

#include <algorithm>
#include <span>
#include <string_view>

namespace pkgvet {

using Vocabulary = std::span<const std::string_view>;

inline bool contains(Vocabulary words, std::string_view word) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

inline constexpr std::string_view kDesktopEntryGroup = "Desktop Entry";

inline constexpr std::string_view kApplicationSection = "X-Application";
inline constexpr std::string_view kDeprecatedSection = "X-Pinfold";
inline constexpr std::string_view kDisallowedSection = "Pinfold";

inline constexpr std::string_view kExecKey = "Exec";
inline constexpr std::string_view kPermissionsKey = "Permissions";
inline constexpr std::string_view kTypeKey = "Type";

// Fixed, whatever directories the rule set names.
inline constexpr std::string_view kProgramDirectory = "/usr/bin/";
inline constexpr std::string_view kPrivateProgramDirectory = "/usr/libexec/";

// Divides a program from its arguments.
inline constexpr char kBlank = ' ';

}  // namespace pkgvet
