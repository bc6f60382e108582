// The process from which the judges are forked.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "cli/worker/claim.h"
#include "cli/worker/sandbox.h"
#include "cli/worker/template_main.h"
#include "pkgvet/base/descriptor.h"

namespace pkgvet::cli {

// What a judge starts with. The descriptors stay the caller's.
struct JudgeStart {
    int package = -1;  // the package, at its beginning
    int answer = -1;   // for what it says
    int errors = -1;   // for its standard output and standard error
    int scratch = -1;  // a directory to unpack in; -1 for memory
};

// A judge that has been started: a child of the caller, in a process group of its own.
struct StartedJudge {
    pid_t process = -1;
    // Made for it, to be removed behind it; empty where its world has no trace outside.
    std::vector<std::string> directories;
    Claim claim;  // on them
};

// Whether there is such a child, and its directories can be ones that were made for it. What the
// template says is not believed unchecked, as it may be nobody's while the program is the
// superuser's.
bool isCredible(const StartAnswer& answer, const Sandbox& sandbox);

// A process of one thread that has prepared everything, and of which each judge is a copy: nothing
// is executed, linked or read again for a package. It looks into no package. It ends with this
// object, or with the process that made it, and then removes what judges left behind.
class TemplateProcess {
public:
    // The process finds out what cages judges, and then waits to be told to prepare. Throws
    // std::system_error when no process can be had.
    explicit TemplateProcess(const TemplateOptions& options);
    TemplateProcess(const TemplateProcess&) = delete;
    TemplateProcess(TemplateProcess&&) = delete;
    TemplateProcess& operator=(const TemplateProcess&) = delete;
    TemplateProcess& operator=(TemplateProcess&&) = delete;
    ~TemplateProcess();

    // Has it prepare what judges need, and does not wait for that.
    void prepare();
    // Prepares unless that is done. Throws std::system_error when the process could not.
    void waitUntilPrepared();

    // What cages its judges, once it is prepared.
    const Sandbox& sandbox() const { return sandbox_; }

    pid_t process() const { return process_; }
    // Whether it can still start judges.
    bool isAlive() const;

    // Waits until it is prepared. Throws std::system_error when there is no process to be had, or
    // no template any more.
    StartedJudge start(const JudgeStart& start);
    // Kills the judge and all of its group, the template's help included: a superuser whose rights
    // were cut may not be allowed to signal another user, as whom judges run.
    void kill(pid_t judge);
    // Has to be told when a judge has ended and its directories are removed.
    void finish(pid_t judge);

private:
    StartAnswer ask(const std::vector<int>& descriptors);

    pid_t process_ = -1;
    int patience_;
    Descriptor channel_;
    Sandbox sandbox_;
    bool isAsked_ = false;  // to prepare
    bool isPrepared_ = false;
    bool isBroken_ = false;  // it did not answer as it should
};

}  // namespace pkgvet::cli
