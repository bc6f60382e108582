// Reads and writes dates, and asks for the present one.
#include "cli/base/date.h"

#include <charconv>
#include <cstdio>
#include <ctime>

namespace pkgvet::cli {

namespace {

constexpr std::string_view kForm = "0000-00-00";  // 0 stands for any digit

// The C library reads other forms too, such as "2026-1-5" and " 2026-01-05".
bool hasForm(std::string_view text) {
    if (text.size() != kForm.size()) {
        return false;
    }
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isDigit = text[i] >= '0' && text[i] <= '9';
        if (kForm[i] == '0' ? !isDigit : text[i] != kForm[i]) {
            return false;
        }
    }
    return true;
}

unsigned numberAt(std::string_view text, std::size_t position, std::size_t length) {
    unsigned number = 0;
    std::from_chars(text.data() + position, text.data() + position + length, number);
    return number;
}

Date dateOf(unsigned year, unsigned month, unsigned day) {
    return {std::chrono::year(static_cast<int>(year)), std::chrono::month(month),
            std::chrono::day(day)};
}

}  // namespace

std::optional<Date> parseDate(std::string_view text) {
    if (!hasForm(text)) {
        return std::nullopt;
    }
    const Date date = dateOf(numberAt(text, 0, 4), numberAt(text, 5, 2), numberAt(text, 8, 2));
    return date.ok() ? std::optional(date) : std::nullopt;
}

std::string formatDate(const Date& date) {
    char text[sizeof "-32768-255-255"];  // the extremes of what the members can hold
    const int length =
        std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(date.year()),
                      static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
    return {text, static_cast<std::size_t>(length)};
}

int daysBetween(const Date& first, const Date& last) {
    const auto days = std::chrono::sys_days(last) - std::chrono::sys_days(first);
    return static_cast<int>(days.count());
}

Date localDate() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return dateOf(static_cast<unsigned>(local.tm_year + 1900),
                  static_cast<unsigned>(local.tm_mon + 1), static_cast<unsigned>(local.tm_mday));
}

}  // namespace pkgvet::cli
