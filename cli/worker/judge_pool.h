// Judges, several at a time.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/base/progress.h"
#include "cli/model/model.h"
#include "cli/worker/judge_process.h"
#include "cli/worker/outcome.h"
#include "cli/worker/scratch_directory.h"
#include "cli/worker/signal_watch.h"
#include "cli/worker/template_process.h"

namespace pkgvet::cli {

struct PoolOptions {
    TemplateOptions judging;
    std::vector<std::string> profiles;  // the names of the profiles that packages are judged under
    std::string scratch;                // a directory to unpack in; empty for memory
    unsigned jobs = 1;
    // What is known of a package already, so that it is not judged. May be null.
    std::function<std::optional<PackageReport>(const Input& input)> recall = nullptr;
    // Called with each package that was judged, as soon as it was and whatever the order of the
    // input. May be null.
    std::function<void(const PackageReport& package)> finished = nullptr;
};

// Has packages judged, each by a judge of its own, and hands the reports on in input order.
class JudgePool {
public:
    // Takes the report of a package. False to end the run.
    using Receiver = std::function<bool(PackageReport)>;

    // The judges are copies of from. Throws std::system_error when it cannot prepare to judge.
    JudgePool(std::vector<Input> inputs, PoolOptions options, std::unique_ptr<TemplateProcess> from,
              Receiver receiver, Progress* progress);

    // What cages the judges.
    const Sandbox& sandbox() const { return template_->sandbox(); }

    // Returns when all reports have been received, or after a signal or at the receiver's wish the
    // ones that were ready. True when those were all. No judge is left.
    bool run();

    // The signal that has ended the run or came after it, or 0.
    int signal();

private:
    using Clock = std::chrono::steady_clock;

    struct Job {
        std::size_t index;  // in inputs_
        ScratchDirectory scratch;
        std::unique_ptr<JudgeProcess> process;
        Clock::time_point start;
    };

    void startJobs();
    bool start(std::size_t index);
    bool isRecalled(std::size_t index);
    void renewTemplate();
    int waitingTime() const;
    void wait();
    void endJobs();
    void conclude(Job* job, Stop stop);
    void keep(std::size_t index, PackageReport report);
    void handOn();
    void handOnTheRest();

    bool isOverdue(const Job& job) const;

    std::vector<Input> inputs_;
    PoolOptions options_;
    Receiver receiver_;
    Progress* progress_;
    std::unique_ptr<TemplateProcess> template_;
    SignalWatch signals_;
    std::vector<Job> jobs_;
    std::size_t next_ = 0;      // to be started
    std::size_t received_ = 0;  // reports handed on
    std::map<std::size_t, PackageReport> ready_;
    bool interrupted_ = false;
    int signal_ = 0;
};

}  // namespace pkgvet::cli
