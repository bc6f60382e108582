#include "tests/support/program/program.h"

#include <sys/wait.h>

#include <cstdlib>
#include <string_view>
#include <utility>

#include "tests/support/base/temporary_directory.h"

namespace {

constexpr std::string_view kSandboxRemark = "pkgvet: packages are shut off from the machine by ";

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

std::string takeSandboxRemark(std::string* errors) {
    const std::size_t begin = errors->find(kSandboxRemark);
    if (begin == std::string::npos) {
        return std::string();
    }
    std::string line = errors->substr(begin, errors->find('\n', begin) + 1 - begin);
    errors->erase(begin, line.size());
    return line;
}

ProgramResult programResult(int status, std::string output, std::string errors) {
    std::string remark = takeSandboxRemark(&errors);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), std::move(output),
            std::move(errors), std::move(remark)};
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
    const std::string errorFile = directory / "errors";
    command.append(" </dev/null >").append(quoted(output)).append(" 2>").append(quoted(errorFile));
    const int status = std::system(command.c_str());
    return programResult(status, readFile(output), readFile(errorFile));
}
