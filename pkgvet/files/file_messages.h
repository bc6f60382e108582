// The texts of the findings on a package's files as such.
#pragma once

#include <string_view>

namespace pkgvet {

inline constexpr std::string_view kQmlOnlyShouldBeNoarch = "[arch] QML-only RPMs should be noarch";

inline constexpr std::string_view kMainBinaryMustNotExist =
    "[binary] Main binary must not exist. Desktop file uses lumbra-qml";
inline constexpr std::string_view kMainBinaryMustExist =
    "[binary] Main binary must exist, but it is not found";
inline constexpr std::string_view kBinDirectoryOwned =
    "[/usr/bin] Direct package ownership of /usr/bin is disallowed";
inline constexpr std::string_view kDebugFiles =
    "[debug] Debug symbols or sources must not be included";
inline constexpr std::string_view kSealwatchdInvalidJson =
    "[sealwatchd] sealwatchd configuration file contains invalid JSON";
inline constexpr std::string_view kSealwatchdMismatch =
    "[sealwatchd] sealwatchd configuration file mismatching package content";

// All others stand behind "[" and a path of the package.
inline constexpr std::string_view kLocationNotAllowed =
    "] Installation not allowed in this location";
inline constexpr std::string_view kForbiddenExtension =
    "] Installation not allowed in this location: forbidden file extension";
inline constexpr std::string_view kBadExecutableFormat =
    "] Installation not allowed in this location: bad executable format";

inline constexpr std::string_view kAttributesNotRead = "] Failed to read file attributes";
inline constexpr std::string_view kSpecialBitSet = "] Found setuid, setgid or sticky bit set";
inline constexpr std::string_view kMustNotBeExecutable = "] File must not be executable";
inline constexpr std::string_view kUserShouldBeRoot = "] User owner should be root";
inline constexpr std::string_view kGroupShouldBeRoot = "] Group owner should be root";
// In front of the kind of file, one of the two below.
inline constexpr std::string_view kWritable = "] Group or World writable ";
inline constexpr std::string_view kKindDirectory = "directory";
inline constexpr std::string_view kKindFile = "file";
inline constexpr std::string_view kBewareOfLinks =
    "] Bevare that symbolic links are only allowed for exclusive paths";
// In front of the target.
inline constexpr std::string_view kLinkTargetNotAllowed =
    "] Symbolic link is targeting to not allowed path for it: ";

inline constexpr std::string_view kHardcodedPath = "] Hardcoded path found";
inline constexpr std::string_view kEmptyDirectory =
    "] Empty directory (can be omitted during package installation)";
inline constexpr std::string_view kParameterFileInvalid =
    "] Configuration parameter file for managed configuration is invalid";

inline constexpr std::string_view kIconNotFound =
    "] Icon not found or file resolution is incorrect";

}  // namespace pkgvet
