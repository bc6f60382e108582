// Reads the command line.
#include "cli/options.h"

#include <CLI/CLI.hpp>
#include <map>

#include "cli/exit_status.h"

namespace pkgvet::cli {

namespace {

template <typename Value>
using Names = std::map<std::string, Value>;

const Names<Profiles> kProfiles = {
    {"regular", Profiles::Regular}, {"extended", Profiles::Extended},
    {"mdm", Profiles::Mdm},         {"antivirus", Profiles::Antivirus},
    {"auth", Profiles::Auth},       {"market", Profiles::Market},
};
const Names<ValidationMode> kValidationModes = {
    {"auto", ValidationMode::Auto}, {"on", ValidationMode::On}, {"off", ValidationMode::Off}};
const Names<ColorMode> kColorModes = {
    {"auto", ColorMode::Auto}, {"always", ColorMode::Always}, {"never", ColorMode::Never}};

constexpr const char* kDescription =
    "Decides whether application packages in RPM format may be installed.";
constexpr const char* kExitStatuses =
    "Exit status: 0 every package was accepted; 1 at least one was rejected; 2 usage error or a\n"
    "rule tree that cannot be used; 3 at least one package could not be judged (3 outranks 1).";

// An option that takes one of names, and nothing else: neither their numbers nor other cases.
template <typename Value>
void addChoice(CLI::App* command, const std::string& option, const Names<Value>& names,
               Value* value, const std::string& description, const std::string& typeName) {
    command
        ->add_option_function<std::string>(
            option, [&names, value](const std::string& name) { *value = names.at(name); },
            description)
        ->type_name(typeName)
        ->take_last()
        ->check(CLI::IsMember(&names).description(""));
}

void describeCheck(CLI::App* check, CheckOptions* options) {
    check
        ->add_option("--rules", options->rules,
                     "Configuration file of the rule tree [the one that comes with pkgvet]")
        ->type_name("FILE");
    addChoice(check, "--profile", kProfiles, &options->profile,
              "Profile to judge under: regular, extended, mdm, antivirus, auth, market [regular]",
              "NAME");
    addChoice(check, "--validation", kValidationModes, &options->validation,
              "Whether rule violations reject a package; auto asks the platform's developer mode "
              "[auto]",
              "auto|on|off");
    addChoice(check, "--color", kColorModes, &options->color, "Colour in the output [auto]",
              "auto|always|never");
    check->add_flag("-q,--quiet", options->quiet, "One verdict line for each package, no findings");
    check->add_option("PATH", options->packages, "Packages to judge")
        ->required()
        ->type_name("");
    check->footer(kExitStatuses);
}

}  // namespace

std::optional<CheckOptions> parseCommandLine(int argc, char** argv, int* exitStatus) {
    CheckOptions options;
    CLI::App app(kDescription, "pkgvet");
    app.set_version_flag("--version", "pkgvet " PKGVET_VERSION);
    app.require_subcommand(1);
    describeCheck(app.add_subcommand("check", "Judge packages"), &options);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        *exitStatus = app.exit(error) == 0 ? kAccepted : kUsageError;
        return std::nullopt;
    }
    return options;
}

}  // namespace pkgvet::cli
