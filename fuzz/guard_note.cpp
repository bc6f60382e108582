// What judge and guard tell each other, each read and written again.
#include "cli/guard/guard_note.h"

#include "fuzz/fuzz_target.h"

void pkgvet::fuzz::run(std::string_view input) {
    if (const std::optional<cli::GuardNote> note = cli::parseNote(input)) {
        expect(cli::parseNote(cli::formatNote(*note)) == note, "a note is read back");
    }
    if (const std::optional<cli::GuardOrders> orders = cli::parseOrders(input)) {
        const std::optional<cli::GuardOrders> again = cli::parseOrders(cli::formatOrders(*orders));
        expect(again && again->bytes == orders->bytes && again->files == orders->files,
               "orders are read back");
    }
}
