// From options to what the judges of a run share.
#include "cli/command/pool_options.h"

#include <algorithm>
#include <vector>

#include "cli/base/memory.h"
#include "cli/base/processors.h"
#include "cli/judge/judge.h"
#include "pkgvet/platform/param_file_validator.h"
#include "pkgvet/rules/configuration.h"

namespace pkgvet::cli {

namespace {

using ManagedConfiguration::Validator::ParamFileValidator;

std::vector<Configuration> configurationsOf(const JudgingOptions& options,
                                            const std::vector<std::string>& trees) {
    std::vector<Configuration> configurations;
    for (const std::string& tree : trees) {
        for (const Profiles profile : options.profiles) {
            configurations.emplace_back(tree, profile);
            if (options.validation != ValidationMode::Auto) {
                configurations.back().setValidationEnabled(options.validation ==
                                                           ValidationMode::On);
            }
        }
    }
    return configurations;
}

// What all judges share, made once and in the process that they are copies of. It is never
// destroyed, and neither are they.
JudgeFunction prepareToJudge(const CheckOptions& options, const std::vector<std::string>& trees,
                             const Keyring& keyring) {
    auto* const configurations =
        new std::vector<Configuration>(configurationsOf(options.judging, trees));
    auto* const rpm = new RpmSession(keyring);
    return [configurations, &options, rpm](const Surroundings& surroundings) {
        return judge(surroundings, *configurations, options.integrity, rpm);
    };
}

// What is unpacked lies in memory, of which all jobs together take half at the most.
Limits limitsOf(const JudgingOptions& options, unsigned jobs) {
    Limits limits = options.limits;
    if (!options.limitsUnpacked && options.scratch.empty()) {
        limits.unpackedBytes = std::min(limits.unpackedBytes, availableMemory() / 2 / jobs);
    }
    return limits;
}

PoolOptions poolOptions(const CheckOptions& options, const std::vector<std::string>& trees,
                        const Keyring& keyring) {
    const JudgingOptions& judging = options.judging;
    PoolOptions pool;
    for (std::size_t i = 0; i < trees.size(); ++i) {
        for (const Profiles profile : judging.profiles) {
            pool.profiles.push_back(Configuration::getProfileName(profile));
        }
    }
    pool.jobs = judging.jobs == 0 ? availableProcessors() : judging.jobs;
    pool.scratch = judging.scratch;
    pool.judging.sandbox = judging.sandbox;
    pool.judging.limits = limitsOf(judging, pool.jobs);
    pool.judging.prepare = [&options, trees, &keyring] {
        return prepareToJudge(options, trees, keyring);
    };
    pool.judging.readable = {ParamFileValidator::standardSchemasDirectory()};
    return pool;
}

}  // namespace

bool isValidationEnabled(const JudgingOptions& options, const std::string& rules) {
    if (options.validation == ValidationMode::Auto) {
        return Configuration(rules, options.profiles.front()).validationEnabled();
    }
    return options.validation == ValidationMode::On;
}

Judging beginJudging(const CheckOptions& options, const std::vector<std::string>& trees,
                     const Keyring& keyring) {
    Judging judging{poolOptions(options, trees, keyring), nullptr};
    judging.from = std::make_unique<TemplateProcess>(judging.options.judging);
    return judging;
}

}  // namespace pkgvet::cli
