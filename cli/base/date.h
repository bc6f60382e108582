// Dates of the calendar.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace pkgvet::cli {

using Date = std::chrono::year_month_day;

// The day that text names in the form "2026-12-31"; nothing for any other form and for a day that
// the calendar does not have.
std::optional<Date> parseDate(std::string_view text);

std::string formatDate(const Date& date);

// How many days lie between, negative when last comes before first.
int daysBetween(const Date& first, const Date& last);

// Today in the time zone of this machine.
Date localDate();

}  // namespace pkgvet::cli
