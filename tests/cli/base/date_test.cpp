// Dates of the calendar.
#include "cli/base/date.h"

#include <gtest/gtest.h>

namespace {

using pkgvet::cli::daysBetween;
using pkgvet::cli::formatDate;
using pkgvet::cli::parseDate;

TEST(Date, OneFormIsRead) {
    for (const char* text : {"", "2026-1-05", " 2026-01-05", "2026-01-05 ", "2026-02-30",
                             "2026-13-01", "2026-00-10", "26-01-05", "2026/01/05"}) {
        EXPECT_EQ(parseDate(text), std::nullopt) << text;
    }
    EXPECT_EQ(formatDate(*parseDate("2028-02-29")), "2028-02-29");
}

TEST(Date, DaysBetweenFollowTheCalendar) {
    struct Case {
        const char* first;
        const char* last;
        int days;
    };
    const Case cases[] = {{"2026-01-31", "2026-01-31", 0},
                          {"2026-12-31", "2027-01-01", 1},
                          {"2028-02-28", "2028-03-01", 2},
                          {"2026-03-01", "2026-02-01", -28}};
    for (const Case& test : cases) {
        SCOPED_TRACE(test.first);
        EXPECT_EQ(daysBetween(*parseDate(test.first), *parseDate(test.last)), test.days);
    }
}

}  // namespace
