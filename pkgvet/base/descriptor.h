// The owner of a file descriptor.
#pragma once

#include <unistd.h>

#include <utility>

namespace pkgvet {

// Closes what it holds. -1 stands for none.
class Descriptor {
public:
    explicit Descriptor(int value = -1) : value_(value) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor(Descriptor&& other) noexcept : value_(std::exchange(other.value_, -1)) {}
    Descriptor& operator=(const Descriptor&) = delete;
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(value_, other.value_);
        return *this;
    }
    ~Descriptor() { reset(); }

    int get() const { return value_; }
    bool isOpen() const { return value_ >= 0; }
    // Gives the descriptor up to the caller, who closes it.
    int release() { return std::exchange(value_, -1); }
    void reset() {
        if (isOpen()) {
            close(release());
        }
    }

private:
    int value_;
};

}  // namespace pkgvet
