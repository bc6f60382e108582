// Signals that are asked for.
#include "cli/worker/signal_watch.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using pkgvet::cli::endBySignal;
using pkgvet::cli::SignalWatch;

TEST(SignalWatch, TakesEachOfItsSignalsInsteadOfEnding) {
    const auto numbers = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};
    // In the background of a shell, or under nohup, some are ignored.
    for (const int number : numbers) {
        signal(number, SIG_DFL);
    }
    SignalWatch watch;
    EXPECT_EQ(watch.take(), 0);
    for (const int number : numbers) {
        SCOPED_TRACE(number);
        kill(getpid(), number);
        EXPECT_EQ(watch.take(), number);
        EXPECT_EQ(watch.take(), 0);
    }
}

TEST(SignalWatch, LateSignalsCountAsAnswered) {
    {
        const SignalWatch watch;
        kill(getpid(), SIGTERM);
    }
    SUCCEED();
}

TEST(SignalWatch, IgnoredSignalsStayIgnored) {
    const auto former = signal(SIGHUP, SIG_IGN);
    {
        SignalWatch watch;
        kill(getpid(), SIGHUP);
        EXPECT_EQ(watch.take(), 0);
    }
    signal(SIGHUP, former);
}

TEST(SignalWatch, ProcessEndsByTheSignalThatItWasTold) {
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE}) {
        SCOPED_TRACE(number);
        const pid_t child = fork();
        if (child == 0) {
            const SignalWatch watch;
            signal(number, SIG_IGN);
            endBySignal(number);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFSIGNALED(status));
        EXPECT_EQ(WTERMSIG(status), number);
        EXPECT_FALSE(WCOREDUMP(status));
    }
}

}  // namespace
