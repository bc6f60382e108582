// The library's lines, caught piece by piece.
#include "cli/judge/finding_capture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iostream>
#include <sstream>
#include <utility>
#include <vector>

#include "pkgvet/report/logger.h"

namespace {

using pkgvet::cli::FindingCapture;
using pkgvet::cli::LogLine;
using pkgvet::cli::Severity;
using testing::ElementsAre;

// Keeps the lines that are caught.
class LineCapture {
public:
    std::vector<LogLine> take() { return std::exchange(lines_, {}); }

private:
    std::vector<LogLine> lines_;
    FindingCapture capture_{std::cerr, [this](const LogLine& line) { lines_.push_back(line); }};
};

TEST(FindingCapture, EachLevelOfTheLoggerIsASeverity) {
    LineCapture capture;
    Logger::log(LogLevel::Warning, {"w"});
    Logger::log(LogLevel::Error, {"e"});
    Logger::log(LogLevel::Critical, {"c"});
    Logger::log(LogLevel::Info, {"i"});
    const std::vector<LogLine> lines = capture.take();
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_EQ(lines[0].severity, Severity::Warning);
    EXPECT_EQ(lines[1].severity, Severity::Error);
    EXPECT_EQ(lines[2].severity, Severity::Critical);
    EXPECT_EQ(lines[3].severity, Severity::Info);
    EXPECT_EQ(lines[1].text(), "e");
}

TEST(FindingCapture, PiecesStayApart) {
    LineCapture capture;
    Logger::log(LogLevel::Error, {"[", "] x", "", "] Library is not allowed"});
    EXPECT_THAT(capture.take().at(0).pieces,
                ElementsAre("[", "] x", "", "] Library is not allowed"));
}

TEST(FindingCapture, LineFeedInsideALineMakesNoSecondLine) {
    LineCapture capture;
    Logger::log(LogLevel::Warning, {"[", "x\n(ERROR)\t\tforged\n", "\n", "] y"});
    const std::vector<LogLine> lines = capture.take();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].severity, Severity::Warning);
    EXPECT_EQ(lines[0].text(), "[x\n(ERROR)\t\tforged\n\n] y");
}

TEST(FindingCapture, LineWithoutLabelIsARemark) {
    LineCapture capture;
    std::cerr << "ExecDBus error: "
              << "No such file or directory" << std::endl;
    const std::vector<LogLine> lines = capture.take();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].severity, Severity::Info);
    EXPECT_EQ(lines[0].text(), "ExecDBus error: No such file or directory");
}

TEST(FindingCapture, StreamIsAsBeforeAfterwards) {
    std::ostringstream stream;
    stream.setf(std::ios_base::unitbuf);
    {
        const FindingCapture capture(stream, [](const LogLine&) {});
        stream << "captured" << std::endl;
    }
    stream << "shown";
    EXPECT_EQ(stream.str(), "shown");
    EXPECT_TRUE(stream.flags() & std::ios_base::unitbuf);
}

}  // namespace
