// Passes descriptors over a socket.
#include "cli/worker/channel.h"

#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <system_error>

namespace pkgvet::cli {

namespace {

// Room for the descriptors of one message, aligned as the kernel wants it.
struct alignas(cmsghdr) ControlBuffer {
    std::array<char, CMSG_SPACE(sizeof(int) * kMaxParcelDescriptors)> bytes{};
};

void attach(std::span<const int> descriptors, msghdr* header) {
    header->msg_controllen = CMSG_SPACE(descriptors.size_bytes());
    cmsghdr* control = CMSG_FIRSTHDR(header);
    control->cmsg_level = SOL_SOCKET;
    control->cmsg_type = SCM_RIGHTS;
    control->cmsg_len = CMSG_LEN(descriptors.size_bytes());
    std::memcpy(CMSG_DATA(control), descriptors.data(), descriptors.size_bytes());
}

std::vector<Descriptor> detach(msghdr* header) {
    std::vector<Descriptor> descriptors;
    for (cmsghdr* control = CMSG_FIRSTHDR(header); control != nullptr;
         control = CMSG_NXTHDR(header, control)) {
        if (control->cmsg_level != SOL_SOCKET || control->cmsg_type != SCM_RIGHTS) {
            continue;
        }
        const std::size_t count = (control->cmsg_len - CMSG_LEN(0)) / sizeof(int);
        for (std::size_t i = 0; i < count; ++i) {
            int descriptor = -1;
            std::memcpy(&descriptor, CMSG_DATA(control) + i * sizeof(int), sizeof(int));
            descriptors.emplace_back(descriptor);
        }
    }
    return descriptors;
}

}  // namespace

Channel::Channel() {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        throw std::system_error(errno, std::generic_category(), "cannot make a socket");
    }
    one = Descriptor(ends[0]);
    other = Descriptor(ends[1]);
}

bool sendParcel(int socket, std::string_view bytes, std::span<const int> descriptors) {
    iovec content{const_cast<char*>(bytes.data()), bytes.size()};
    ControlBuffer control;
    msghdr header{};
    header.msg_iov = &content;
    header.msg_iovlen = 1;
    if (!descriptors.empty()) {
        header.msg_control = control.bytes.data();
        attach(descriptors, &header);
    }
    ssize_t size = -1;
    do {
        size = sendmsg(socket, &header, MSG_NOSIGNAL);
    } while (size < 0 && errno == EINTR);
    return size >= 0;
}

std::optional<Parcel> receiveParcel(int socket) {
    Parcel parcel;
    parcel.bytes.resize(kMaxParcelSize);
    iovec content{parcel.bytes.data(), parcel.bytes.size()};
    ControlBuffer control;
    msghdr header{};
    header.msg_iov = &content;
    header.msg_iovlen = 1;
    header.msg_control = control.bytes.data();
    header.msg_controllen = control.bytes.size();
    ssize_t size = -1;
    do {
        size = recvmsg(socket, &header, MSG_CMSG_CLOEXEC);
    } while (size < 0 && errno == EINTR);
    if (size <= 0) {
        return std::nullopt;
    }
    parcel.bytes.resize(static_cast<std::size_t>(size));
    parcel.descriptors = detach(&header);
    return parcel;
}

}  // namespace pkgvet::cli
