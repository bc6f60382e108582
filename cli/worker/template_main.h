// What the template process does.
#pragma once

#include <sys/types.h>

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/judge/judge.h"
#include "cli/model/model.h"
#include "cli/worker/limits.h"
#include "cli/worker/sandbox.h"
#include "pkgvet/base/descriptor.h"

namespace pkgvet::cli {

// What a judge does in its world.
using JudgeFunction = std::function<PackageReport(const Surroundings&)>;

struct TemplateOptions {
    SandboxMode sandbox = SandboxMode::Auto;
    // What an earlier template of the run found out, so that there is never less.
    std::optional<Sandbox> decided;
    Limits limits;
    // Called once, in the template process: it reads what every judge needs.
    std::function<JudgeFunction()> prepare;
    // Directories beside the package that the rules read.
    std::vector<std::string> readable;
    // How long it may take to start a judge, in milliseconds.
    int patience = 20000;
};

// Where directories are made for a judge that has no namespaces.
inline constexpr const char kTreeTemplate[] = "/tmp/dir.XXXXXX";
inline constexpr const char kCopyTemplate[] = "/tmp/pkgvet.XXXXXX";

// Lets it prepare, once.
inline constexpr const char* kPrepareRequest = "prepare";
// Asks for a judge. What else comes over the channel is the id of a judge that has ended.
inline constexpr const char* kStartRequest = "start";
// With the number of a judge behind it.
inline constexpr std::string_view kKillRequest = "kill";

// The answer to a request for a judge.
struct StartAnswer {
    int error = 0;
    pid_t process = -1;
    // Both empty where there are namespaces.
    std::array<char, sizeof kTreeTemplate> tree{};
    std::array<char, sizeof kCopyTemplate> copy{};
};

// What the template says once it is prepared: the sandbox that it found.
std::string helloOf(const Sandbox& sandbox);
Sandbox sandboxOf(const std::string& hello);

// Serves the other end of the channel until that is closed, and ends the process. What it inherited
// of the program is closed or undone, save for standard error.
[[noreturn]] void runTemplate(const TemplateOptions& options, Descriptor channel);

}  // namespace pkgvet::cli
