// The packages that a run is about.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/base/option.h"
#include "cli/model/model.h"
#include "cli/records/shard_input.h"

namespace pkgvet::cli {

// Which packages the user names. The lists in files come after the paths of the command line.
struct InputOptions {
    std::vector<std::string> paths;  // packages and directories
    std::vector<std::string> filesFrom;
    bool nulSeparated = false;
    bool allowEmpty = false;  // it is fine when they lead to no package
    std::optional<ShardNumber> shard;
    std::string resume;  // a report in JSON Lines to go on with; empty for none
};

// What the named paths lead to.
struct CollectedInput {
    std::vector<Input> packages;
    // The directories and lists that lead to no package, in words for a message.
    std::vector<std::string> empty;
};

std::vector<Option> inputOptions(InputOptions* options);
Operand inputOperand(InputOptions* options);

// What the command line lacks if options name no packages at all; else nothing.
std::string missingInput(const InputOptions& options);

// The packages that the options name, each as its path was given: the paths in their order, then
// those of the lists, with their positions in that order. A directory stands for every *.rpm below
// it, whatever the case of these letters, in the order of their names, with links followed; one
// that several links lead to is walked through once. What cannot be looked at is among the
// packages, with the cause. Throws std::runtime_error when a list cannot be read to its end.
CollectedInput collectInput(const InputOptions& options);

}  // namespace pkgvet::cli
