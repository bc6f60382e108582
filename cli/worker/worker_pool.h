// Workers, several at a time.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "cli/base/progress.h"
#include "cli/model/model.h"
#include "cli/worker/signal_watch.h"
#include "cli/worker/worker_outcome.h"
#include "cli/worker/worker_process.h"

namespace pkgvet::cli {

struct PoolOptions {
    std::vector<std::string> command;   // the arguments of a worker up to the path of its package
    std::vector<std::string> profiles;  // the names of the profiles that it judges under
    unsigned jobs = 1;
    double timeout = 0;  // in seconds, for each package
};

// Has packages judged, each by a worker of its own, and hands the reports on in input order.
class WorkerPool {
public:
    // Takes the report of a package. False to end the run.
    using Receiver = std::function<bool(PackageReport)>;

    WorkerPool(std::vector<Input> inputs, PoolOptions options, Receiver receiver,
               Progress* progress);

    // Returns when all reports have been received, or after a signal or at the receiver's wish the
    // ones that were ready. True when those were all. No worker is left.
    bool run();

private:
    using Clock = std::chrono::steady_clock;

    struct Job {
        std::size_t index;  // in inputs_
        std::unique_ptr<WorkerProcess> process;
        Clock::time_point start;
    };

    void startJobs();
    void start(std::size_t index);
    int waitingTime() const;
    void wait();
    void endJobs();
    void conclude(Job* job, StopReason reason);
    void keep(std::size_t index, PackageReport report);
    void handOn();
    void handOnTheRest();

    bool isOverdue(const Job& job) const;

    std::vector<Input> inputs_;
    PoolOptions options_;
    Receiver receiver_;
    Progress* progress_;
    SignalWatch signals_;
    std::vector<Job> jobs_;
    std::size_t next_ = 0;      // to be started
    std::size_t received_ = 0;  // reports handed on
    std::map<std::size_t, PackageReport> ready_;
    bool interrupted_ = false;
};

}  // namespace pkgvet::cli
