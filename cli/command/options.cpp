// Collects what the commands take, and hands it to the parser, whose header takes long to compile
// and is included nowhere else.
#include "cli/command/options.h"

#include <CLI/CLI.hpp>

#include "cli/base/exit_status.h"
#include "cli/base/terminal.h"
#include "cli/base/text.h"
#include "cli/base/version.h"
#include "cli/command/command_line_error.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kDescription =
    "Decides whether application packages in RPM format may be installed.";
constexpr const char* kNamesSeparator = ",";
constexpr const char* kHidden = "";  // the group of what help leaves out
constexpr int kNoLimit = -1;

CommandRow bound(Command command, CommandRow row, Options* options) {
    row.begin = [options, command] { options->command = command; };
    return row;
}

// The parser hands over all arguments that an option was given, and fails with what is wrong with
// the first that is not in order.
CLI::callback_t callbackOf(const std::string& name, const Setter& set) {
    return [name, set](const CLI::results_t& arguments) {
        for (const std::string& argument : arguments) {
            const std::string error = set(argument);
            if (!error.empty()) {
                throw CLI::ValidationError(name, error);
            }
        }
        return true;
    };
}

void addOption(const Option& option, CLI::App* app) {
    const std::string names = joined(option.names, kNamesSeparator);
    if (option.argument.empty()) {
        app->add_flag_callback(
            names, [set = option.set] { set(std::string()); }, option.description);
        return;
    }
    const CLI::callback_t callback = callbackOf(option.names.back(), option.set);
    CLI::Option* added = app->add_option(names, callback, option.description);
    added->type_name(option.argument);
    if (option.mayRepeat) {
        added->expected(1, kNoLimit)->allow_extra_args(false);
    } else {
        added->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    }
}

void addOperand(const Operand& operand, CLI::App* app) {
    CLI::Option* added =
        app->add_option(operand.name, callbackOf(operand.name, operand.set), operand.description);
    added->type_name("");
    added->required(operand.least > 0);
    // Too many are counted rather than called unexpected.
    added->allow_extra_args();
    if (operand.most == kAnyNumber) {
        added->expected(1, kNoLimit);
    } else {
        added->expected(static_cast<int>(operand.least), static_cast<int>(operand.most));
    }
}

void addOptions(const CommandRow& row, CLI::App* app) {
    for (const Option& option : row.options) {
        const std::string names = joined(option.names, kNamesSeparator);
        if (option.names == helpOption().names) {
            app->set_help_flag(names, option.description);
        } else if (option.names == versionOption().names) {
            app->set_version_flag(names, versionText(), option.description);
        } else {
            addOption(option, app);
        }
    }
    if (row.operand) {
        addOperand(*row.operand, app);
    }
}

// Commands that do not run get their description only: describing their options takes longer than
// parsing. row must outlive app.
void describe(const CommandRow& row, const CommandRow* running, CLI::App* app) {
    addOptions(row, app);
    app->footer(row.footer);
    app->require_subcommand(row.commands.empty() ? 0 : 1);
    if (row.hidden) {
        app->group(kHidden);
    }
    if (row.begin) {
        app->preparse_callback([&row](std::size_t /*remaining*/) { row.begin(); });
    }
    if (row.missing) {
        app->final_callback([&row] {
            const std::string missing = row.missing();
            if (!missing.empty()) {
                throw CLI::RequiredError(missing);
            }
        });
    }
    for (const CommandRow& command : row.commands) {
        CLI::App* const added = app->add_subcommand(command.name, command.description);
        if (running == nullptr || running == &command) {
            describe(command, nullptr, added);
        }
    }
}

}  // namespace

CommandRow commandTable(Options* options) {
    CommandRow table;
    table.name = "pkgvet";
    table.description = kDescription;
    table.options = {versionOption()};
    table.commands = {
        bound(Command::Check, checkCommand(&options->check), options),
        bound(Command::Explain, explainCommand(&options->explain), options),
        bound(Command::Report, reportCommand(&options->report), options),
        bound(Command::Merge, mergeCommand(&options->merge), options),
        bound(Command::Compare, compareCommand(&options->compare), options),
        bound(Command::Rules, rulesCommand(&options->rules), options),
        bound(Command::Impact, impactCommand(&options->impact), options),
        bound(Command::Verify, verifyCommand(&options->verify), options),
        bound(Command::Waive, waiveCommand(&options->waive), options),
    };
    return completed(std::move(table));
}

std::optional<int> parseCommandLine(const CommandRow& table, int argc, const char* const* argv) {
    CLI::App app(table.description, table.name);
    describe(table, argc > 1 ? findCommand(table, argv[1]) : nullptr, &app);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) {
            app.exit(error);  // writes the help or the version that was asked for
            return statusAfterOutput(kAccepted);
        }
        complain(commandLineError(table, {argv + 1, argv + argc}, error.what()));
        return kUsageError;
    }
    return std::nullopt;
}

}  // namespace pkgvet::cli
