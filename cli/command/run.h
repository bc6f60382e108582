// One run of the command that judges packages.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/base/exit_status.h"
#include "cli/base/output_file.h"
#include "cli/base/progress.h"
#include "cli/command/check.h"
#include "cli/command/pool_options.h"
#include "cli/integrity/keyring.h"
#include "cli/model/model.h"
#include "cli/policy/baseline.h"
#include "cli/policy/policy.h"
#include "cli/records/resume_file.h"
#include "cli/report/reports.h"

namespace pkgvet::cli {

// How a run ended.
struct RunEnd {
    int status = kUsageError;
    int signal = 0;  // that ended it, or 0
};

// What a run is to judge.
struct RunInputs {
    std::vector<Input> packages;
    std::optional<Shard> shard;  // of which input they are a part, if they are
};

// One run over all packages. The options, rules and keyring outlive it.
class Run {
public:
    // Opens all files that are to be written; std::runtime_error names one that cannot be. rules is
    // the path of the configuration file.
    Run(const CheckOptions& options, const std::string& rules, RunInputs inputs,
        const Keyring& keyring, Policy policy);

    // Has the packages judged, writes the reports and says on standard error what they do not.
    RunEnd judgeAll(Judging judging);

private:
    void describeRun(const Sandbox& sandbox);
    PoolOptions withResumption(PoolOptions options);
    void tellEnd();
    bool take(PackageReport package);
    void complete(PackageReport* package);
    void addLine(PackageReport package);
    bool isValidationEnabled();
    void writeBaseline();
    int status() const;

    const CheckOptions& options_;
    const std::string& rules_;
    const Keyring& keyring_;
    std::vector<Input> inputs_;  // until they are handed to the judges
    std::size_t size_;           // how many they are
    Policy policy_;
    std::optional<bool> validationEnabled_;
    Progress progress_;
    Reports reports_;
    std::optional<OutputFile> baselineFile_;
    Baseline baseline_;  // of what was found, if it is to be written
    std::optional<ResumeFile> resumeFile_;
    std::string judgedBy_;  // see PackageReport
    RunReport report_;
};

}  // namespace pkgvet::cli
