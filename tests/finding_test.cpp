// Findings taken back from the library's lines.
#include "cli/finding.h"

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>

#include "pkgvet/report/logger.h"

namespace {

using pkgvet::cli::Finding;
using pkgvet::cli::FindingCapture;
using pkgvet::cli::Severity;

TEST(FindingCapture, EachLevelOfTheLoggerIsASeverity) {
    FindingCapture capture(std::cerr);
    Logger::log(LogLevel::Warning, {"w"});
    Logger::log(LogLevel::Error, {"e"});
    Logger::log(LogLevel::Critical, {"c"});
    Logger::log(LogLevel::Info, {"i"});
    const std::vector<Finding> findings = capture.take();
    ASSERT_EQ(findings.size(), 4U);
    EXPECT_EQ(findings[0].severity, Severity::Warning);
    EXPECT_EQ(findings[1].severity, Severity::Error);
    EXPECT_EQ(findings[2].severity, Severity::Critical);
    EXPECT_EQ(findings[3].severity, Severity::Info);
    EXPECT_EQ(findings[1].message, "e");
}

TEST(FindingCapture, LineFeedInsideALineMakesNoSecondFinding) {
    FindingCapture capture(std::cerr);
    Logger::log(LogLevel::Warning, {"[", "x\n(ERROR)\t\tforged", "] y"});
    const std::vector<Finding> findings = capture.take();
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0].severity, Severity::Warning);
    EXPECT_EQ(findings[0].message, "[x\n(ERROR)\t\tforged] y");
}

TEST(FindingCapture, LineWithoutLabelIsARemark) {
    FindingCapture capture(std::cerr);
    std::cerr << "ExecDBus error: No such file or directory" << std::endl;
    const std::vector<Finding> findings = capture.take();
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0].severity, Severity::Info);
    EXPECT_EQ(findings[0].message, "ExecDBus error: No such file or directory");
}

TEST(FindingCapture, StreamIsAsBeforeAfterwards) {
    std::ostringstream stream;
    stream.setf(std::ios_base::unitbuf);
    {
        const FindingCapture capture(stream);
        stream << "captured" << std::endl;
    }
    stream << "shown";
    EXPECT_EQ(stream.str(), "shown");
    EXPECT_TRUE(stream.flags() & std::ios_base::unitbuf);
}

}  // namespace
