// The texts of the findings on a package's binaries.
#pragma once

#include "pkgvet/report/message.h"

namespace pkgvet {

// On executables; the subject is a path of the package.
inline constexpr Message kExecutableBadFormat = {"[", kSubject,
                                                 "] Executable has a wrong format or encoding"};
inline constexpr Message kExecutableBadLocation = {"[", kSubject,
                                                   "] Executable is in wrong location"};
inline constexpr Message kMainBinaryMustBeExecutable = {
    "[binary] Main binary must be an executable"};

// On the architecture.
inline constexpr Message kShouldNotBeNoarch = {
    "[arch] RPMs containing arch-specific content should not be noarch"};
inline constexpr Message kQmlOnlyShouldBeNoarch = {"[arch] QML-only RPMs should be noarch"};

// On the libraries of the main binary; the subject is a library.
inline constexpr Message kLibraryUnstable = {"[", kSubject, "] Library is unstable or deprecated"};
inline constexpr Message kLibraryNotAllowed = {"[", kSubject, "] Library is not allowed"};

// On the run path of the main binary.
inline constexpr Message kRpathEmpty = {"[rpath] The rpath in binary is empty"};
inline constexpr Message kRpathNotAllowed = {"[rpath] This rpath in binary is not allowed"};
inline constexpr Message kRpathMissing = {"[rpath] Rpath is missing where it is mandatory"};

// On the requirement for the launcher; the subject is a requirement.
inline constexpr Message kInvalidRequires = {"[libtessaraapp] Invalid Requires: ", kSubject};
inline constexpr Message kAddRequires = {
    "[libtessaraapp] Add Requires: libtessaraapp-launcher to the .spec file"};

// On the symbols of the main binary.
inline constexpr Message kMainNotLinked = {"[binary] Binary does not link to __libc_start_main"};
inline constexpr Message kMainNotExported = {
    "[binary] Binary does not export main() symbol - booster might fail"};
inline constexpr Message kMainMustBeExported = {
    "[binary] Binary must export main() symbol for booster to work (Q_DECL_EXPORT)"};

}  // namespace pkgvet
