// The texts of the findings on a package's files as such.
#pragma once

#include <string_view>

#include "pkgvet/report/message.h"

namespace pkgvet {

// Places.
inline constexpr Message kMainBinaryMustNotExist = {
    "[binary] Main binary must not exist. Desktop file uses lumbra-qml"};
inline constexpr Message kMainBinaryMustExist = {
    "[binary] Main binary must exist, but it is not found"};
inline constexpr Message kBinDirectoryOwned = {
    "[/usr/bin] Direct package ownership of /usr/bin is disallowed"};
inline constexpr Message kDebugFiles = {"[debug] Debug symbols or sources must not be included"};
inline constexpr Message kSealwatchdInvalidJson = {
    "[sealwatchd] sealwatchd configuration file contains invalid JSON"};
inline constexpr Message kSealwatchdMismatch = {
    "[sealwatchd] sealwatchd configuration file mismatching package content"};
inline constexpr Message kLocationNotAllowed = {"[", kSubject,
                                                "] Installation not allowed in this location"};
inline constexpr Message kForbiddenExtension = {
    "[", kSubject, "] Installation not allowed in this location: forbidden file extension"};
inline constexpr Message kBadExecutableFormat = {
    "[", kSubject, "] Installation not allowed in this location: bad executable format"};

// Modes, owners and links.
inline constexpr Message kAttributesNotRead = {"[", kSubject, "] Failed to read file attributes"};
inline constexpr Message kSpecialBitSet = {"[", kSubject,
                                           "] Found setuid, setgid or sticky bit set"};
inline constexpr Message kMustNotBeExecutable = {"[", kSubject, "] File must not be executable"};
inline constexpr Message kUserShouldBeRoot = {"[", kSubject, "] User owner should be root"};
inline constexpr Message kGroupShouldBeRoot = {"[", kSubject, "] Group owner should be root"};
// The detail is one of the two kinds below.
inline constexpr Message kWritable = {"[", kSubject, "] Group or World writable ", kDetail};
inline constexpr std::string_view kKindDirectory = "directory";
inline constexpr std::string_view kKindFile = "file";
// The misspelling stays, since other programs know the line by its text.
inline constexpr Message kBewareOfLinks = {
    "[", kSubject, "] Bevare that symbolic links are only allowed for exclusive paths"};
// The detail is the target.
inline constexpr Message kLinkTargetNotAllowed = {
    "[", kSubject, "] Symbolic link is targeting to not allowed path for it: ", kDetail};

// What is in the files.
inline constexpr Message kHardcodedPath = {"[", kSubject, "] Hardcoded path found"};
inline constexpr Message kEmptyDirectory = {
    "[", kSubject, "] Empty directory (can be omitted during package installation)"};
inline constexpr Message kParameterFileInvalid = {
    "[", kSubject, "] Configuration parameter file for managed configuration is invalid"};
inline constexpr Message kIconNotFound = {"[", kSubject,
                                          "] Icon not found or file resolution is incorrect"};

}  // namespace pkgvet
