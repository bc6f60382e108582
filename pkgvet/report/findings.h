// What rules report through.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string_view>

#include "pkgvet/report/logger.h"
#include "pkgvet/report/message.h"

namespace pkgvet {

inline constexpr std::uint32_t kViolation = 1;     // rejects while validation is enabled
inline constexpr std::uint32_t kGraveFinding = 2;  // rejects in any case

// The sink that all rules on a package share. Each finding goes out through Logger at once, so that
// lines stand in the order in which the rules found them. The object keeps only whether the package
// is to be rejected, and that never changes back.
class Findings {
public:
    // What fills the places of a message, in their order.
    using Texts = std::initializer_list<std::string_view>;

    // An error, which rejects the package while validation is enabled.
    void violation(const Message& message, Texts texts = {});
    // A finding that rejects the package in any case. The two rules that have one write it at
    // different levels.
    void grave(LogLevel level, const Message& message, Texts texts = {});
    // Lines that reject nothing.
    void warning(const Message& message, Texts texts = {});
    void info(const Message& message, Texts texts = {});

    // The bits of what was found, kViolation and kGraveFinding. They are only ever set.
    std::uint32_t failures() const { return failures_; }
    // The verdict.
    bool isAccepted(bool validationEnabled) const;

private:
    std::uint32_t failures_ = 0;
};

}  // namespace pkgvet
