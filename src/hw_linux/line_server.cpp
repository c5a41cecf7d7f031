// SPDX-License-Identifier: MIT
// Reads and writes without ever blocking.
#include "hw_linux/line_server.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>
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

// Refused: whoever made it has gone.
bool is_left(const sockaddr_un &address) {
    const Descriptor probe(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    const auto *general = reinterpret_cast<const sockaddr *>(&address);
    return connect(probe.get(), general, sizeof address) != 0 && errno == ECONNREFUSED;
}

// 0 for what is no socket.
uint64_t socket_inode(const char *path) {
    struct stat st;
    return lstat(path, &st) == 0 && S_ISSOCK(st.st_mode) ? st.st_ino : 0;
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

// Not that of another application, which may have come meanwhile.
LineServer::~LineServer() {
    if (owner_ == getpid() && inode_ != 0 && socket_inode(path_.c_str()) == inode_)
        ::unlink(path_.c_str());
}

std::string LineServer::open(const char *path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (std::strlen(path) >= sizeof address.sun_path) return "the path is too long for a socket";
    std::strcpy(address.sun_path, path);
    if (socket_inode(path) != 0) {
        if (!is_left(address)) return "another application listens here";
        ::unlink(path);
    }
    listening_ = Descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    const auto *general = reinterpret_cast<const sockaddr *>(&address);
    if (fchmod(listening_.get(), 0600) != 0 || // what is bound has the mode of its descriptor
        bind(listening_.get(), general, sizeof address) != 0 ||
        listen(listening_.get(), SOMAXCONN) != 0)
        return reason();
    std::error_code error;
    path_ = std::filesystem::absolute(path, error).string();
    owner_ = getpid();
    inode_ = socket_inode(path_.c_str());
    watch_ = Descriptor(epoll_create1(EPOLL_CLOEXEC));
    return change_watch(EPOLL_CTL_ADD, listening_.get(), listening_number, EPOLLIN) ? "" : reason();
}

bool LineServer::change_watch(int operation, int fd, int number, unsigned events) const {
    epoll_event event{};
    event.events = events;
    event.data.fd = number;
    return epoll_ctl(watch_.get(), operation, fd, &event) == 0;
}

void LineServer::watch(const Client &client) const {
    const bool listens = !client.has_ended && client.input.size() < most_waiting;
    const unsigned events = (listens ? EPOLLIN : 0U) | (client.output.empty() ? 0U : EPOLLOUT);
    change_watch(EPOLL_CTL_MOD, client.connection.get(), client.number, events);
}

void LineServer::adopt(Descriptor connection) {
    if (watch_.get() < 0) watch_ = Descriptor(epoll_create1(EPOLL_CLOEXEC));
    const int fd = connection.get();
    Client client{++last_number_, std::move(connection)};
    if (clients_.size() >= most_clients ||
        !change_watch(EPOLL_CTL_ADD, fd, client.number, EPOLLIN)) {
        constexpr std::string_view refusal = "error: too many clients\n";
        ::send(fd, refusal.data(), refusal.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
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
}

// What does not fit waits, and the client for its next line with it.
void LineServer::flush(Client &client) {
    const ssize_t sent = ::send(client.connection.get(), client.output.data(), client.output.size(),
                                MSG_DONTWAIT | MSG_NOSIGNAL);
    if (sent < 0 && errno != EAGAIN && errno != EINTR) client.has_left = client.has_ended = true;
    if (client.has_left) client.output.clear();
    if (sent > 0) client.output.erase(0, static_cast<size_t>(sent));
    if (client.output.empty()) client.is_waiting = false;
}

void LineServer::hear(Client &client, unsigned events) {
    if (events & EPOLLIN) read(client);
    if ((events & EPOLLOUT) && !client.output.empty()) flush(client);
    if (events & (EPOLLHUP | EPOLLERR)) {
        read(client);
        client.has_left = true;
        client.is_waiting = false;
    }
    if (client.has_left)
        change_watch(EPOLL_CTL_DEL, client.connection.get(), client.number, 0);
    else
        watch(client);
}

// Half a line is none.
void LineServer::forget_who_left() {
    for (auto client = clients_.begin(); client != clients_.end();) {
        const bool is_over = client->has_ended && client->input.find('\n') == std::string::npos;
        if (!is_over || (client->is_waiting && !client->has_left)) {
            ++client;
            continue;
        }
        // A child of this process may still have the connection open.
        change_watch(EPOLL_CTL_DEL, client->connection.get(), client->number, 0);
        client = clients_.erase(client);
    }
}

const LineServer::Client *LineServer::find(int number) const {
    const auto client = std::find_if(clients_.begin(), clients_.end(),
                                     [&](const Client &c) { return c.number == number; });
    return client == clients_.end() ? nullptr : &*client;
}

bool LineServer::has_left(int number) const {
    const Client *client = find(number);
    return !client || client->has_left;
}

void LineServer::serve(int wait_ms) {
    epoll_event events[most_clients + 1];
    const int count = epoll_wait(watch_.get(), events, std::size(events), wait_ms);
    bool someone_knocks = false;
    for (int i = 0; i < count; ++i) {
        const int number = events[i].data.fd;
        someone_knocks |= number == listening_number;
        for (Client &client : clients_)
            if (client.number == number) hear(client, events[i].events);
    }
    forget_who_left();
    if (someone_knocks) accept_next();
}

// Without a line feed, and longer than any line: the rest of it is passed over.
void LineServer::pass_over_long_line(Client &client) {
    if (client.input.size() <= longest_line) return;
    client.input.clear();
    client.is_too_long = true;
    watch(client);
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
    if (client->has_left)
        client->is_waiting = false;
    else
        watch(*client);
    clients_.splice(clients_.end(), clients_, client);
    return line;
}

void LineServer::answer(int number, std::string_view text) {
    for (Client &client : clients_)
        if (client.number == number && !client.has_left) {
            client.output = std::string(text) + "\n";
            flush(client);
            if (client.has_left)
                change_watch(EPOLL_CTL_DEL, client.connection.get(), number, 0);
            else
                watch(client);
            return;
        }
}

} // namespace hw
