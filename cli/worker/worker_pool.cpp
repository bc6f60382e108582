// Starts workers, waits for them and puts their reports in order.
#include "cli/worker/worker_pool.h"

#include <poll.h>

#include <algorithm>
#include <system_error>
#include <utility>

namespace pkgvet::cli {

namespace {

using Seconds = std::chrono::duration<double>;

constexpr const char* kNoWorker = "no worker could be started: ";
// After which a person looks whether anything has moved.
constexpr Seconds kProgressInterval{0.5};
constexpr double kMilliseconds = 1000;

PackageReport notJudged(const std::string& cause) {
    PackageReport report;
    report.cause = cause;
    return report;
}

}  // namespace

WorkerPool::WorkerPool(std::vector<Input> inputs, PoolOptions options, Receiver receiver,
                       Progress* progress)
    : inputs_(std::move(inputs)),
      options_(std::move(options)),
      receiver_(std::move(receiver)),
      progress_(progress) {
    adoptOrphans();
}

bool WorkerPool::run() {
    while (!interrupted_ && received_ < inputs_.size()) {
        startJobs();
        handOn();
        if (!interrupted_ && !jobs_.empty()) {
            progress_->draw();
            wait();
            endJobs();
        }
    }
    const bool complete = received_ == inputs_.size();
    for (Job& job : jobs_) {
        conclude(&job, StopReason::Interruption);
    }
    jobs_.clear();
    handOnTheRest();
    progress_->clear();
    return complete;
}

void WorkerPool::startJobs() {
    while (jobs_.size() < options_.jobs && next_ < inputs_.size()) {
        const std::size_t index = next_;
        if (!inputs_[index].cause.empty()) {
            keep(index, notJudged(inputs_[index].cause));
        } else {
            try {
                start(index);
            } catch (const std::system_error& error) {
                if (!jobs_.empty()) {
                    // There may be room for it when one of the others has ended.
                    return;
                }
                keep(index, notJudged(kNoWorker + error.code().message()));
            }
        }
        ++next_;
    }
}

void WorkerPool::start(std::size_t index) {
    std::vector<std::string> arguments = options_.command;
    arguments.push_back(inputs_[index].path);
    jobs_.push_back({index, std::make_unique<WorkerProcess>(arguments), Clock::now()});
}

// In milliseconds, as poll() takes it.
int WorkerPool::waitingTime() const {
    const Clock::time_point now = Clock::now();
    Seconds least = progress_->isShown() ? kProgressInterval : Seconds(options_.timeout);
    for (const Job& job : jobs_) {
        least = std::min(least, Seconds(options_.timeout) - Seconds(now - job.start));
    }
    // One more, or the last fraction would be spent in a loop.
    return static_cast<int>(std::clamp(least.count() * kMilliseconds, 0.0, 1e9)) + 1;
}

void WorkerPool::wait() {
    std::vector<struct pollfd> descriptors = {{signals_.descriptor(), POLLIN, 0}};
    for (const Job& job : jobs_) {
        descriptors.push_back({job.process->answerDescriptor(), POLLIN, 0});
        descriptors.push_back({job.process->errorDescriptor(), POLLIN, 0});
    }
    poll(descriptors.data(), descriptors.size(), waitingTime());
    interrupted_ = interrupted_ || signals_.take();
    for (const Job& job : jobs_) {
        job.process->read();
    }
}

void WorkerPool::endJobs() {
    for (Job& job : jobs_) {
        // A worker that has said all may do so at the last moment.
        if (job.process->isSilent()) {
            conclude(&job, StopReason::None);
        } else if (isOverdue(job)) {
            conclude(&job, StopReason::Timeout);
        }
    }
    jobs_.erase(std::remove_if(jobs_.begin(), jobs_.end(),
                               [](const Job& job) { return job.process == nullptr; }),
                jobs_.end());
}

bool WorkerPool::isOverdue(const Job& job) const {
    return Seconds(Clock::now() - job.start) >= Seconds(options_.timeout);
}

void WorkerPool::conclude(Job* job, StopReason reason) {
    PackageReport report = concludeWorker(job->process->end(), reason, options_.profiles);
    job->process.reset();
    // An interrupted package is as one that was never begun.
    if (reason != StopReason::Interruption) {
        report.seconds = Seconds(Clock::now() - job->start).count();
        keep(job->index, std::move(report));
    }
}

void WorkerPool::keep(std::size_t index, PackageReport report) {
    report.path = inputs_[index].path;
    progress_->countDone();
    ready_.emplace(index, std::move(report));
}

void WorkerPool::handOn() {
    while (!interrupted_ && !ready_.empty() && ready_.begin()->first == received_) {
        interrupted_ = !receiver_(std::move(ready_.extract(ready_.begin()).mapped()));
        ++received_;
    }
}

// After an interruption the reports that waited for others wait no longer.
void WorkerPool::handOnTheRest() {
    for (auto& [index, report] : std::exchange(ready_, {})) {
        receiver_(std::move(report));
        ++received_;
    }
}

}  // namespace pkgvet::cli
