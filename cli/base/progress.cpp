// Shows how far a run has come.
#include "cli/base/progress.h"

#include <stdlib.h>
#include <unistd.h>

#include <cmath>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <string_view>

namespace pkgvet::cli {

namespace {

constexpr std::string_view kDumb = "dumb";
constexpr std::string_view kEraseLine = "\r\033[K";
constexpr std::chrono::milliseconds kInterval{100};
constexpr long kMinute = 60;

// A terminal that can erase a line.
bool isTerminal() {
    const char* kind = getenv("TERM");
    return isatty(STDERR_FILENO) == 1 && kind != nullptr && kind != kDumb;
}

}  // namespace

std::string progressText(std::size_t done, std::size_t total, std::size_t rejected,
                         double seconds) {
    std::ostringstream text;
    text << done << '/' << total << " packages, " << rejected << " rejected";
    // The time left follows from the packages that are done, so there has to be one.
    if (done > 0 && seconds > 0) {
        const double rate = static_cast<double>(done) / seconds;
        const long left = std::lround(static_cast<double>(total - done) / rate);
        text << std::fixed << std::setprecision(1) << ", " << rate << "/s, " << left / kMinute
             << ':' << std::setw(2) << std::setfill('0') << left % kMinute << " left";
    }
    return text.str();
}

Progress::Progress(std::size_t total)
    : total_(total), shown_(isTerminal()), start_(Clock::now()), drawn_(start_) {}

void Progress::draw() {
    const Clock::time_point now = Clock::now();
    // A line that was cleared comes back at once.
    if (!shown_ || (visible_ && now - drawn_ < kInterval)) {
        return;
    }
    const std::chrono::duration<double> elapsed = now - start_;
    std::cerr << kEraseLine << progressText(done_, total_, rejected_, elapsed.count())
              << std::flush;
    drawn_ = now;
    visible_ = true;
}

void Progress::clear() {
    if (visible_) {
        std::cerr << kEraseLine << std::flush;
        visible_ = false;
    }
}

}  // namespace pkgvet::cli
