// A baseline, which is the same once it is written and read again.
#include "cli/policy/baseline.h"

#include "fuzz/fuzz_target.h"
#include "tests/support/base/temporary_directory.h"

void pkgvet::fuzz::run(std::string_view input) {
    static const TemporaryDirectory directory;
    std::vector<cli::Fault> faults;
    const cli::Baseline baseline =
        cli::readBaseline(directory.write("baseline.json", input), &faults);
    for (const cli::Fault& fault : faults) {
        expect(cli::describe(fault).find('\n') == std::string::npos, "a fault is one line");
    }
    if (!faults.empty()) {
        return;
    }
    const std::string written = directory.write("again.json", cli::formatBaseline(baseline));
    expect(cli::readBaseline(written, &faults) == baseline, "what is written is read back");
    expect(faults.empty(), "what is written has no fault");
}
