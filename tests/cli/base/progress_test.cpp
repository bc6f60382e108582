// The line that says how far a run has come.
#include "cli/base/progress.h"

#include <gtest/gtest.h>

#include "tests/support/base/captured_log.h"

namespace {

using pkgvet::cli::Progress;
using pkgvet::cli::progressText;

TEST(Progress, TextTellsDoneTotalRejectedRateAndTimeLeft) {
    struct Case {
        std::size_t done;
        std::size_t total;
        std::size_t rejected;
        double seconds;
        std::string text;
    };
    const Case cases[] = {
        {0, 40, 0, 3, "0/40 packages, 0 rejected"},
        {12, 40, 3, 0, "12/40 packages, 3 rejected"},
        {12, 40, 3, 3, "12/40 packages, 3 rejected, 4.0/s, 0:07 left"},
        {1, 401, 0, 0.5, "1/401 packages, 0 rejected, 2.0/s, 3:20 left"},
        {40, 40, 40, 10, "40/40 packages, 40 rejected, 4.0/s, 0:00 left"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.text);
        EXPECT_EQ(progressText(test.done, test.total, test.rejected, test.seconds), test.text);
    }
}

TEST(Progress, NothingIsShownOffATerminal) {
    const CapturedDescriptor descriptor;
    const CapturedLog log;
    Progress progress(3);
    progress.countDone();
    progress.draw();
    progress.clear();
    EXPECT_FALSE(progress.isShown());
    EXPECT_EQ(log.text(), "");
    EXPECT_EQ(descriptor.text(), "");
}

}  // namespace
