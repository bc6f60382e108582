// Starts judges and hears them out.
#include "cli/worker/judge_process.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>

#include <array>
#include <cerrno>
#include <utility>

#include "cli/worker/claim.h"
#include "cli/worker/pipe.h"
#include "cli/worker/wait.h"

namespace pkgvet::cli {

namespace {

constexpr std::size_t kPieceSize = 65536;
// No last line is longer.
constexpr std::size_t kTailSize = 4096;

Pipe makeReadablePipe() {
    Pipe pipe = makePipe();
    fcntl(pipe.reading.get(), F_SETFL, O_NONBLOCK);
    return pipe;
}

// Appends what there is to read to text. False at the end of the pipe.
bool readPiece(int descriptor, std::string* text) {
    std::array<char, kPieceSize> piece{};
    const ssize_t size = read(descriptor, piece.data(), piece.size());
    if (size > 0) {
        text->append(piece.data(), static_cast<std::size_t>(size));
    }
    return size > 0 || (size < 0 && (errno == EAGAIN || errno == EINTR));
}

std::string lastLine(std::string text) {
    while (text.ends_with('\n')) {
        text.pop_back();
    }
    return text.substr(text.rfind('\n') + 1);
}

void waitForGroup(pid_t group) {
    while (waitpid(-group, nullptr, 0) > 0 || errno == EINTR) {
    }
}

}  // namespace

JudgeProcess::JudgeProcess(TemplateProcess* from, int package, int scratch, std::size_t mostSaid)
    : template_(from), mostSaid_(mostSaid) {
    Pipe answer = makeReadablePipe();
    Pipe errors = makeReadablePipe();
    judge_ = from->start({package, answer.writing.get(), errors.writing.get(), scratch});
    answer_ = std::move(answer.reading);
    errors_ = std::move(errors.reading);
}

JudgeProcess::~JudgeProcess() {
    if (judge_.process >= 0) {
        end();
    }
}

void JudgeProcess::read() {
    readAnswer();
    readErrors();
}

void JudgeProcess::readAnswer() {
    silent_ = silent_ || !readPiece(answer_.get(), &said_) || said_.size() > mostSaid_;
}

void JudgeProcess::readErrors() {
    // At its end it would be readable for ever.
    if (errors_.isOpen() && !readPiece(errors_.get(), &errorTail_)) {
        errors_.reset();
    }
    if (errorTail_.size() > kTailSize) {
        errorTail_.erase(0, errorTail_.size() - kTailSize);
    }
}

void JudgeProcess::readRest() {
    // A process that left the group may hold the pipe open: a read that yields nothing is the end.
    std::size_t before = 0;
    do {
        before = said_.size();
        readAnswer();
    } while (!silent_ && said_.size() > before);
    readErrors();
}

JudgeEnd JudgeProcess::end() {
    const pid_t process = std::exchange(judge_.process, -1);
    template_->kill(process);
    JudgeEnd end;
    end.status = waitForEnd(process);
    waitForGroup(process);
    readRest();
    if (!judge_.directories.empty()) {
        removeClaimed(judge_.directories.back(), judge_.directories.front());
    }
    template_->finish(process);
    end.saidTooMuch = said_.size() > mostSaid_;
    if (!end.saidTooMuch) {
        end.answer = std::move(said_);
    }
    end.lastErrorLine = lastLine(errorTail_);
    return end;
}

void adoptOrphans() {
    // Where this is ignored, which is inherited, nothing can be waited for.
    signal(SIGCHLD, SIG_DFL);
    prctl(PR_SET_CHILD_SUBREAPER, 1);
}

}  // namespace pkgvet::cli
