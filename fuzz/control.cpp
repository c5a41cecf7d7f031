// SPDX-License-Identifier: MIT
// Any bytes from two clients, in pieces: each piece has a byte that chooses the client and whether
// it leaves, and one for its length. No line is longer than lines may be, none is of a client that
// waits, and nothing blocks.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <map>

#include <sys/socket.h>
#include <unistd.h>

#include "hw_linux/line_server.h"

namespace {

constexpr int leaves = 2, reads_answers = 4;

struct Clients {
    hw::LineServer server;
    hw::Descriptor end[2];
    Clients() { connect(0), connect(1); }
    void connect(int which) {
        int pair[2];
        if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, pair) != 0)
            std::abort();
        end[which] = hw::Descriptor(pair[0]);
        server.adopt(hw::Descriptor(pair[1]));
    }
    void read_answers(int which) const {
        char bytes[4096];
        while (recv(end[which].get(), bytes, sizeof bytes, MSG_DONTWAIT) > 0) {
        }
    }
};

// Takes all lines that there are; answers all but each third at once, and those later.
void answer_all(hw::LineServer &server, std::map<int, int> &late) {
    while (const auto line = server.take()) {
        if (line->text.size() > hw::LineServer::longest_line ||
            (late.contains(line->client) && !server.has_left(line->client)) ||
            line->text.find('\n') != std::string::npos)
            std::abort();
        if (line->text.size() % 3 == 2)
            late[line->client] = 1;
        else
            server.answer(line->client, line->text);
    }
    for (const auto &[client, count] : late) server.answer(client, "late");
    late.clear();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    Clients clients;
    std::map<int, int> late;
    const uint8_t *end = data + size;
    while (end - data >= 2) {
        const int how = data[0], which = how & 1, scale = how & 128 ? 64 : 1;
        const auto length = std::min<long>(data[1] * scale, end - data - 2);
        data += 2;
        if (send(clients.end[which].get(), data, static_cast<size_t>(length),
                 MSG_DONTWAIT | MSG_NOSIGNAL) > 0)
            data += length;
        if (how & leaves) clients.end[which] = hw::Descriptor(), clients.connect(which);
        clients.server.serve(0);
        answer_all(clients.server, late);
        if (how & reads_answers) clients.read_answers(which);
    }
    return 0;
}
