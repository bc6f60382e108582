// The texts of the findings on a package's binaries.
#pragma once

#include <string_view>

namespace pkgvet {

// Behind "[" and the path of an executable.
inline constexpr std::string_view kExecutableBadFormat =
    "] Executable has a wrong format or encoding";
inline constexpr std::string_view kExecutableBadLocation = "] Executable is in wrong location";

inline constexpr std::string_view kShouldNotBeNoarch =
    "[arch] RPMs containing arch-specific content should not be noarch";
inline constexpr std::string_view kMainBinaryMustBeExecutable =
    "[binary] Main binary must be an executable";

inline constexpr std::string_view kMainNotLinked =
    "[binary] Binary does not link to __libc_start_main";
inline constexpr std::string_view kMainNotExported =
    "[binary] Binary does not export main() symbol - booster might fail";
inline constexpr std::string_view kMainMustBeExported =
    "[binary] Binary must export main() symbol for booster to work (Q_DECL_EXPORT)";

inline constexpr std::string_view kRpathEmpty = "[rpath] The rpath in binary is empty";
inline constexpr std::string_view kRpathNotAllowed = "[rpath] This rpath in binary is not allowed";
inline constexpr std::string_view kRpathMissing = "[rpath] Rpath is missing where it is mandatory";

// Behind "[" and the name of a library.
inline constexpr std::string_view kLibraryUnstable = "] Library is unstable or deprecated";
inline constexpr std::string_view kLibraryNotAllowed = "] Library is not allowed";

// In front of the name of a requirement.
inline constexpr std::string_view kInvalidRequires = "[libtessaraapp] Invalid Requires: ";
inline constexpr std::string_view kAddRequires =
    "[libtessaraapp] Add Requires: libtessaraapp-launcher to the .spec file";

}  // namespace pkgvet
