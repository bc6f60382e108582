// Standard output that the program can let go of.
#pragma once

#include <array>
#include <streambuf>

namespace pkgvet::cli {

// As long as it lives, std::cout writes through it. Where a reader has stopped reading, a signal
// that asks the program to end makes writing fail: such signals are blocked, to be answered in
// order, and the program would wait for the reader all the same. Terminals are left alone.
class StandardOutput : private std::streambuf {
public:
    StandardOutput();
    StandardOutput(const StandardOutput&) = delete;
    StandardOutput(StandardOutput&&) = delete;
    StandardOutput& operator=(const StandardOutput&) = delete;
    StandardOutput& operator=(StandardOutput&&) = delete;
    ~StandardOutput() override;

private:
    int_type overflow(int_type c) override;
    int sync() override;

    std::array<char, 65536> buffer_;
    std::streambuf* former_ = nullptr;
};

}  // namespace pkgvet::cli
