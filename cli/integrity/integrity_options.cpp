// Declares the options on integrity.
#include "cli/integrity/integrity_options.h"

namespace pkgvet::cli {

namespace {

constexpr Words<bool, 2> kEnabled = {{
    {"on", true},
    {"off", false},
}};

}  // namespace

std::vector<Option> integrityOptions(IntegrityOptions* options) {
    Option keyring = fileOption("--keyring", &options->keyring,
                                "Directory of public keys, of which one has to have signed "
                                "[signatures do not count]");
    keyring.argument = "DIRECTORY";
    return {
        choiceOption("--integrity", kEnabled, &options->enabled,
                     "Whether to hold the header against the payload [on]"),
        keyring,
    };
}

}  // namespace pkgvet::cli
