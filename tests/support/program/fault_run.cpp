#include "tests/support/program/fault_run.h"

#include <sys/syscall.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <map>
#include <stdexcept>

#include "tests/support/package/accepted_package.h"

namespace {

namespace fs = std::filesystem;

}  // namespace

FaultRun::FaultRun(const SandboxCase& sandbox) : environment_(sandbox.environment) {
    arguments_ = {"check", "--validation", "on", "--jobs", "1", "--format", "json"};
    arguments_.insert(arguments_.end(), {"--rules", acceptingRules().write(directory_)});
    arguments_.insert(arguments_.end(), sandbox.options.begin(), sandbox.options.end());
    arguments_.push_back(acceptedPackage().write(directory_));
    std::map<std::string, std::size_t> calls;
    undisturbed_ = watch([this, &calls](const SystemCall& call) {
                       ++calls[call.process];
                       // The first thing that is copied is the package.
                       if (call.number == SYS_sendfile && cast_.judge.empty()) {
                           cast_.judge = call.process;
                       }
                       return Answer();
                   }).result;
    cast_.maker = cast_.judge.substr(0, cast_.judge.rfind('.'));
    cast_.callsOfJudge = calls[cast_.judge];
    cast_.callsOfMaker = calls[cast_.maker];
}

TracedRun FaultRun::run(const SystemCallObserver& observe) {
    TracedRun run = watch(observe);
    if (run.faults == 0) {
        throw std::runtime_error("the run never came to its fault");
    }
    return run;
}

TracedRun FaultRun::watch(const SystemCallObserver& observe) {
    made_.clear();
    const auto observeAndNote = [this, &observe](const SystemCall& call) {
        const std::string name = nameOfDirectory(call);
        if (name.starts_with("/tmp/")) {
            made_.push_back(name);
        }
        return observe(call);
    };
    return runTraced(arguments_, observeAndNote, environment_);
}

std::vector<std::string> FaultRun::directoriesLeft() const {
    return stillThere(made_);
}

// Under names that the program chooses, by one of two calls.
std::string nameOfDirectory(const SystemCall& call) {
    if (call.number == SYS_mkdirat) {
        return call.text(1);
    }
#if defined(SYS_mkdir)
    if (call.number == SYS_mkdir) {
        return call.text(0);
    }
#endif
    return {};
}

std::vector<std::string> stillThere(const std::vector<std::string>& paths) {
    std::vector<std::string> left;
    std::copy_if(paths.begin(), paths.end(), std::back_inserter(left),
                 [](const std::string& path) { return fs::exists(path); });
    return left;
}
