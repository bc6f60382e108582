// What a rule tree may hold but is unlikely to mean.
#pragma once

#include <string>
#include <vector>

#include "cli/base/fault.h"
#include "pkgvet/rules/profiles.h"

namespace pkgvet::cli {

// Everything in the tree that the configuration file at path leads to which the library takes, but
// not as its writer will have meant it: tiers and parents of unknown names, directories without
// their slash, elements that occur twice, JSON that only a lenient reader takes. As far
// as one of profiles or its parents use the tree, each remark once.
std::vector<Fault> warnAboutRules(const std::string& path, const std::vector<Profiles>& profiles);

}  // namespace pkgvet::cli
