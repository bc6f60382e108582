// A file of waivers, and what is written for the waivers that it holds.
#include "cli/policy/waivers.h"

#include <regex>

#include "cli/policy/waiver_file.h"
#include "fuzz/fuzz_target.h"
#include "tests/support/base/temporary_directory.h"

void pkgvet::fuzz::run(std::string_view input) {
    static const TemporaryDirectory directory;
    std::vector<cli::Fault> faults;
    std::vector<cli::Waiver> waivers =
        cli::readWaivers(directory.write("waivers.json", input), &faults);
    for (const cli::Fault& fault : faults) {
        expect(cli::describe(fault).find('\n') == std::string::npos, "a fault is one line");
    }
    std::vector<cli::NewWaiver> again;
    for (cli::Waiver& waiver : waivers) {
        cli::Finding finding;
        finding.rule = waiver.rule;
        finding.subject = "/usr/bin/app";
        cli::covers(&waiver, finding, "app");
        again.push_back({waiver.rule, "/usr/a+b", "app", waiver.reason, waiver.lastDay});
    }
    if (!faults.empty()) {
        return;
    }
    const std::string written = directory.write("again.json", cli::formatWaivers(again));
    const std::vector<cli::Waiver> reread = cli::readWaivers(written, &faults);
    expect(faults.empty() && reread.size() <= again.size(), "what is written is read back");
}
