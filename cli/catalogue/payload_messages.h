// The texts of findings on a payload that was not unpacked.
#pragma once

#include "pkgvet/report/message.h"

namespace pkgvet::cli {

// On what the archive is made of. The detail is the place in it, in bytes from its beginning.
inline constexpr Message kPayloadForeignBytes{
    "Payload holds bytes that belong to no file, from byte ", kDetail, " on"};
inline constexpr Message kPayloadForeignFormat{
    "Payload holds an entry that is not in the format newc, from byte ", kDetail, " on"};
inline constexpr Message kPayloadFieldsInvalid{
    "Payload holds an entry with a number that cannot be read, from byte ", kDetail, " on"};
inline constexpr Message kPayloadPaddingNotEmpty{
    "Payload holds bytes that belong to no file between two entries, from byte ", kDetail, " on"};
inline constexpr Message kPayloadTrailerHasData{
    "Payload holds data of its last entry, which has no file, from byte ", kDetail, " on"};
inline constexpr Message kPayloadGoesOn{"Payload goes on behind its last entry, from byte ",
                                        kDetail, " on"};
inline constexpr Message kPayloadNameSize{
    "Payload holds an entry whose name is empty or longer than 4096 bytes, from byte ", kDetail,
    " on"};

// On the names of entries.
inline constexpr Message kPayloadNameEnd{"[", kSubject, "] Name in the payload holds a NUL byte"};
inline constexpr Message kPayloadNameAbsolute{"[", kSubject, "] Name in the payload is absolute"};
inline constexpr Message kPayloadNameLeadsUp{"[", kSubject,
                                             "] Name in the payload has a component \"..\""};
inline constexpr Message kPayloadNameNotNormal{
    "[", kSubject, "] Name in the payload has an empty component or a component \".\""};
inline constexpr Message kPayloadNameTwice{"[", kSubject, "] Payload holds this name twice"};
inline constexpr Message kPayloadNameIsDirectory{
    "[", kSubject, "] Payload replaces a directory in which it has unpacked"};
inline constexpr Message kPayloadBelowNonDirectory{
    "[", kSubject, "] Payload unpacks below a name that it has not unpacked as a directory"};

// On what entries are.
inline constexpr Message kPayloadSpecialFile{"[", kSubject,
                                             "] Payload holds a device, a fifo or a socket"};
inline constexpr Message kPayloadUnknownType{"[", kSubject,
                                             "] Payload holds an entry of a type that is unknown"};
inline constexpr Message kPayloadDirectoryHasData{"[", kSubject,
                                                  "] Payload holds a directory with data"};
inline constexpr Message kPayloadRootDirectory{
    "[", kSubject, "] Payload changes what the root directory is or who may write to it"};
inline constexpr Message kPayloadLinkTarget{
    "[", kSubject,
    "] Target of the link in the payload is empty, longer than 4096 bytes or holds a NUL byte"};
inline constexpr Message kPayloadHardLink{"[", kSubject,
                                          "] Hard links in the payload contradict each other"};
inline constexpr Message kPayloadSetId{"[", kSubject,
                                       "] Payload sets a set-id bit that the header does not have"};

}  // namespace pkgvet::cli
