// Starts judges, waits for them and puts their reports in order.
#include "cli/worker/judge_pool.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

#include "cli/worker/claim.h"

namespace pkgvet::cli {

namespace {

using Seconds = std::chrono::duration<double>;

constexpr const char* kNoJudge = "no judge could be started: ";
constexpr const char* kNotAFile = "not a regular file";
constexpr const char* kTooLarge = "the package itself is larger than --max-unpacked allows";
// Reports that wait for one before them. Beyond that no package is begun, since memory is not to
// grow with the input.
constexpr std::size_t kMostWaiting = 1000;
// After which a person looks whether anything has moved.
constexpr Seconds kProgressInterval{0.5};
constexpr double kMilliseconds = 1000;

// What could not even be begun took no time.
PackageReport notJudged(const Cause& cause) {
    PackageReport report;
    report.seconds = 0;
    report.setCause(cause);
    return report;
}

// The package, opened once for all that is said of it. A pipe is not waited for. It is judged by a
// copy in memory, which a file of holes would fill up.
Descriptor openPackage(const std::string& path, std::uint64_t mostBytes, Cause* cause) {
    Descriptor package(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    struct stat status {};
    if (!package.isOpen() || fstat(package.get(), &status) != 0) {
        *cause = {CauseCode::Unreadable, std::strerror(errno)};
        return Descriptor();
    }
    if (!S_ISREG(status.st_mode)) {
        *cause = {CauseCode::Unreadable, kNotAFile};
        return Descriptor();
    }
    if (static_cast<std::uint64_t>(status.st_size) > mostBytes) {
        *cause = {CauseCode::TooLarge, kTooLarge};
        return Descriptor();
    }
    return package;
}

}  // namespace

JudgePool::JudgePool(std::vector<Input> inputs, PoolOptions options,
                     std::unique_ptr<TemplateProcess> from, Receiver receiver, Progress* progress)
    : inputs_(std::move(inputs)),
      options_(std::move(options)),
      receiver_(std::move(receiver)),
      progress_(progress),
      template_(std::move(from)) {
    adoptOrphans();
    if (!options_.scratch.empty()) {
        clearAbandoned(options_.scratch);
    }
    template_->waitUntilPrepared();
}

bool JudgePool::run() {
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
        conclude(&job, Stop::Interruption);
    }
    jobs_.clear();
    handOnTheRest();
    progress_->clear();
    return complete;
}

int JudgePool::signal() {
    signal_ = signal_ == 0 ? signals_.take() : signal_;
    return signal_;
}

void JudgePool::startJobs() {
    while (!interrupted_ && jobs_.size() < options_.jobs && next_ < inputs_.size() &&
           ready_.size() < kMostWaiting) {
        if (!start(next_)) {
            return;
        }
        ++next_;
    }
}

// False when there may be room for it once one of the others has ended.
bool JudgePool::start(std::size_t index) {
    if (!inputs_[index].cause.empty()) {
        keep(index, notJudged({CauseCode::Unreadable, inputs_[index].cause}));
        return true;
    }
    if (isRecalled(index)) {
        return true;
    }
    Cause cause;
    const Descriptor package =
        openPackage(inputs_[index].path, options_.judging.limits.unpackedBytes, &cause);
    if (!package.isOpen()) {
        keep(index, notJudged(cause));
        return true;
    }
    try {
        ScratchDirectory scratch(options_.scratch, template_->sandbox());
        auto judge = std::make_unique<JudgeProcess>(
            template_.get(), package.get(), scratch.descriptor(), options_.judging.limits.report);
        jobs_.push_back({index, std::move(scratch), std::move(judge), Clock::now()});
        return true;
    } catch (const std::system_error& error) {
        if (!jobs_.empty()) {
            return false;
        }
        renewTemplate();
        keep(index, notJudged({CauseCode::Crashed, kNoJudge + error.code().message()}));
        return true;
    }
}

// Many packages can be known one after the other, while nobody waits for a judge or a signal.
bool JudgePool::isRecalled(std::size_t index) {
    if (!options_.recall) {
        return false;
    }
    interrupted_ = interrupted_ || signal() != 0;
    std::optional<PackageReport> known = options_.recall(inputs_[index]);
    if (!known) {
        return false;
    }
    keep(index, std::move(*known));
    return true;
}

// A template that something killed costs one package and not those behind it.
void JudgePool::renewTemplate() {
    if (template_->isAlive()) {
        return;
    }
    options_.judging.decided = template_->sandbox();
    try {
        auto renewed = std::make_unique<TemplateProcess>(options_.judging);
        renewed->waitUntilPrepared();
        template_ = std::move(renewed);
    } catch (const std::system_error&) {
        // The former one goes on to refuse.
    }
}

// In milliseconds, as poll() takes it.
int JudgePool::waitingTime() const {
    const Clock::time_point now = Clock::now();
    Seconds least =
        progress_->isShown() ? kProgressInterval : Seconds(options_.judging.limits.seconds);
    for (const Job& job : jobs_) {
        least =
            std::min(least, Seconds(options_.judging.limits.seconds) - Seconds(now - job.start));
    }
    // One more, or the last fraction would be spent in a loop.
    return static_cast<int>(std::clamp(least.count() * kMilliseconds, 0.0, 1e9)) + 1;
}

void JudgePool::wait() {
    std::vector<struct pollfd> descriptors = {{signals_.descriptor(), POLLIN, 0}};
    for (const Job& job : jobs_) {
        descriptors.push_back({job.process->answerDescriptor(), POLLIN, 0});
        descriptors.push_back({job.process->errorDescriptor(), POLLIN, 0});
    }
    poll(descriptors.data(), descriptors.size(), waitingTime());
    interrupted_ = interrupted_ || signal() != 0;
    for (const Job& job : jobs_) {
        job.process->read();
    }
}

void JudgePool::endJobs() {
    for (Job& job : jobs_) {
        // A judge that has said all may do so at the last moment.
        if (job.process->isSilent()) {
            conclude(&job, Stop::None);
        } else if (isOverdue(job)) {
            conclude(&job, Stop::Timeout);
        }
    }
    jobs_.erase(std::remove_if(jobs_.begin(), jobs_.end(),
                               [](const Job& job) { return job.process == nullptr; }),
                jobs_.end());
}

bool JudgePool::isOverdue(const Job& job) const {
    return Seconds(Clock::now() - job.start) >= Seconds(options_.judging.limits.seconds);
}

void JudgePool::conclude(Job* job, Stop stop) {
    const std::vector<std::string> directories = job->process->directories();
    PackageReport report = concludeJudge(job->process->end(), stop, directories, options_.profiles);
    job->process.reset();
    // An interrupted package is as one that was never begun.
    if (stop != Stop::Interruption) {
        report.seconds = Seconds(Clock::now() - job->start).count();
        report.path = inputs_[job->index].path;
        if (options_.finished) {
            options_.finished(report);
        }
        keep(job->index, std::move(report));
    }
}

void JudgePool::keep(std::size_t index, PackageReport report) {
    report.path = inputs_[index].path;
    report.position = inputs_[index].position;
    progress_->countDone();
    ready_.emplace(index, std::move(report));
}

// While whoever reads the reports keeps the program waiting, nobody listens to the judges, and the
// time is not theirs.
void JudgePool::handOn() {
    const Clock::time_point before = Clock::now();
    while (!interrupted_ && !ready_.empty() && ready_.begin()->first == received_) {
        interrupted_ = !receiver_(std::move(ready_.extract(ready_.begin()).mapped()));
        ++received_;
    }
    for (Job& job : jobs_) {
        job.start += Clock::now() - before;
    }
}

// After an interruption the reports that waited for others wait no longer.
void JudgePool::handOnTheRest() {
    for (auto& [index, report] : std::exchange(ready_, {})) {
        receiver_(std::move(report));
        ++received_;
    }
}

}  // namespace pkgvet::cli
