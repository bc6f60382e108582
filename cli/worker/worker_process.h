// A worker as seen by the process that started it.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "pkgvet/base/descriptor.h"

namespace pkgvet::cli {

// How a worker ended.
struct WorkerEnd {
    int status = 0;             // as of waitpid
    std::string answer;         // all that it said on the pipe; empty when that was too much
    std::string lastErrorLine;  // the last line on standard error
};

// Runs the program anew in a process group of its own, with its standard error led here. The tools
// that it starts end with it. The process that makes workers must adopt orphans (adoptOrphans) to
// see them end.
class WorkerProcess {
public:
    // Throws std::system_error when no process can be had.
    explicit WorkerProcess(const std::vector<std::string>& arguments);
    WorkerProcess(const WorkerProcess&) = delete;
    WorkerProcess(WorkerProcess&&) = delete;
    WorkerProcess& operator=(const WorkerProcess&) = delete;
    WorkerProcess& operator=(WorkerProcess&&) = delete;
    ~WorkerProcess();

    // Both are readable when the worker has spoken.
    int answerDescriptor() const { return answer_.get(); }
    int errorDescriptor() const { return errors_.get(); }

    // Takes in what there is to read.
    void read();
    // Whether the worker has come to its end: it has said all that it will ever say.
    bool isSilent() const { return silent_; }

    // Kills what is left of the group and waits until nothing is; called once.
    WorkerEnd end();

private:
    void readAnswer();
    void readErrors();
    void readRest();

    pid_t process_ = -1;
    Descriptor answer_;
    Descriptor errors_;
    bool silent_ = false;
    std::string said_;
    std::string errorTail_;
};

// From now on the orphans among this process's descendants become its children, and children can be
// waited for.
void adoptOrphans();

}  // namespace pkgvet::cli
