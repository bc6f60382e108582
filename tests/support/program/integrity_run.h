// The program's own rules on packages made by hand.
#pragma once

#include <string>
#include <vector>

#include "cli/integrity/header_files.h"
#include "cli/integrity/integrity_findings.h"
#include "cli/integrity/package_header.h"
#include "tests/support/package/crafted_package.h"

// "rule: message" for each.
std::vector<std::string> linesOf(const std::vector<pkgvet::cli::Finding>& findings);

// What a rule on the header says of the package.
using HeaderRule = void (*)(const pkgvet::cli::PackageHeader& header,
                            pkgvet::cli::IntegrityFindings* findings);
std::vector<std::string> linesOf(const CraftedPackage& package, HeaderRule rule);

// What a rule on the files says of them.
using FilesRule = void (*)(const pkgvet::cli::HeaderFiles& list,
                           pkgvet::cli::IntegrityFindings* findings);
std::vector<std::string> linesOf(const pkgvet::cli::HeaderFiles& list, FilesRule rule);

// A file of a header as the rules on files take it; a mode without a type is that of a file.
pkgvet::cli::HeaderFile headerFile(const std::string& path, mode_t mode = 0644);

// A package that is as honest as can be: a program, a directory, a page and a link.
CraftedPackage honestPackage();
