// Holds the provenance of two runs against one another.
#include "cli/records/run_difference.h"

#include <algorithm>
#include <tuple>

#include "cli/base/escape.h"

namespace pkgvet::cli {

namespace {

bool hasSameRules(const Provenance& one, const Provenance& other) {
    const auto isEqual = [](const ProfileRules& a, const ProfileRules& b) {
        return a.name == b.name && a.digest == b.digest;
    };
    return std::equal(one.profiles.begin(), one.profiles.end(), other.profiles.begin(),
                      other.profiles.end(), isEqual);
}

bool hasSamePolicy(const Provenance& one, const Provenance& other) {
    return one.failOn == other.failOn && one.waivers == other.waivers &&
           one.baseline == other.baseline;
}

auto asTuple(const AllowedMost& limits) {
    return std::tie(limits.seconds, limits.processorSeconds, limits.unpackedBytes, limits.files,
                    limits.memory, limits.report);
}

bool hasSameOptions(const Provenance& one, const Provenance& other) {
    return one.validation == other.validation && one.integrity == other.integrity &&
           one.keyring == other.keyring && asTuple(one.limits) == asTuple(other.limits);
}

}  // namespace

std::string differenceOf(const RunReport& run, const RunReport& other) {
    const Provenance& one = run.provenance;
    const Provenance& two = other.provenance;
    if (one.version != two.version) {
        return "by version " + printable(two.version) + " and not " + printable(one.version);
    }
    if (!hasSameRules(one, two)) {
        return "under other rules or profiles";
    }
    if (!hasSamePolicy(one, two)) {
        return "under other waivers, another baseline or --fail-on";
    }
    if (!hasSameOptions(one, two)) {
        return "with other options";
    }
    if (run.sandbox != other.sandbox) {
        return "in the sandbox " + printable(other.sandbox) + " and not " + printable(run.sandbox);
    }
    return std::string();
}

}  // namespace pkgvet::cli
