// What a rule tree may hold but is unlikely to mean.
#pragma once

#include <string>
#include <vector>

#include "cli/base/fault.h"
#include "pkgvet/rules/profiles.h"

namespace pkgvet::cli {

// Everything in the tree that the configuration file at path leads to which the library takes, but
// not as its writer will have meant it: directories without their slash, elements that occur twice,
// that are empty or begin or end with a blank, dots in the names of libraries that stand for any
// character, JSON that only a lenient reader takes. As far as one of profiles or its parents use
// the tree, each remark once, with its place in its file.
std::vector<Fault> warnAboutRules(const std::string& path, const std::vector<Profiles>& profiles);

}  // namespace pkgvet::cli
