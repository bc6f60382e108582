// Reads the command line.
#include "cli/command/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "cli/base/version.h"
#include "cli/command/exit_status.h"
#include "pkgvet/rules/profile_names.h"

namespace pkgvet::cli {

namespace {

template <typename Value>
using Names = std::vector<std::pair<std::string, Value>>;

Names<Profiles> profileNames() {
    Names<Profiles> names;
    for (std::size_t i = 0; i < kProfileNames.size(); ++i) {
        names.emplace_back(kProfileNames[i], static_cast<Profiles>(i));
    }
    return names;
}

const Names<Profiles> kProfiles = profileNames();
const Names<ValidationMode> kValidationModes = {
    {"auto", ValidationMode::Auto}, {"on", ValidationMode::On}, {"off", ValidationMode::Off}};
const Names<ColorMode> kColorModes = {
    {"auto", ColorMode::Auto}, {"always", ColorMode::Always}, {"never", ColorMode::Never}};
const Names<Format> kFormats = {
    {"text", Format::Text},     {"concise", Format::Concise}, {"json", Format::Json},
    {"jsonl", Format::Jsonl},   {"sarif", Format::Sarif},     {"junit", Format::Junit},
    {"github", Format::Github},
};
const Names<Format> kRulesFormats = {{"text", Format::Text}, {"json", Format::Json}};
const Names<Severity> kFailOn = {{"error", Severity::Error}, {"warning", Severity::Warning}};

constexpr const char* kAll = "all";
constexpr const char* kDefaultProfile = "regular";
constexpr char kFormatEnd = ':';
constexpr const char* kHidden = "";

constexpr const char* kDescription =
    "Decides whether application packages in RPM format may be installed.";
constexpr const char* kExitStatuses =
    "Exit status: 0 every package was accepted; 1 at least one was rejected; 2 usage error or a\n"
    "rule tree that cannot be used; 3 at least one package could not be judged (3 outranks 1).";

template <typename Value>
Value valueOf(const Names<Value>& names, const std::string& name) {
    return std::find_if(names.begin(), names.end(),
                        [&](const auto& entry) { return entry.first == name; })
        ->second;
}

template <typename Value>
std::string_view nameOf(const Names<Value>& names, Value value) {
    return std::find_if(names.begin(), names.end(),
                        [&](const auto& entry) { return entry.second == value; })
        ->first;
}

template <typename Value>
std::vector<std::string> wordsOf(const Names<Value>& names) {
    std::vector<std::string> words;
    for (const auto& entry : names) {
        words.push_back(entry.first);
    }
    return words;
}

// An option that takes one of words and hands it to set.
void addWord(CLI::App* command, const std::string& option, const std::vector<std::string>& words,
             const std::function<void(const std::string&)>& set, const std::string& description) {
    command->add_option_function<std::string>(option, set, description)
        ->type_name(CLI::detail::join(words, "|"))
        ->take_last()
        ->check(CLI::IsMember(words).description(""));
}

// An option that takes one of names, and nothing else: neither their numbers nor other cases.
template <typename Target, typename Value>
void addChoice(CLI::App* command, const std::string& option, const Names<Value>& names,
               Target* target, const std::string& description) {
    addWord(
        command, option, wordsOf(names),
        [&names, target](const std::string& name) { *target = valueOf(names, name); }, description);
}

// The profile called name, or all of them.
std::vector<Profiles> profilesOf(const std::string& name) {
    std::vector<Profiles> profiles;
    for (const auto& [known, profile] : kProfiles) {
        if (name == known || name == kAll) {
            profiles.push_back(profile);
        }
    }
    return profiles;
}

void addProfiles(CLI::App* command, std::vector<Profiles>* profiles,
                 const std::string& description) {
    std::vector<std::string> words = wordsOf(kProfiles);
    words.emplace_back(kAll);
    addWord(
        command, "--profile", words,
        [profiles](const std::string& name) { *profiles = profilesOf(name); }, description);
}

void addProfile(CLI::App* command, std::vector<Profiles>* profiles) {
    addWord(
        command, "--profile", wordsOf(kProfiles),
        [profiles](const std::string& name) { *profiles = {valueOf(kProfiles, name)}; },
        "Profile to look at [regular]");
}

void addColor(CLI::App* command, ColorMode* color) {
    addChoice(command, "--color", kColorModes, color, "Colour in the output [auto]");
}

void addFile(CLI::App* command, const std::string& option, std::string* path,
             const std::string& description) {
    command->add_option(option, *path, description)->type_name("FILE")->take_last();
}

void addFiles(CLI::App* command, const std::string& option, std::vector<std::string>* paths,
              const std::string& description) {
    command->add_option(option, *paths, description)->type_name("FILE")->allow_extra_args(false);
}

Output outputOf(const std::string& word) {
    const std::size_t end = word.find(kFormatEnd);
    const std::string name = word.substr(0, end);
    const bool known = std::any_of(kFormats.begin(), kFormats.end(),
                                   [&](const auto& entry) { return entry.first == name; });
    if (!known || end == std::string::npos || end + 1 == word.size()) {
        throw CLI::ValidationError("--output", "not FORMAT:PATH: " + word);
    }
    return {valueOf(kFormats, name), word.substr(end + 1)};
}

void describeInput(CLI::App* check, CheckOptions* options) {
    check
        ->add_option("PATH", options->paths,
                     "Packages to judge; of a directory every *.rpm below it")
        ->type_name("");
    addFiles(check, "--files-from", &options->filesFrom,
             "Read more paths from FILE, one a line; - is standard input");
    check->add_flag("-0,--null", options->nulSeparated,
                    "Paths in the lists end with a NUL in place of a line feed");
}

void describeJudgement(CLI::App* check, CheckOptions* options) {
    addFile(check, "--rules", &options->rules,
            "Configuration file of the rule tree [the one that comes with pkgvet]");
    addProfiles(check, &options->profiles, "Profile to judge under [regular]");
    addChoice(check, "--validation", kValidationModes, &options->validation,
              "Whether rule violations reject a package; auto asks the platform's developer mode "
              "[auto]");
    check->add_option("-j,--jobs", options->jobs, "Packages judged at once [the processors]")
        ->type_name("N")
        ->take_last()
        ->check(CLI::Range(1U, 1024U).description(""));
    check->add_option("--timeout", options->timeout, "Time that a package may take [120]")
        ->type_name("SECONDS")
        ->take_last()
        ->check(CLI::Range(0.001, 1e6).description(""))
        // "nan" lies in every range.
        ->check([](const std::string& text) {
            return std::isfinite(std::strtod(text.c_str(), nullptr)) ? std::string()
                                                                     : text + " is no time";
        });
}

void describeChoice(CLI::App* check, CheckOptions* options) {
    addFiles(check, "--waivers", &options->waivers, "Findings that are excused, with reasons");
    check->add_flag("--show-waived", options->showWaived, "Show excused findings as well");
    addFile(check, "--baseline", &options->baseline, "Only findings that FILE does not hold count");
    addFile(check, "--write-baseline", &options->writeBaseline,
            "Write the findings of this run to FILE");
    addChoice(check, "--fail-on", kFailOn, &options->failOn,
              "Least severity that rejects a package [as the rules say]");
    check->add_flag("--exit-zero", options->exitZero, "Exit status 0 in place of 1");
}

void describeOutput(CLI::App* check, CheckOptions* options) {
    addChoice(check, "--format", kFormats, &options->format, "Format on standard output [text]");
    check
        ->add_option_function<std::vector<std::string>>(
            "-o,--output",
            [options](const std::vector<std::string>& words) {
                std::transform(words.begin(), words.end(), std::back_inserter(options->outputs),
                               outputOf);
            },
            "Write a report to a file as well; may be repeated")
        ->type_name("FORMAT:PATH")
        ->allow_extra_args(false);
    addColor(check, &options->color);
    check->add_flag("-q,--quiet", options->quiet, "One verdict line for each package, no findings");
    check->add_flag("--explain", options->explain, "Show below each finding how to put it right");
    check->add_flag("--timings", options->timings, "Show how long each package took");
}

void describeCheck(CLI::App* check, CheckOptions* options) {
    describeInput(check, options);
    describeJudgement(check, options);
    describeChoice(check, options);
    describeOutput(check, options);
    check->footer(kExitStatuses);
    check->final_callback([options] {
        if (options->paths.empty() && options->filesFrom.empty()) {
            throw CLI::RequiredError("PATH or --files-from");
        }
    });
}

void describeExplain(CLI::App* explain, ExplainOptions* options) {
    explain->add_option("ID", options->ids, "Rules to explain [all of them]")->type_name("");
    addColor(explain, &options->color);
}

CLI::App* addAction(CLI::App* rules, RulesOptions* options, RulesAction action,
                    const std::string& name, const std::string& description) {
    CLI::App* command = rules->add_subcommand(name, description);
    command->preparse_callback([options, action](std::size_t) {
        options->action = action;
        options->profiles = profilesOf(action == RulesAction::Check ? kAll : kDefaultProfile);
    });
    return command;
}

void describeRules(CLI::App* rules, RulesOptions* options) {
    rules->require_subcommand(1);
    CLI::App* check = addAction(rules, options, RulesAction::Check, "check",
                                "Name everything that is wrong with a rule tree");
    addProfiles(check, &options->profiles, "Profile whose files are checked [all]");
    CLI::App* show = addAction(rules, options, RulesAction::Show, "show",
                               "Show the lists that are in force under a profile");
    addProfile(show, &options->profiles);
    addChoice(show, "--format", kRulesFormats, &options->format, "Format of the output [text]");
    for (CLI::App* command : {check, show}) {
        command
            ->add_option("FILE", options->trees,
                         "Configuration file of the rule tree [the one that comes with pkgvet]")
            ->type_name("")
            ->expected(0, 1);
    }
    CLI::App* diff = addAction(rules, options, RulesAction::Diff, "diff",
                               "Show what changed between two rule trees under a profile");
    addProfile(diff, &options->profiles);
    addChoice(diff, "--format", kRulesFormats, &options->format, "Format of the output [text]");
    diff->add_option("FILE", options->trees, "Configuration files of the rule trees")
        ->type_name("")
        ->required()
        ->expected(2);
}

void describeWorker(CLI::App* worker, WorkerOptions* options) {
    worker->group(kHidden);
    addFile(worker, "--rules", &options->rules, "");
    worker
        ->add_option_function<std::vector<std::string>>(
            "--profile",
            [options](const std::vector<std::string>& names) {
                for (const std::string& name : names) {
                    options->profiles.push_back(valueOf(kProfiles, name));
                }
            })
        ->allow_extra_args(false)
        ->required()
        ->check(CLI::IsMember(wordsOf(kProfiles)));
    addChoice(worker, "--validation", kValidationModes, &options->validation, "");
    worker->add_option("PATH", options->package)->required();
}

CLI::App* addCommand(CLI::App* app, Options* options, Command command, const std::string& name,
                     const std::string& description) {
    CLI::App* added = app->add_subcommand(name, description);
    added->preparse_callback([options, command](std::size_t) { options->command = command; });
    return added;
}

}  // namespace

std::shared_ptr<CLI::App> buildApp(Options* options) {
    auto app = std::make_shared<CLI::App>(kDescription, "pkgvet");
    app->set_version_flag("--version", versionText());
    app->require_subcommand(1);
    describeCheck(addCommand(app.get(), options, Command::Check, "check", "Judge packages"),
                  &options->check);
    describeExplain(addCommand(app.get(), options, Command::Explain, "explain",
                               "Say what a rule demands, why, and how to put a finding right"),
                    &options->explain);
    describeRules(addCommand(app.get(), options, Command::Rules, "rules",
                             "Check, show and compare rule trees"),
                  &options->rules);
    describeWorker(addCommand(app.get(), options, Command::Worker, "worker", ""), &options->worker);
    return app;
}

std::optional<Options> parseCommandLine(int argc, char** argv, int* exitStatus) {
    Options options;
    const std::shared_ptr<CLI::App> app = buildApp(&options);
    try {
        app->parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        *exitStatus = app->exit(error) == 0 ? kAccepted : kUsageError;
        return std::nullopt;
    }
    return options;
}

std::string_view profileName(Profiles profile) {
    return nameOf(kProfiles, profile);
}

std::string_view validationName(ValidationMode mode) {
    return nameOf(kValidationModes, mode);
}

std::string_view formatName(Format format) {
    return nameOf(kFormats, format);
}

}  // namespace pkgvet::cli
