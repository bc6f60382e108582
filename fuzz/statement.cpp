// A record of a verdict that comes back to the program.
#include "cli/statement/record.h"
#include "cli/statement/stored_record.h"
#include "fuzz/fuzz_target.h"
#include "tests/support/base/temporary_directory.h"

void pkgvet::fuzz::run(std::string_view input) {
    static const TemporaryDirectory directory;
    std::vector<cli::Fault> faults;
    const cli::Record record = cli::readRecord(directory.write("record.json", input), &faults);
    for (const cli::Fault& fault : faults) {
        expect(cli::describe(fault).find('\n') == std::string::npos, "a fault is one line");
    }
    if (faults.empty()) {
        expect(cli::differencesBetween(record, record).empty(), "a record is like itself");
    }
}
