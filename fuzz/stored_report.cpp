// A report in JSON or JSON Lines that comes back to the program.
#include "cli/records/stored_report.h"

#include <stdexcept>

#include "fuzz/fuzz_target.h"
#include "tests/support/base/temporary_directory.h"

void pkgvet::fuzz::run(std::string_view input) {
    static const TemporaryDirectory directory;
    try {
        const cli::StoredReport report(directory.write("report.json", input));
        for (std::size_t index = 0; index < report.size(); ++index) {
            report.package(index);
        }
        if (!report.isCutShort()) {
            report.run();
        }
    } catch (const std::runtime_error& error) {
        const std::string cause = error.what();
        expect(!cause.empty() && cause.find('\n') == std::string::npos, "a fault is one line");
    }
}
