// Messages with descriptors between two processes.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "pkgvet/base/descriptor.h"

namespace pkgvet::cli {

// The most bytes and descriptors that one message holds.
inline constexpr std::size_t kMaxParcelSize = 4096;
inline constexpr std::size_t kMaxParcelDescriptors = 4;

struct Parcel {
    std::string bytes;
    std::vector<Descriptor> descriptors;
};

// The two ends of a socket that keeps messages apart. Throws std::system_error.
struct Channel {
    Channel();
    Descriptor one;
    Descriptor other;
};

// Sends one message, whole or not at all. False when nobody is there to take it.
bool sendParcel(int socket, std::string_view bytes, std::span<const int> descriptors = {});

// Plain data as a message.
template <typename Data>
std::string_view bytesOf(const Data& data) {
    return {reinterpret_cast<const char*>(&data), sizeof data};
}

// Waits for one message. Nothing once the other end is gone.
std::optional<Parcel> receiveParcel(int socket);

}  // namespace pkgvet::cli
