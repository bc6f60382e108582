// How far a run has come, for a person who waits.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace pkgvet::cli {

// "12/40 packages, 3 rejected, 4.1/s, 0:07 left".
std::string progressText(std::size_t done, std::size_t total, std::size_t rejected, double seconds);

// One line on standard error that is written over and over, and nothing where that is not a
// terminal. Whoever writes to the terminal clears it first.
class Progress {
public:
    explicit Progress(std::size_t total);

    bool isShown() const { return shown_; }
    void countDone() { ++done_; }
    void countRejected() { ++rejected_; }
    // Shows the line; not more often than a person can read, unless it has been cleared.
    void draw();
    void clear();

private:
    using Clock = std::chrono::steady_clock;

    std::size_t total_;
    bool shown_;
    Clock::time_point start_;
    Clock::time_point drawn_;
    bool visible_ = false;
    std::size_t done_ = 0;
    std::size_t rejected_ = 0;
};

}  // namespace pkgvet::cli
