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
    return {
        choiceOption("--integrity", kEnabled, &options->enabled,
                     "Whether to hold the header against the payload [on]"),
    };
}

}  // namespace pkgvet::cli
