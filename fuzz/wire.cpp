// What a judge sends: the first byte is how many profiles there were.
#include "cli/worker/wire.h"

#include <limits>

#include "fuzz/fuzz_target.h"

void pkgvet::fuzz::run(std::string_view input) {
    if (input.empty()) {
        return;
    }
    const std::vector<std::string> profiles(static_cast<unsigned char>(input.front()) % 7U,
                                            "regular");
    const std::string_view message = input.substr(1);
    const std::optional<cli::PackageReport> report = cli::decodeReport(message, profiles);
    if (report) {
        expect(cli::reportMessage(*report, std::numeric_limits<std::size_t>::max()) == message,
               "a message that is read is the one that its report makes");
    }
}
