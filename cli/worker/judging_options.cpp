// Declares the options on judging.
#include "cli/worker/judging_options.h"

#include "cli/judge/profile_option.h"

namespace pkgvet::cli {

namespace {

constexpr Words<ValidationMode, 3> kValidationModes = {{
    {"auto", ValidationMode::Auto},
    {"on", ValidationMode::On},
    {"off", ValidationMode::Off},
}};

constexpr unsigned kMostJobs = 1024;
constexpr double kLeastTimeout = 0.001;
constexpr double kMostTimeout = 1e6;

Option validationOption(ValidationMode* mode, const std::string& description) {
    return choiceOption("--validation", kValidationModes, mode, description);
}

// Each occurrence adds a profile, so that one worker judges under all of them.
Option addedProfileOption(std::vector<Profiles>* profiles) {
    Option option = profileOption(profiles, "");
    option.mayRepeat = true;
    option.set = [profiles](const std::string& name) {
        const std::vector<Profiles> named = profilesNamed(name);
        profiles->insert(profiles->end(), named.begin(), named.end());
        return named.empty() ? "no profile is named " + name : std::string();
    };
    return option;
}

}  // namespace

std::string_view validationName(ValidationMode mode) {
    return wordOf(kValidationModes, mode);
}

std::vector<Option> judgingOptions(JudgingOptions* options) {
    return {
        fileOption("--rules", &options->rules,
                   "Configuration file of the rule tree [the one that comes with pkgvet]"),
        profilesOption(&options->profiles, "Profile to judge under [regular]"),
        validationOption(&options->validation,
                         "Whether rule violations reject a package; auto asks the platform's "
                         "developer mode [auto]"),
        numberOption({"-j", "--jobs"}, &options->jobs, 1, kMostJobs,
                     "Packages judged at once [the processors]"),
        timeOption("--timeout", &options->timeout, kLeastTimeout, kMostTimeout,
                   "Time that a package may take [120]"),
    };
}

std::vector<Option> workerOptions(WorkerOptions* options) {
    return {
        fileOption("--rules", &options->rules, ""),
        addedProfileOption(&options->profiles),
        validationOption(&options->validation, ""),
    };
}

Operand workerOperand(WorkerOptions* options) {
    Operand operand;
    operand.name = "PATH";
    operand.least = 1;
    operand.most = 1;
    operand.takesFiles = true;
    operand.set = [options](const std::string& path) {
        options->package = path;
        return std::string();
    };
    return operand;
}

}  // namespace pkgvet::cli
