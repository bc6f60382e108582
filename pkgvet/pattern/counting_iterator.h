// Limits for the std::regex engine, which has none of its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <regex>

namespace pkgvet {

// What one run of the engine may still take.
struct EngineBudget {
    std::size_t steps;
    std::size_t stepsOfACopy;
    std::size_t stepsOfAPlace;
    std::uintptr_t lowestFrame;

    void take(std::size_t count) {
        if (steps < count) {
            throw std::regex_error(std::regex_constants::error_complexity);
        }
        steps -= count;
        if (currentFrame() < lowestFrame) {
            throw std::regex_error(std::regex_constants::error_stack);
        }
    }

    // The stack grows downwards. A local variable would not do: address sanitizers move those.
    static std::uintptr_t currentFrame() {
        return reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    }
};

// Walks a text for the engine, which has no limits of its own, and holds it to a budget: it looks
// at the text, copies a place in it or goes on to the next one for whatever it does, save for
// trying alternatives. The engine also makes iterators out of nothing, for groups that took no
// part.
//
// Not in an unnamed namespace: of a local type, the engine's functions are merged into one whose
// frame is four times as large, and it is by its frames that the engine fails.
class CountingIterator {
public:
    using iterator_category = std::bidirectional_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    CountingIterator() = default;
    CountingIterator(const char* position, EngineBudget* budget)
        : position_(position), budget_(budget) {}
    CountingIterator(const CountingIterator& other)
        : position_(other.position_), budget_(other.budget_) {
        takeCopy();
    }
    // NOLINTNEXTLINE(bugprone-unhandled-self-assignment): two values, which may be their own
    CountingIterator& operator=(const CountingIterator& other) {
        position_ = other.position_;
        budget_ = other.budget_;
        takeCopy();
        return *this;
    }
    CountingIterator(CountingIterator&&) noexcept = default;
    CountingIterator& operator=(CountingIterator&&) noexcept = default;
    ~CountingIterator() = default;

    reference operator*() const {
        takeLook();
        return *position_;
    }
    CountingIterator& operator++() {
        if (budget_ != nullptr) {
            budget_->take(budget_->stepsOfAPlace);
        }
        ++position_;
        return *this;
    }
    CountingIterator operator++(int) { return {position_++, budget_}; }
    CountingIterator& operator--() {
        --position_;
        return *this;
    }
    CountingIterator operator--(int) { return {position_--, budget_}; }
    bool operator==(const CountingIterator& other) const {
        takeLook();
        return position_ == other.position_;
    }

private:
    void takeLook() const {
        if (budget_ != nullptr) {
            budget_->take(1);
        }
    }
    void takeCopy() const {
        if (budget_ != nullptr) {
            budget_->take(budget_->stepsOfACopy);
        }
    }

    const char* position_ = nullptr;
    EngineBudget* budget_ = nullptr;
};

}  // namespace pkgvet
