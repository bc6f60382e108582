// The texts of the findings on a package's header.
#pragma once

#include "pkgvet/report/message.h"

namespace pkgvet {

inline constexpr Message kNotDomainNotation = {
    "Package name should follow reverse domain notation (e.g. \"org.example.app\")"};
inline constexpr Message kScriptsNotAllowed = {"[scripts] Script sections are not allowed in RPM"};

// On the vendor, which is the subject.
inline constexpr Message kVendorNotRecommended = {"[vendor] Vendor is set to ", kSubject,
                                                  ", this is not recommended"};
inline constexpr Message kVendorNotAllowed = {"[vendor] Vendor is set to ", kSubject,
                                              ". Setting a vendor in RPM is not allowed"};

// On dependencies. The subject is the name of one; where the line tells it once more, that is the
// detail.
inline constexpr Message kMandatoryProvideMissing = {"[", kSubject, "] Provides: ", kDetail,
                                                     " must be specified in RPM"};
inline constexpr Message kMandatoryConflictMissing = {"[", kSubject, "] Conflicts: ", kDetail,
                                                      " must be specified in RPM"};
inline constexpr Message kProvideNotAllowed = {"[", kSubject, "] Provides: ", kDetail,
                                               " is not allowed in RPM"};
inline constexpr Message kConflictNotAllowed = {"[", kSubject, "] Conflicts: ", kDetail,
                                                " is not allowed in RPM"};
inline constexpr Message kObsoleteNotAllowed = {"[", kSubject, "] Obsoletes: ", kDetail,
                                                " is not allowed in RPM"};
inline constexpr Message kDependencyUnstable = {"[", kSubject,
                                                "] Dependency is unstable or deprecated"};
inline constexpr Message kDependencyNotAllowed = {"[", kSubject, "] Dependency is not allowed"};

}  // namespace pkgvet
