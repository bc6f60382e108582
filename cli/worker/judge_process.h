// A judge as seen by the program.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "cli/worker/template_process.h"
#include "pkgvet/base/descriptor.h"

namespace pkgvet::cli {

// How a judge ended.
struct JudgeEnd {
    int status = 0;             // as of waitpid
    bool saidTooMuch = false;   // more than the limit on its report; then there is no answer
    std::string answer;         // all that it said
    std::string lastErrorLine;  // the last line on standard error
};

// A judge that is at work on one package. What it started ends with it, and what was made for it is
// removed. The process that has judges must adopt orphans (adoptOrphans) to see them end.
class JudgeProcess {
public:
    // Throws std::system_error when no process can be had. The template outlives the judge.
    JudgeProcess(TemplateProcess* from, int package, int scratch, std::size_t mostSaid);
    JudgeProcess(const JudgeProcess&) = delete;
    JudgeProcess(JudgeProcess&&) = delete;
    JudgeProcess& operator=(const JudgeProcess&) = delete;
    JudgeProcess& operator=(JudgeProcess&&) = delete;
    ~JudgeProcess();

    // Both are readable when the judge has spoken.
    int answerDescriptor() const { return answer_.get(); }
    int errorDescriptor() const { return errors_.get(); }
    // What was made for it outside its world.
    const std::vector<std::string>& directories() const { return judge_.directories; }

    // Takes in what there is to read.
    void read();
    // Whether the judge has come to its end: it has said all that it will ever say.
    bool isSilent() const { return silent_; }

    // Kills what is left of it, waits until nothing is, and clears up behind it; called once.
    JudgeEnd end();

private:
    void readAnswer();
    void readErrors();
    void readRest();

    TemplateProcess* template_;
    std::size_t mostSaid_;
    StartedJudge judge_;
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
