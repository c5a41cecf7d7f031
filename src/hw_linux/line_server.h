// SPDX-License-Identifier: MIT
// A Unix socket whose clients send lines and get lines back. Nothing a client does holds up the
// others or the process: long lines are refused, floods wait in the kernel, and who does not read
// the answers is dropped.
#pragma once

#include <cstdint>
#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>

namespace hw {

// Owns a descriptor.
class Descriptor {
  public:
    explicit Descriptor(int fd = -1) : fd_(fd) {}
    Descriptor(Descriptor &&other) noexcept : fd_(other.release()) {}
    Descriptor &operator=(Descriptor &&other) noexcept;
    ~Descriptor();
    int get() const { return fd_; }
    int release();

  private:
    int fd_;
};

class LineServer {
  public:
    static constexpr size_t longest_line = 4096, most_clients = 16;

    LineServer() = default;
    LineServer(const LineServer &) = delete;
    LineServer &operator=(const LineServer &) = delete;
    ~LineServer();

    // Makes the socket, for this user alone. A socket that nobody serves any more is replaced.
    // Empty, or what is wrong.
    std::string open(const char *path);
    // Serves a connection that was made otherwise.
    void adopt(Descriptor connection);
    // Becomes readable when there is something to do.
    int fd() const { return watch_.get(); }
    // Takes what has come. Waits for so long when there is nothing.
    void serve(int wait_ms);
    struct Line {
        enum class Kind { whole, too_long };
        int client;
        std::string text; // without the line feed; empty when it was too long
        Kind kind;
    };
    // The next line, of one client after the other; of none that still waits for its answer.
    std::optional<Line> take();
    // Both of its directions are closed, or it never was.
    bool has_left(int client) const;
    // Sends a line. Nothing for a client that has left.
    void answer(int client, std::string_view text);

  private:
    struct Client {
        int number;
        Descriptor connection;
        std::string input = {};
        bool is_too_long = false; // the rest of a line is passed over
        bool has_ended = false;   // nothing more will come
        bool has_left = false;    // nor hears anything
        bool is_waiting = false;  // for an answer
        std::string output = {};  // of its answer, what it has not taken yet
    };
    using Clients = std::list<Client>;

    void accept_next();
    void read(Client &client);
    void forget_who_left();
    void hear(Client &client, unsigned events);
    void flush(Client &client);
    // What is heard of a client now: what it sends, unless its lines wait; that it takes answers.
    void watch(const Client &client) const;
    bool change_watch(int operation, int fd, int number, unsigned events) const;
    const Client *find(int number) const;
    void pass_over_long_line(Client &client);
    Line take_line(Clients::iterator client, size_t feed);

    Descriptor listening_, watch_;
    std::string path_; // absolute
    pid_t owner_ = 0;  // the process that made the socket
    uint64_t inode_ = 0;
    Clients clients_; // the first is asked next
    int last_number_ = 0;
};

} // namespace hw
