// The program pkgvet.
#include <fcntl.h>
#include <unistd.h>

#include <exception>
#include <optional>

#include "cli/base/exit_status.h"
#include "cli/base/terminal.h"
#include "cli/command/check.h"
#include "cli/command/compare.h"
#include "cli/command/explain.h"
#include "cli/command/impact.h"
#include "cli/command/merge.h"
#include "cli/command/options.h"
#include "cli/command/report.h"
#include "cli/command/rules.h"
#include "cli/command/verify.h"
#include "cli/command/waive.h"
#include "pkgvet/base/descriptor.h"

namespace {

// A descriptor opened later must not take the place of a standard one that is closed: what is meant
// for standard output would end up in it.
void openStandardDescriptors() {
    pkgvet::Descriptor descriptor;
    do {
        descriptor.release();
        descriptor = pkgvet::Descriptor(open("/dev/null", O_RDONLY | O_CLOEXEC));
    } while (descriptor.isOpen() && descriptor.get() <= STDERR_FILENO);
}

int run(const pkgvet::cli::Options& options) {
    using namespace pkgvet::cli;
    switch (options.command) {
        case Command::Check:
            return check(options.check);
        case Command::Compare:
            return compare(options.compare);
        case Command::Explain:
            return explain(options.explain);
        case Command::Impact:
            return impact(options.impact);
        case Command::Merge:
            return merge(options.merge);
        case Command::Report:
            return report(options.report);
        case Command::Rules:
            return rules(options.rules);
        case Command::Verify:
            return verify(options.verify);
        case Command::Waive:
            return waive(options.waive);
    }
    return kUsageError;
}

}  // namespace

int main(int argc, char** argv) {
    using namespace pkgvet::cli;
    openStandardDescriptors();
    try {
        Options options;
        const std::optional<int> status = parseCommandLine(commandTable(&options), argc, argv);
        return status ? *status : run(options);
    } catch (const std::exception& error) {
        complain(error.what());
        return kNotJudged;
    }
}
