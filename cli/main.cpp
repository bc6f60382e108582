// The program pkgvet.
#include <exception>
#include <iostream>

#include "cli/check.h"
#include "cli/exit_status.h"
#include "cli/options.h"

int main(int argc, char** argv) {
    using namespace pkgvet::cli;
    try {
        int exitStatus = kUsageError;
        const auto options = parseCommandLine(argc, argv, &exitStatus);
        return options ? check(*options) : exitStatus;
    } catch (const std::exception& error) {
        std::cerr << "pkgvet: " << error.what() << '\n';
        return kNotJudged;
    }
}
