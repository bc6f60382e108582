// The program pkgvet.
#include <exception>
#include <iostream>

#include "cli/check.h"
#include "cli/exit_status.h"
#include "cli/explain.h"
#include "cli/options.h"
#include "cli/rules_command.h"
#include "cli/worker.h"

namespace {

int run(const pkgvet::cli::Options& options) {
    using namespace pkgvet::cli;
    switch (options.command) {
        case Command::Check:
            return check(options.check);
        case Command::Explain:
            return explain(options.explain);
        case Command::Rules:
            return rules(options.rules);
        case Command::Worker:
            return work(options.worker);
    }
    return kUsageError;
}

}  // namespace

int main(int argc, char** argv) {
    using namespace pkgvet::cli;
    try {
        int exitStatus = kUsageError;
        const auto options = parseCommandLine(argc, argv, &exitStatus);
        return options ? run(*options) : exitStatus;
    } catch (const std::exception& error) {
        std::cerr << "pkgvet: " << error.what() << '\n';
        return kNotJudged;
    }
}
