// SPDX-License-Identifier: MIT
// Sends and receives frames over sockets that keep their bounds.
#include "hw_linux/tasks/link.h"

#include <array>
#include <cerrno>
#include <cstring>

#include <sys/socket.h>
#include <sys/uio.h>
#include <unistd.h>

namespace hw::tasks {
namespace {

constexpr size_t control_bytes = CMSG_SPACE(4 * sizeof(int)); // more than are ever sent

struct Control {
    alignas(cmsghdr) std::array<char, control_bytes> bytes{};
};

// The first descriptor that came along; any others are closed.
Descriptor take_descriptor(msghdr &message) {
    Descriptor first;
    for (cmsghdr *part = CMSG_FIRSTHDR(&message); part; part = CMSG_NXTHDR(&message, part)) {
        if (part->cmsg_level != SOL_SOCKET || part->cmsg_type != SCM_RIGHTS) continue;
        const size_t count = (part->cmsg_len - CMSG_LEN(0)) / sizeof(int);
        for (size_t i = 0; i < count; ++i) {
            int number = -1;
            std::memcpy(&number, CMSG_DATA(part) + i * sizeof number, sizeof number);
            Descriptor descriptor(number);
            if (!first) first = std::move(descriptor);
        }
    }
    return first;
}

void attach_descriptor(msghdr &message, Control &control, int descriptor) {
    message.msg_control = control.bytes.data();
    message.msg_controllen = CMSG_SPACE(sizeof descriptor);
    cmsghdr *part = CMSG_FIRSTHDR(&message);
    part->cmsg_level = SOL_SOCKET;
    part->cmsg_type = SCM_RIGHTS;
    part->cmsg_len = CMSG_LEN(sizeof descriptor);
    std::memcpy(CMSG_DATA(part), &descriptor, sizeof descriptor);
}

} // namespace

void Descriptor::reset() {
    if (number_ >= 0) close(std::exchange(number_, -1));
}

Sent send_frame(const Descriptor &link, const Frame &frame, int descriptor) {
    Header header = header_of(frame);
    std::array<iovec, 2> parts = {
        {{&header, sizeof header}, {const_cast<uint8_t *>(frame.data.data()), frame.data.size()}}};
    Control control;
    msghdr message{};
    message.msg_iov = parts.data();
    message.msg_iovlen = parts.size();
    if (descriptor >= 0) attach_descriptor(message, control, descriptor);
    ssize_t sent = -1;
    do sent = sendmsg(link.get(), &message, MSG_DONTWAIT | MSG_NOSIGNAL);
    while (sent < 0 && errno == EINTR);
    if (sent >= 0) return Sent::yes;
    return errno == EAGAIN || errno == ENOBUFS ? Sent::no_room : Sent::broken;
}

Received receive_frame(const Descriptor &link, Arrival &arrival) {
    static thread_local std::array<uint8_t, most_frame> buffer;
    iovec part = {buffer.data(), buffer.size()};
    Control control;
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control.bytes.data();
    message.msg_controllen = control.bytes.size();
    ssize_t got = -1;
    do got = recvmsg(link.get(), &message, MSG_DONTWAIT | MSG_CMSG_CLOEXEC);
    while (got < 0 && errno == EINTR);
    if (got < 0 && errno == EAGAIN) return Received::nothing;
    if (got <= 0) return Received::broken;
    arrival.descriptor = take_descriptor(message);
    if (message.msg_flags & (MSG_TRUNC | MSG_CTRUNC)) return Received::broken;
    switch (decode({buffer.data(), static_cast<size_t>(got)}, arrival.frame)) {
    case Verdict::good:
        break;
    case Verdict::foreign_version:
        return Received::foreign_version;
    case Verdict::malformed:
        return Received::broken;
    }
    const bool unasked = arrival.descriptor && !carries_descriptor(arrival.frame);
    return unasked ? Received::broken : Received::frame;
}

int process_at(const Descriptor &link) {
    ucred other{};
    socklen_t size = sizeof other;
    if (getsockopt(link.get(), SOL_SOCKET, SO_PEERCRED, &other, &size) != 0) return 0;
    return other.uid == geteuid() ? other.pid : 0;
}

std::pair<Descriptor, Descriptor> make_link() {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) return {};
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

} // namespace hw::tasks
