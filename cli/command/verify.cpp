// Judges a package again and compares.
#include "cli/command/verify.h"

#include <iostream>
#include <optional>
#include <utility>

#include "cli/base/date.h"
#include "cli/base/escape.h"
#include "cli/base/exit_status.h"
#include "cli/base/terminal.h"
#include "cli/base/text.h"
#include "cli/command/provenance.h"
#include "cli/command/quiet_run.h"
#include "cli/judge/profile_option.h"
#include "cli/policy/policy.h"
#include "cli/report/tally.h"
#include "cli/statement/stored_record.h"
#include "cli/worker/signal_watch.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kExitStatuses =
    "Exit status: 0 the record holds; 1 it does not; 2 usage error, or a rule tree or sandbox "
    "that\n"
    "cannot be used; 3 it could not be checked.";

std::vector<Option> optionsOf(VerifyOptions* options) {
    CheckOptions& judging = options->judging;
    std::vector<Option> all = {profileOption(
        &judging.judging.profiles, "Profile to judge under [the one that the record names]")};
    for (const std::vector<Option>& some :
         {withoutOptions({"--profile", "--jobs"}, judgingOptions(&judging.judging)),
          integrityOptions(&judging.integrity),
          withoutOptions({"--show-waived", "--write-baseline", "--exit-zero"},
                         policyOptions(&judging.policy))}) {
        all.insert(all.end(), some.begin(), some.end());
    }
    return all;
}

std::string missingIn(const VerifyOptions& options) {
    return options.package.empty() ? "PACKAGE" : "";
}

// Nothing, after a complaint, for what is not a record.
std::optional<Record> recordIn(const std::string& path) {
    std::vector<Fault> faults;
    Record record = readRecord(path, &faults);
    return isSound(faults) ? std::optional(std::move(record)) : std::nullopt;
}

// The profile of the record, where the command line names none.
bool findProfile(const VerifyOptions& options, const Record& record,
                 std::vector<Profiles>* profiles) {
    if (profiles->empty()) {
        *profiles = profilesNamed(profileIn(record));
    }
    if (profiles->size() != 1) {
        complain(printable(options.record) + ": names no profile that there is");
    }
    return profiles->size() == 1;
}

int compare(const VerifyOptions& options, const Record& told, const Record& found) {
    const std::vector<std::string> differences = differencesBetween(told, found);
    std::cout << printable(options.record) << ": ";
    if (differences.empty()) {
        std::cout << "holds: " << found.package << " " << found.result << " under "
                  << profileIn(found) << '\n';
        return kAccepted;
    }
    std::cout << "does not hold: " << joined(differences, "; ") << '\n';
    return kRejected;
}

class Verification {
public:
    Verification(const VerifyOptions& options, Record told)
        : options_(options), told_(std::move(told)), judging_(options.judging) {}

    int run() {
        if (!findProfile(options_, told_, &judging_.judging.profiles)) {
            return kNotJudged;
        }
        judging_.report.format = Format::InToto;
        judging_.judging.jobs = 1;
        const DefaultRules own;
        const std::string rules =
            judging_.judging.rules.empty() ? own.path() : judging_.judging.rules;
        std::vector<Fault> faults;
        const Keyring keyring = keyringOf(judging_.integrity, &faults);
        Policy policy(judging_.policy, localDate(), &faults);
        const bool isTreeUsable = areTreesSound({rules}, judging_.judging.profiles, own);
        return isSound(faults) && isTreeUsable ? judge(rules, keyring, &policy) : kUsageError;
    }

private:
    int judge(const std::string& rules, const Keyring& keyring, Policy* policy) {
        PackageReport package;
        const QuietEnd end =
            judgeQuietly(judging_.judging, beginJudging(judging_, {rules}, keyring),
                         {{options_.package, {}}}, [&package](PackageReport report) {
                             package = std::move(report);
                             return true;
                         });
        if (end.signal != 0) {
            endBySignal(end.signal);
        }
        if (end.status != kAccepted) {
            return end.status;
        }
        if (!package.judged() || package.judgements.empty()) {
            complain(printable(options_.package) +
                     ": could not be judged: " + causeWithLastLine(package));
            return kNotJudged;
        }
        policy->apply(&package);
        const std::optional<Record> found =
            recordOf(package, package.judgements.front(),
                     provenanceOf(judging_, rules, keyring, policy->digests()));
        return found ? compare(options_, told_, *found) : kNotJudged;
    }

    const VerifyOptions& options_;
    Record told_;
    CheckOptions judging_;
};

}  // namespace

CommandRow verifyCommand(VerifyOptions* options) {
    CommandRow row;
    row.name = "verify";
    row.description = "Say whether a record of a verdict holds";
    row.options = optionsOf(options);
    row.operand = {.name = "RECORD PACKAGE",
                   .description = "A record that the format in-toto wrote, and its package",
                   .least = 2,
                   .most = 2,
                   .takesFiles = true,
                   .set = [options](const std::string& path) {
                       (options->record.empty() ? options->record : options->package) = path;
                       return std::string();
                   }};
    row.footer = kExitStatuses;
    row.missing = [options] { return missingIn(*options); };
    return row;
}

int verify(const VerifyOptions& options) {
    std::optional<Record> told = recordIn(options.record);
    if (!told) {
        return kNotJudged;
    }
    return statusAfterOutput(Verification(options, std::move(*told)).run());
}

}  // namespace pkgvet::cli
