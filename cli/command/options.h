// The command line.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/model/model.h"
#include "pkgvet/rules/profiles.h"

namespace CLI {
class App;
}  // namespace CLI

namespace pkgvet::cli {

enum class ColorMode { Auto, Always, Never };
enum class ValidationMode { Auto, On, Off };
enum class Format { Text, Concise, Json, Jsonl, Sarif, Junit, Github };

// A report that goes to a file beside the one on standard output.
struct Output {
    Format format = Format::Text;
    std::string path;
};

struct CheckOptions {
    // Input. The lists in files come after the paths of the command line.
    std::vector<std::string> paths;  // packages and directories
    std::vector<std::string> filesFrom;
    bool nulSeparated = false;

    // Judgement.
    std::string rules;  // empty: the tree that comes with the program
    std::vector<Profiles> profiles = {Profiles::Regular};
    ValidationMode validation = ValidationMode::Auto;
    unsigned jobs = 0;  // 0: as many as there are processors for this process
    double timeout = 120;

    // What counts.
    std::vector<std::string> waivers;
    bool showWaived = false;
    std::string baseline;
    std::string writeBaseline;
    std::optional<Severity> failOn;  // none: the library's own verdict counts
    bool exitZero = false;

    // Output.
    Format format = Format::Text;
    std::vector<Output> outputs;
    ColorMode color = ColorMode::Auto;
    bool quiet = false;
    bool explain = false;
    bool timings = false;
};

struct ExplainOptions {
    std::vector<std::string> ids;  // none: every rule
    ColorMode color = ColorMode::Auto;
};

enum class RulesAction { Check, Show, Diff };

struct RulesOptions {
    RulesAction action = RulesAction::Check;
    std::vector<std::string> trees;  // none: the tree that comes with the program; two for Diff
    std::vector<Profiles> profiles = {Profiles::Regular};
    Format format = Format::Text;  // or Json
};

// What the program hands to itself when it judges a package in a process of its own.
struct WorkerOptions {
    std::string rules;
    std::vector<Profiles> profiles;
    ValidationMode validation = ValidationMode::Auto;
    std::string package;
};

enum class Command { Check, Explain, Rules, Worker };

struct Options {
    Command command = Command::Check;
    CheckOptions check;
    ExplainOptions explain;
    RulesOptions rules;
    WorkerOptions worker;
};

// The table of all commands and options, from which help, completions and man pages come as well.
// Parsing a line fills options, which must outlive the table. The type name of an option that takes
// one of a few words is these words with "|" between them. A command or option with an empty group
// is not for users.
std::shared_ptr<CLI::App> buildApp(Options* options);

// What the command line asks for. Empty when there is nothing left to do, since help was shown or
// the line was wrong; exitStatus then says with what status to end.
std::optional<Options> parseCommandLine(int argc, char** argv, int* exitStatus);

// The names by which the command line knows them.
std::string_view profileName(Profiles profile);
std::string_view validationName(ValidationMode mode);
std::string_view formatName(Format format);

}  // namespace pkgvet::cli
