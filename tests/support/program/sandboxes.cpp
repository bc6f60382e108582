#include "tests/support/program/sandboxes.h"

#include <nlohmann/json.hpp>

#include "tests/support/package/accepted_package.h"
#include "tests/support/program/program.h"

std::vector<std::string> withoutNamespaces() {
    return {"unshare", "--user", "--map-root-user",
            "sh",      "-c",     "echo 0 >/proc/sys/user/max_user_namespaces && exec \"$@\"",
            "sh"};
}

SandboxCase chosenSandbox() {
    return {"Chosen", {}, {}, {}};
}

SandboxCase requiredSandbox() {
    return {"Required", {"--sandbox", "require"}, {}, {}};
}

SandboxCase landlockAlone() {
    return {"LandlockAlone", {}, withoutNamespaces(), "landlock"};
}

SandboxCase noSandbox() {
    return {"Off", {"--sandbox", "off"}, {}, "none", false};
}

// A package that is missing is not judged, unless the program refuses to judge any.
bool isThere(const SandboxCase& sandbox) {
    const TemporaryDirectory directory;
    std::vector<std::string> words = {"check", "--format", "json", "--rules",
                                      acceptingRules().write(directory)};
    words.insert(words.end(), sandbox.options.begin(), sandbox.options.end());
    words.emplace_back("missing.rpm");
    const ProgramResult result = runPkgvet(words, sandbox.environment);
    const auto report = nlohmann::json::parse(result.output, nullptr, false);
    return result.status == 3 && report.is_object() &&
           (sandbox.reported.empty() || report["sandbox"] == sandbox.reported);
}

void PrintTo(const SandboxCase& sandbox, std::ostream* stream) {
    *stream << sandbox.name;
}
