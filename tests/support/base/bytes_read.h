// How much work reading is, counted by the kernel.
#pragma once

#include <cstdint>
#include <functional>

// The bytes that this process reads from files while action runs.
std::uint64_t bytesReadBy(const std::function<void()>& action);
