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

constexpr Words<SandboxMode, 3> kSandboxModes = {{
    {"auto", SandboxMode::Auto},
    {"require", SandboxMode::Require},
    {"off", SandboxMode::Off},
}};

constexpr unsigned kMostJobs = 1024;
constexpr double kLeastTimeout = 0.001;
constexpr double kMostTimeout = 1e6;

constexpr unsigned kMostSeconds = 1'000'000;
constexpr std::uint64_t kLeastBytes = std::uint64_t{1} << 10;
constexpr std::uint64_t kLeastMemory = std::uint64_t{64} << 20;
constexpr unsigned kMostFiles = 1'000'000'000;

Option scratchOption(std::string* directory) {
    Option option =
        fileOption("--scratch", directory, "Directory on disk to unpack in [none: in memory]");
    option.argument = "DIRECTORY";
    return option;
}

// The limits as options. Each names itself in the cause of a package that meets it.
std::vector<Option> limitOptions(JudgingOptions* options) {
    Limits& limits = options->limits;
    Option unpacked =
        sizeOption("--max-unpacked", &limits.unpackedBytes, kLeastBytes,
                   "What a package may unpack to [4G, or its share of half the memory]");
    unpacked.set = [set = unpacked.set, options](const std::string& text) {
        options->limitsUnpacked = true;
        return set(text);
    };
    return {
        timeOption("--timeout", &limits.seconds, kLeastTimeout, kMostTimeout,
                   "Time that a package may take [120]"),
        numberOption({"--cpu-time"}, &limits.processorSeconds, 1, kMostSeconds,
                     "Processor time that each process for a package may take [60]"),
        unpacked,
        numberOption({"--max-files"}, &limits.files, 1, kMostFiles,
                     "Files that a package may hold [200000]"),
        sizeOption("--memory", &limits.memory, kLeastMemory,
                   "Memory that each process for a package may take [2G]"),
        sizeOption("--max-report", &limits.report, kLeastBytes,
                   "What there may be to say about a package [64M]"),
    };
}

}  // namespace

std::string_view validationName(ValidationMode mode) {
    return wordOf(kValidationModes, mode);
}

std::vector<Option> judgingOptions(JudgingOptions* options) {
    std::vector<Option> all = {
        fileOption("--rules", &options->rules,
                   "Configuration file of the rule tree [the one that comes with pkgvet]"),
        profilesOption(&options->profiles, "Profile to judge under; may be repeated [regular]"),
        choiceOption("--validation", kValidationModes, &options->validation,
                     "Whether rule violations reject a package; auto asks the platform's "
                     "developer mode [auto]"),
        numberOption({"-j", "--jobs"}, &options->jobs, 1, kMostJobs,
                     "Packages judged at once [the processors]"),
        choiceOption("--sandbox", kSandboxModes, &options->sandbox,
                     "How much packages are shut off from the machine [auto]"),
        scratchOption(&options->scratch),
    };
    const std::vector<Option> limits = limitOptions(options);
    all.insert(all.end(), limits.begin(), limits.end());
    return all;
}

}  // namespace pkgvet::cli
