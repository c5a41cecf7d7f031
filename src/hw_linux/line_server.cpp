// SPDX-License-Identifier: MIT
// Reads and writes without ever blocking.
#include "hw_linux/line_server.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include <sys/epoll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace hw {
namespace {

constexpr int listening_number = 0; // clients count from 1
constexpr size_t most_waiting =
    size_t{2} * LineServer::longest_line; // of a client, beside the kernel's

std::string reason() {
    return std::strerror(errno);
}

bool is_served(const sockaddr_un &address) {
    const Descriptor probe(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const auto *general = reinterpret_cast<const sockaddr *>(&address);
    return connect(probe.get(), general, sizeof address) == 0 || errno == EAGAIN;
}

bool is_socket(const char *path) {
    struct stat st;
    return lstat(path, &st) == 0 && S_ISSOCK(st.st_mode);
}

} // namespace

Descriptor &Descriptor::operator=(Descriptor &&other) noexcept {
    std::swap(fd_, other.fd_);
    return *this;
}

Descriptor::~Descriptor() {
    if (fd_ >= 0) ::close(fd_);
}

int Descriptor::release() {
    return std::exchange(fd_, -1);
}

LineServer::~LineServer() {
    if (!path_.empty()) ::unlink(path_.c_str());
}

std::string LineServer::open(const char *path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (std::strlen(path) >= sizeof address.sun_path) return "the path is too long for a socket";
    std::strcpy(address.sun_path, path);
    if (is_socket(path) && is_served(address)) return "another application is controlled here";
    if (is_socket(path)) ::unlink(path);
    listening_ = Descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    const mode_t mask = umask(0177);
    const int bound =
        bind(listening_.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address);
    const int error = errno;
    umask(mask);
    errno = error;
    if (bound != 0 || listen(listening_.get(), SOMAXCONN) != 0) return reason();
    path_ = path;
    watch_ = Descriptor(epoll_create1(EPOLL_CLOEXEC));
    return watch(listening_.get(), listening_number) ? "" : reason();
}

bool LineServer::watch(int fd, int number) const {
    epoll_event event{};
    event.events = EPOLLIN | EPOLLRDHUP;
    event.data.fd = number;
    return epoll_ctl(watch_.get(), EPOLL_CTL_ADD, fd, &event) == 0;
}

void LineServer::adopt(Descriptor connection) {
    if (watch_.get() < 0) watch_ = Descriptor(epoll_create1(EPOLL_CLOEXEC));
    Client client{++last_number_, std::move(connection)};
    if (clients_.size() >= most_clients || !watch(client.connection.get(), client.number)) {
        constexpr std::string_view refusal = "error: too many clients\n";
        ::send(client.connection.get(), refusal.data(), refusal.size(),
               MSG_DONTWAIT | MSG_NOSIGNAL);
        return;
    }
    clients_.push_back(std::move(client));
}

// One at a time: who left before it came is forgotten before it is refused a place.
void LineServer::accept_next() {
    Descriptor connection(
        accept4(listening_.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (connection.get() >= 0) adopt(std::move(connection));
}

// What a client has sent beyond this waits in the kernel, and the client with it.
void LineServer::read(Client &client) {
    char bytes[longest_line];
    while (!client.has_ended && client.input.size() < most_waiting) {
        const ssize_t count = ::recv(client.connection.get(), bytes, sizeof bytes, MSG_DONTWAIT);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) return;
        if (count > 0)
            client.input.append(bytes, static_cast<size_t>(count));
        else
            client.has_ended = true;
    }
    // Until its lines are taken there is nothing to hear of it.
    epoll_ctl(watch_.get(), EPOLL_CTL_DEL, client.connection.get(), nullptr);
}

// Half a line is none.
void LineServer::forget_who_left() {
    clients_.remove_if([](const Client &c) {
        return c.has_ended && !c.is_waiting && c.input.find('\n') == std::string::npos;
    });
}

void LineServer::serve(int wait_ms) {
    epoll_event events[most_clients + 1];
    const int count = epoll_wait(watch_.get(), events, std::size(events), wait_ms);
    bool someone_knocks = false;
    for (int i = 0; i < count; ++i) {
        const int number = events[i].data.fd;
        someone_knocks |= number == listening_number;
        const auto client = std::find_if(clients_.begin(), clients_.end(),
                                         [&](const Client &c) { return c.number == number; });
        if (client != clients_.end()) read(*client);
    }
    forget_who_left();
    if (someone_knocks) accept_next();
}

// One that is listened to already stays so.
void LineServer::listen_again(const Client &client) const {
    if (!client.has_ended) watch(client.connection.get(), client.number);
}

// Without a line feed, and longer than any line: the rest of it is passed over.
void LineServer::pass_over_long_line(Client &client) {
    if (client.input.size() <= longest_line) return;
    client.input.clear();
    client.is_too_long = true;
    listen_again(client);
}

std::optional<LineServer::Line> LineServer::take() {
    for (auto client = clients_.begin(); client != clients_.end();) {
        const size_t feed = client->input.find('\n');
        if (client->is_waiting) {
            ++client;
        } else if (feed != std::string::npos) {
            return take_line(client, feed);
        } else {
            pass_over_long_line(*client++);
        }
    }
    return std::nullopt;
}

// The client goes behind the others.
LineServer::Line LineServer::take_line(Clients::iterator client, size_t feed) {
    Line line{client->number, client->input.substr(0, feed), Line::Kind::whole};
    if (std::exchange(client->is_too_long, false) || feed > longest_line)
        line = {client->number, {}, Line::Kind::too_long};
    client->input.erase(0, feed + 1);
    client->is_waiting = true;
    listen_again(*client);
    clients_.splice(clients_.end(), clients_, client);
    return line;
}

void LineServer::answer(int number, std::string_view text) {
    const auto client = std::find_if(clients_.begin(), clients_.end(),
                                     [&](const Client &c) { return c.number == number; });
    if (client == clients_.end()) return;
    client->is_waiting = false;
    const std::string line = std::string(text) + "\n";
    const ssize_t sent =
        ::send(client->connection.get(), line.data(), line.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    if (sent != static_cast<ssize_t>(line.size())) clients_.erase(client);
}

} // namespace hw
