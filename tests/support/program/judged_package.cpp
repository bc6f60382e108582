#include "tests/support/program/judged_package.h"

#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>

#include "tests/support/program/program.h"

using Json = nlohmann::json;

namespace {

std::string textOf(const Json& value) {
    return value.is_string() ? value.get<std::string>() : std::string();
}

void readJudgement(const Json& judgement, JudgedPackage* judged) {
    judged->accepted = judgement["accepted"];
    judged->intact = judgement["intact"];
    std::set<std::string> ids;
    for (const Json& finding : judgement["findings"]) {
        ids.insert(textOf(finding["rule"]));
        judged->messages += textOf(finding["rule"]) + ": " + textOf(finding["message"]) + "\n";
    }
    judged->findings.assign(ids.begin(), ids.end());
}

JudgedPackage readPackage(const Json& package) {
    JudgedPackage judged;
    judged.path = textOf(package["path"]);
    judged.cause = textOf(package["cause"]);
    judged.complete = package["complete"];
    judged.passes = package["passes"];
    if (!package["judgements"].empty()) {
        readJudgement(package["judgements"][0], &judged);
    }
    return judged;
}

}  // namespace

std::vector<JudgedPackage> judgePackages(const RuleTree& tree,
                                         const std::vector<std::string>& paths,
                                         const std::vector<std::string>& options,
                                         const std::vector<std::string>& environment) {
    const TemporaryDirectory directory;
    std::vector<std::string> arguments = {
        "check", "--validation", "on", "--rules", tree.write(directory), "--format", "json"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    arguments.insert(arguments.end(), paths.begin(), paths.end());
    const ProgramResult result = runPkgvet(arguments, environment);
    const Json report = Json::parse(result.output, nullptr, false);
    if (report.is_discarded()) {
        throw std::runtime_error("no report: " + result.errors);
    }
    std::vector<JudgedPackage> judged;
    for (const Json& package : report["packages"]) {
        judged.push_back(readPackage(package));
    }
    return judged;
}
