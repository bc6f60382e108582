// The rules on what rpm would do by the header.
#pragma once

#include <sys/types.h>

#include <vector>

#include "cli/integrity/header_files.h"
#include "cli/integrity/integrity_findings.h"
#include "cli/integrity/package_header.h"

namespace pkgvet::cli {

// Whether rpm would take the package for one of sources.
bool isSourcePackage(const PackageHeader& header);

// A source package, one for another operating system, or one with another payload than an archive.
void checkKind(const PackageHeader& header, IntegrityFindings* findings);

// Tags that make rpm do what no other rule looks at (triggers, verify scripts, relocations), tags
// that are not known to do nothing, and tags that are there twice.
void checkTags(const PackageHeader& header, IntegrityFindings* findings);

// Names whose mere presence makes later versions of rpm create users and groups.
void checkProvides(const PackageHeader& header, IntegrityFindings* findings);

// Lists of another length than that of the file names, and directories that are not in the header.
void checkLists(const PackageHeader& header, IntegrityFindings* findings);

// Paths that are too long, not absolute or not normal, and such as are made up of other parts than
// a directory and a name.
void checkPaths(const HeaderFiles& list, IntegrityFindings* findings);
void checkPathParts(const PackageHeader& header, IntegrityFindings* findings);
// Paths that are listed twice, and such as go through what the header does not make a directory.
void checkPathsAmongThemselves(const HeaderFiles& list, IntegrityFindings* findings);

// Devices, fifos, sockets and other things that are neither file, directory nor link.
void checkKinds(const HeaderFiles& list, IntegrityFindings* findings);
// Special bits, and files that anybody may write to, where the library's rules do not see them:
// these look at what was unpacked. unpackedModes are the modes in the tree, one for each file and 0
// for what is not there.
void checkModes(const HeaderFiles& list, const std::vector<mode_t>& unpackedModes,
                IntegrityFindings* findings);
void checkCapabilities(const PackageHeader& header, const HeaderFiles& list,
                       IntegrityFindings* findings);

// Files without a digest, and weak digests unless a strong one of the whole payload was right.
void checkFileDigests(const HeaderFiles& list, bool isPayloadBound, IntegrityFindings* findings);

}  // namespace pkgvet::cli
