// Packages judged for a command that makes something of its own of their reports.
#pragma once

#include <string>
#include <vector>

#include "cli/base/exit_status.h"
#include "cli/base/fault.h"
#include "cli/command/check.h"
#include "cli/command/pool_options.h"
#include "cli/integrity/keyring.h"
#include "cli/rules/default_rules.h"
#include "cli/worker/judge_pool.h"

namespace pkgvet::cli {

// Says on standard error what is missing of the sandbox, if something is. False when that is not to
// be put up with.
bool isSandboxGoodEnough(const Sandbox& sandbox, const JudgingOptions& options);

// The options of a floor but for those of these long names, for a command to which they mean
// nothing.
std::vector<Option> withoutOptions(const std::vector<std::string>& names,
                                   std::vector<Option> options);

// The packages that the options lead to. Says what leads to none, and throws std::runtime_error
// when nothing leads to any.
std::vector<Input> packagesOf(const InputOptions& options);

// Whether there is nothing to complain of, which it does on standard error.
bool isSound(const std::vector<Fault>& faults);

// Whether packages can be judged under each of the trees whose configuration files are at paths.
// Complains of what is wrong with them and warns of what is dropped.
bool areTreesSound(const std::vector<std::string>& paths, const std::vector<Profiles>& profiles,
                   const DefaultRules& own);

// The keys that the options name, if they name any.
Keyring keyringOf(const IntegrityOptions& options, std::vector<Fault>* faults);

struct QuietEnd {
    int status = kUsageError;  // kAccepted when the run began
    int signal = 0;            // that ended it, or 0
    bool isPartial = false;
};

// Judges inputs and hands the reports on in input order. The trees have been found sound. Says on
// standard error what sandbox is missing.
QuietEnd judgeQuietly(const JudgingOptions& options, Judging judging, std::vector<Input> inputs,
                      const JudgePool::Receiver& receive);

}  // namespace pkgvet::cli
