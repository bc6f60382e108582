// Findings as lines on standard error.
#include "pkgvet/report/logger.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <iostream>

#include "tests/support/base/captured_log.h"

namespace {

// Colour is one switch for the whole process, so each test that turns it on turns it off again.
class ColoredLogger {
public:
    ColoredLogger() { Logger::enableColor(true); }
    ColoredLogger(const ColoredLogger&) = delete;
    ColoredLogger(ColoredLogger&&) = delete;
    ColoredLogger& operator=(const ColoredLogger&) = delete;
    ColoredLogger& operator=(ColoredLogger&&) = delete;
    ~ColoredLogger() { Logger::enableColor(false); }
};

TEST(Logger, EachLevelHasItsLabelAndColour) {
    struct Case {
        LogLevel level;
        std::string plain;
        std::string colored;
    };
    const Case cases[] = {
        {LogLevel::Warning, "(WARNING)\tx\n", "\033[33m(WARNING)\t\033[mx\n"},
        {LogLevel::Error, "(ERROR)\t\tx\n", "\033[31m(ERROR)\t\t\033[mx\n"},
        {LogLevel::Critical, "(CRITICAL)\tx\n", "\033[31m(CRITICAL)\t\033[mx\n"},
        {LogLevel::Info, "(INFO)\t\tx\n", "\033[1m(INFO)\t\t\033[mx\n"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.plain);
        CapturedLog log;
        Logger::log(test.level, {"x"});
        EXPECT_EQ(log.text(), test.plain);
        log.clear();
        const ColoredLogger colored;
        Logger::log(test.level, {"x"});
        EXPECT_EQ(log.text(), test.colored);
    }
}

TEST(Logger, LevelsHaveTheirFixedValues) {
    EXPECT_EQ(static_cast<unsigned>(LogLevel::Warning), 0U);
    EXPECT_EQ(static_cast<unsigned>(LogLevel::Error), 1U);
    EXPECT_EQ(static_cast<unsigned>(LogLevel::Critical), 2U);
    EXPECT_EQ(static_cast<unsigned>(LogLevel::Info), 3U);
}

TEST(Logger, WritesNothingForALevelOutsideTheEnumeration) {
    CapturedLog log;
    const ColoredLogger colored;
    Logger::log(static_cast<LogLevel>(4), {"x"});
    Logger::log(static_cast<LogLevel>(-1), {"x"});
    EXPECT_EQ(log.text(), "");
}

TEST(Logger, PiecesFollowEachOtherWithoutSeparator) {
    const std::string subject = "libx.so";
    CapturedLog log;
    Logger::log(LogLevel::Error, {"[", subject, "] Library is not allowed"});
    EXPECT_EQ(log.text(), "(ERROR)\t\t[libx.so] Library is not allowed\n");
}

TEST(Logger, EmptyListIsALabelAlone) {
    CapturedLog log;
    Logger::log(LogLevel::Info, {});
    EXPECT_EQ(log.text(), "(INFO)\t\t\n");
}

TEST(Logger, EmptyPiecesAddNothing) {
    CapturedLog log;
    Logger::log(LogLevel::Warning, {"", "a", "", "b", std::string_view()});
    EXPECT_EQ(log.text(), "(WARNING)\tab\n");
}

TEST(Logger, PiecesAreWrittenByTheirLength) {
    const char unterminated[3] = {'a', 'b', 'c'};
    CapturedLog log;
    Logger::log(LogLevel::Error, {std::string_view(unterminated, 2), std::string_view("x\0y", 3)});
    EXPECT_EQ(log.text(), std::string("(ERROR)\t\tabx\0y\n", 15));
}

TEST(Logger, LineFeedInAPieceIsWrittenAsItStands) {
    CapturedLog log;
    Logger::log(LogLevel::Error, {"one\ntwo"});
    EXPECT_EQ(log.text(), "(ERROR)\t\tone\ntwo\n");
}

TEST(Logger, FieldWidthLeftOnTheStreamPadsNothing) {
    CapturedLog log;
    std::cerr << std::setw(40);
    Logger::log(LogLevel::Error, {"x"});
    std::cerr << std::setw(0);
    EXPECT_EQ(log.text(), "(ERROR)\t\tx\n");
}

TEST(Logger, NothingIsWrittenToStandardOutput) {
    CapturedLog log;
    testing::internal::CaptureStdout();
    Logger::log(LogLevel::Error, {"x"});
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

}  // namespace
