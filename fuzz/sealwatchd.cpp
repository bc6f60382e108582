// The configuration of the file integrity service.
#include "pkgvet/files/sealwatchd.h"

#include <stdexcept>

#include "fuzz/fuzz_target.h"
#include "tests/support/base/temporary_directory.h"

void pkgvet::fuzz::run(std::string_view input) {
    static const TemporaryDirectory directory;
    const std::string file = directory.write("app.json", input);
    // An element that is not a text.
    tolerate<std::logic_error>([&] { checkSealwatchdFile(file, {"/usr/bin/app", "elf:/x"}); });
}
