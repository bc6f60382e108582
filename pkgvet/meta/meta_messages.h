// The texts of the findings on a package's header.
#pragma once

#include <string_view>

namespace pkgvet {

inline constexpr std::string_view kNotDomainNotation =
    "Package name should follow reverse domain notation (e.g. \"org.example.app\")";
inline constexpr std::string_view kScriptsNotAllowed =
    "[scripts] Script sections are not allowed in RPM";

// Behind "[", a name, one of the infixes and the name again.
inline constexpr std::string_view kProvidesInfix = "] Provides: ";
inline constexpr std::string_view kConflictsInfix = "] Conflicts: ";
inline constexpr std::string_view kObsoletesInfix = "] Obsoletes: ";
inline constexpr std::string_view kMustBeSpecified = " must be specified in RPM";
inline constexpr std::string_view kNotAllowedInRpm = " is not allowed in RPM";

// In front of the vendor and behind it.
inline constexpr std::string_view kVendorIsSet = "[vendor] Vendor is set to ";
inline constexpr std::string_view kVendorNotRecommended = ", this is not recommended";
inline constexpr std::string_view kVendorNotAllowed = ". Setting a vendor in RPM is not allowed";

inline constexpr std::string_view kDependencyUnstable = "] Dependency is unstable or deprecated";
inline constexpr std::string_view kDependencyNotAllowed = "] Dependency is not allowed";

}  // namespace pkgvet
