// The texts of the program's own findings, which are on the integrity of a package.
#pragma once

#include "pkgvet/report/message.h"

namespace pkgvet::cli {

// On what the package is.
inline constexpr Message kSourcePackage{
    "This is a source package; hand in the binary package that is built from it"};
inline constexpr Message kOtherSystem{"Package is for another operating system: ", kSubject};
inline constexpr Message kPayloadFormatUnknown{"Payload is not an archive of cpio: ", kSubject};
inline constexpr Message kRelocatable{"[", kSubject, "] Files can be installed in another place"};

// On what runs at installation.
inline constexpr Message kTrigger{"[", kSubject, "] Triggers are not allowed in RPM"};
inline constexpr Message kFileTrigger{"[", kSubject, "] File triggers are not allowed in RPM"};
inline constexpr Message kTransactionFileTrigger{
    "[", kSubject, "] File triggers of transactions are not allowed in RPM"};
inline constexpr Message kVerifyScript{"[", kSubject, "] Verify scripts are not allowed in RPM"};
inline constexpr Message kTransactionScript{"[", kSubject,
                                            "] Scripts around a removal are not allowed in RPM"};
inline constexpr Message kScriptFlags{"[", kSubject, "] Flags of scripts are not allowed in RPM"};

// On the header as such.
inline constexpr Message kTagUnknown{"[", kSubject, "] Header has a tag that no package needs"};
inline constexpr Message kTagTranslated{"[", kSubject,
                                        "] Header has this tag in several languages"};
inline constexpr Message kAccount{"[", kSubject,
                                  "] Provides that make users or groups are not allowed in RPM"};
inline constexpr Message kTagTwice{"[", kSubject, "] Header has this tag twice"};
inline constexpr Message kListsDisagree{
    "[", kSubject, "] List has ", kDetail, " elements and there are ", kDetail, " files"};
inline constexpr Message kIndexOutOfRange{
    "[", kSubject, "] Directory of this file is not in the header: ", kDetail};

// On the paths of the header.
inline constexpr Message kPathNotNormal{"[", kSubject,
                                        "] Path in the header is not absolute and normal"};
inline constexpr Message kPathSplit{"[", kSubject,
                                    "] Directory and name are not parted at the last slash"};
inline constexpr Message kPathTooLong{"[", kSubject, "] Path in the header is too long"};
inline constexpr Message kPathTwice{"[", kSubject, "] Path is in the header twice"};
inline constexpr Message kPathBelowFile{
    "[", kSubject, "] Path goes through what the header says is ", kDetail, ": ", kDetail};
inline constexpr Message kPlaceInside{
    "[", kSubject, "] Path does not begin with the permitted place that it holds: ", kDetail};

// On what the header makes of a file.
inline constexpr Message kSpecialFile{"[", kSubject, "] Header makes it ", kDetail};
inline constexpr Message kHeaderSpecialBit{"[", kSubject,
                                           "] Header sets special mode bits: ", kDetail};
inline constexpr Message kHeaderWritable{"[", kSubject,
                                         "] Header lets anybody write to it: ", kDetail};
inline constexpr Message kCapabilities{"[", kSubject, "] Header gives it capabilities: ", kDetail};

// On what binds the files to the header.
inline constexpr Message kFileDigestMissing{"[", kSubject, "] Header has no digest of this file"};
inline constexpr Message kFileDigestsWeak{"Files are bound by a digest that is too weak: ",
                                          kSubject};

// On the header against the payload.
inline constexpr Message kFileMissing{"[", kSubject, "] File of the header is not in the payload"};
inline constexpr Message kFileExtra{"[", kSubject, "] File of the payload is not in the header"};
inline constexpr Message kGhostUnpacked{
    "[", kSubject, "] File of the payload is one that the header says is not installed"};
inline constexpr Message kTypeDiffers{
    "[", kSubject, "] Is ", kDetail, " in the header and ", kDetail, " in the payload"};
inline constexpr Message kModeDiffers{
    "[", kSubject, "] Has mode ", kDetail, " in the header and ", kDetail, " in the payload"};
inline constexpr Message kSizeDiffers{
    "[", kSubject, "] Has size ", kDetail, " in the header and ", kDetail, " in the payload"};
inline constexpr Message kTargetDiffers{
    "[", kSubject, "] Leads to ", kDetail, " in the header and to ", kDetail, " in the payload"};
inline constexpr Message kDeviceDiffers{
    "[", kSubject, "] Is device ", kDetail, " in the header and ", kDetail, " in the payload"};
inline constexpr Message kDigestDiffers{
    "[", kSubject, "] Has digest ", kDetail, " in the header and ", kDetail, " in the payload"};
inline constexpr Message kHardLinksDiffer{
    "[", kSubject, "] Is a hard link to other files in the header than in the payload"};
inline constexpr Message kNulByte{"[", kSubject, "] File of text holds a NUL byte"};

// On digests and signatures of the package.
inline constexpr Message kPackageDigestWrong{"[", kSubject, "] Digest is not right: ", kDetail};
inline constexpr Message kPackageDigestMissing{"[", kSubject, "] Digest is missing"};
inline constexpr Message kNotVerified{"Package cannot be verified: ", kDetail};
inline constexpr Message kNotSigned{"Package is not signed"};
inline constexpr Message kSignatureNotGood{"[", kSubject,
                                           "] Signature is not one of the keyring's: ", kDetail};
inline constexpr Message kSignatureRemark{"[", kSubject, "] Signature was not checked: ", kDetail};

// On the findings themselves.
inline constexpr Message kFindingsLeftOut{kDetail, " further findings like this one: ", kSubject};

}  // namespace pkgvet::cli
