// Signals that are asked for.
#include "cli/worker/signal_watch.h"

#include <gtest/gtest.h>
#include <signal.h>

namespace {

using pkgvet::cli::SignalWatch;

TEST(SignalWatch, TakesEachOfItsSignalsInsteadOfEnding) {
    SignalWatch watch;
    EXPECT_FALSE(watch.take());
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        SCOPED_TRACE(number);
        kill(getpid(), number);
        EXPECT_TRUE(watch.take());
        EXPECT_FALSE(watch.take());
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
        EXPECT_FALSE(watch.take());
    }
    signal(SIGHUP, former);
}

}  // namespace
