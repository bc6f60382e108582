// Gathers where the verdicts of a run come from.
#include "cli/command/provenance.h"

#include <vector>

#include "cli/rules/rule_digest.h"
#include "cli/rules/rule_set.h"
#include "pkgvet/rules/configuration.h"

namespace pkgvet::cli {

namespace {

std::vector<ProfileRules> profileRules(const CheckOptions& options, const std::string& rules) {
    const bool isTold = needsDigests(options);
    std::vector<ProfileRules> profiles;
    for (const Profiles profile : options.judging.profiles) {
        profiles.push_back({Configuration::getProfileName(profile),
                            isTold ? digestOf(loadRuleSet(rules, profile)) : std::string()});
    }
    return profiles;
}

}  // namespace

bool needsDigests(const CheckOptions& options) {
    return hasReportIn(options.report,
                       {Format::Json, Format::Jsonl, Format::Html, Format::InToto}) ||
           !options.input.resume.empty();
}

Provenance provenanceOf(const CheckOptions& options, const std::string& rules,
                        const Keyring& keyring, const Policy::Digests& digests) {
    Provenance provenance;
    provenance.profiles = profileRules(options, rules);
    provenance.validation = validationName(options.judging.validation);
    provenance.integrity = options.integrity.enabled;
    provenance.keyring = digestOf(keyring);
    if (options.policy.failOn) {
        provenance.failOn = severityName(*options.policy.failOn);
    }
    provenance.waivers = digests.waivers;
    provenance.baseline = digests.baseline;
    const Limits& limits = options.judging.limits;
    provenance.limits = {limits.seconds, limits.processorSeconds, limits.unpackedBytes,
                         limits.files,   limits.memory,           limits.report};
    return provenance;
}

}  // namespace pkgvet::cli
