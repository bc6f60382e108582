// A report in JSON that comes back to the program.
#include "cli/policy/report_file.h"

#include "fuzz/fuzz_target.h"
#include "tests/support/base/temporary_directory.h"

void pkgvet::fuzz::run(std::string_view input) {
    static const TemporaryDirectory directory;
    std::vector<cli::Fault> faults;
    cli::readReport(directory.write("report.json", input), &faults);
    for (const cli::Fault& fault : faults) {
        expect(cli::describe(fault).find('\n') == std::string::npos, "a fault is one line");
    }
}
