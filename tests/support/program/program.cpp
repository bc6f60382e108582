#include "tests/support/program/program.h"

#include <sys/wait.h>

#include <cstdlib>

#include "tests/support/base/temporary_directory.h"

namespace {

std::string quoted(const std::string& word) {
    std::string text(1, '\'');
    for (const char c : word) {
        if (c == '\'') {
            text.append("'\\''");
        } else {
            text.push_back(c);
        }
    }
    text.push_back('\'');
    return text;
}

}  // namespace

std::string programPath() {
    return PKGVET_PROGRAM;
}

std::string sanitizerOptions(const std::string& options) {
    const char* const own = std::getenv("ASAN_OPTIONS");
    return "ASAN_OPTIONS=" + (own == nullptr ? std::string() : std::string(own) + ":") + options;
}

ProgramResult runPkgvet(const std::vector<std::string>& arguments,
                        const std::vector<std::string>& environment) {
    const TemporaryDirectory directory;
    std::string command = "env";
    std::vector<std::string> words = environment;
    words.emplace_back(PKGVET_PROGRAM);
    words.insert(words.end(), arguments.begin(), arguments.end());
    for (const std::string& word : words) {
        command.append(" ").append(quoted(word));
    }
    const std::string output = directory / "output";
    const std::string errors = directory / "errors";
    command.append(" </dev/null >").append(quoted(output)).append(" 2>").append(quoted(errors));
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), readFile(output),
            readFile(errors)};
}
