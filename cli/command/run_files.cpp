// Names the files of a run.
#include "cli/command/run_files.h"

#include <sys/stat.h>
#include <unistd.h>

#include "cli/command/output_guard.h"
#include "cli/report/reports.h"
#include "cli/rules/rule_tree_walk.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kStandardInput = "/dev/stdin";
// More than the results of any run fill.
constexpr std::size_t kMostParts = 100;

// Among the further files of a report, those that are there already. How many there will be is not
// known yet.
void addParts(const std::string& path, std::vector<std::string>* files) {
    for (std::size_t number = 2; number <= kMostParts; ++number) {
        const std::string part = pathOfPart(path, number);
        struct stat status {};
        if (stat(part.c_str(), &status) == 0) {
            files->push_back(part);
        }
    }
}

std::vector<std::string> filesWritten(const CheckOptions& options) {
    std::vector<std::string> files;
    for (const Output& output : filesOf(options.report)) {
        files.push_back(output.path);
        if (options.report.split && output.format == Format::Sarif) {
            addParts(output.path, &files);
        }
    }
    for (const std::string& file : {options.policy.writeBaseline, options.input.resume}) {
        if (!file.empty()) {
            files.push_back(file);
        }
    }
    return files;
}

// Packages apart.
std::vector<std::string> filesRead(const Settings& settings,
                                   const std::vector<std::string>& trees) {
    const CheckOptions& options = settings.options;
    std::vector<std::string> files = options.policy.waivers;
    files.push_back(options.policy.baseline);
    files.push_back(settings.projectFile);
    for (const std::string& list : options.input.filesFrom) {
        files.push_back(list == "-" ? kStandardInput : list);
    }
    RuleTreeVisitor visitor;
    visitor.onFile = [&files](const std::string& file) { files.push_back(file); };
    for (const std::string& rules : trees) {
        walkRuleTree(rules, options.judging.profiles, visitor);
    }
    return files;
}

bool isStandardOutputAFile() {
    struct stat status {};
    return fstat(STDOUT_FILENO, &status) == 0 && S_ISREG(status.st_mode);
}

}  // namespace

void guardFiles(const Settings& settings, const std::string& rules,
                const std::vector<Input>& packages) {
    guardFiles(filesWritten(settings.options), settings, {rules}, packages);
}

void guardFiles(const std::vector<std::string>& written, const Settings& settings,
                const std::vector<std::string>& trees, const std::vector<Input>& packages) {
    // The walk over the rules takes time.
    if (written.empty() && !isStandardOutputAFile()) {
        return;
    }
    std::vector<std::string> read = filesRead(settings, trees);
    for (const Input& package : packages) {
        read.push_back(package.path);
    }
    refuseLossOfFiles(written, read);
}

}  // namespace pkgvet::cli
