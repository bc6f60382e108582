// Gathers where the verdicts of a run come from.
#include "cli/command/provenance.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <vector>

#include "cli/base/checksum.h"
#include "cli/rules/rule_digest.h"
#include "cli/rules/rule_set.h"
#include "pkgvet/rules/configuration.h"

namespace pkgvet::cli {

namespace {

// A pipe was read by whoever needed its content, and cannot be read again.
std::string checksumOf(const std::string& path) {
    if (!std::filesystem::is_regular_file(path)) {
        return std::string();
    }
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    Checksum sum;
    sum.add(content.str());
    return sum.finish();
}

std::vector<ProfileRules> profileRules(const CheckOptions& options, const std::string& rules) {
    // Reading the tree once more takes time that only these formats are worth.
    const bool isTold = hasReportIn(options.report, {Format::Json, Format::Jsonl});
    std::vector<ProfileRules> profiles;
    for (const Profiles profile : options.judging.profiles) {
        profiles.push_back({Configuration::getProfileName(profile),
                            isTold ? digestOf(loadRuleSet(rules, profile)) : std::string()});
    }
    return profiles;
}

}  // namespace

Provenance provenanceOf(const CheckOptions& options, const std::string& rules) {
    Provenance provenance;
    provenance.profiles = profileRules(options, rules);
    provenance.validation = validationName(options.judging.validation);
    provenance.integrity = options.integrity.enabled;
    if (options.policy.failOn) {
        provenance.failOn = severityName(*options.policy.failOn);
    }
    for (const std::string& file : options.policy.waivers) {
        provenance.waivers.push_back(checksumOf(file));
    }
    provenance.baseline = checksumOf(options.policy.baseline);
    const Limits& limits = options.judging.limits;
    provenance.limits = {limits.seconds, limits.processorSeconds, limits.unpackedBytes,
                         limits.files,   limits.memory,           limits.report};
    return provenance;
}

}  // namespace pkgvet::cli
