#include "tests/support/program/fault_run.h"

#include <sys/syscall.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <map>

#include "tests/support/package/accepted_package.h"

namespace {

namespace fs = std::filesystem;

// Directories are made under names that the program chooses, by one of two calls.
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

}  // namespace

FaultRun::FaultRun(const std::vector<std::string>& options) {
    arguments_ = {"check", "--validation", "on", "--jobs", "1", "--format", "json"};
    arguments_.insert(arguments_.end(), {"--rules", acceptingRules().write(directory_)});
    arguments_.insert(arguments_.end(), options.begin(), options.end());
    arguments_.push_back(acceptedPackage().write(directory_));
    std::map<std::string, std::size_t> calls;
    undisturbed_ = run([this, &calls](const SystemCall& call) {
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
    made_.clear();
    return runTraced(arguments_, [this, &observe](const SystemCall& call) {
        const std::string name = nameOfDirectory(call);
        if (name.starts_with("/tmp/")) {
            made_.push_back(name);
        }
        return observe(call);
    });
}

std::vector<std::string> FaultRun::directoriesLeft() const {
    return stillThere(made_);
}

std::vector<std::string> stillThere(const std::vector<std::string>& paths) {
    std::vector<std::string> left;
    std::copy_if(paths.begin(), paths.end(), std::back_inserter(left),
                 [](const std::string& path) { return fs::exists(path); });
    return left;
}
