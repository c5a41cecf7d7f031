// SPDX-License-Identifier: MIT
// kelvane-control: says a line to an application that runs with KELVANE_CONTROL, and prints the
// answer.
#include <algorithm>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

constexpr int usage_error = 2;

constexpr const char *usage =
    R"(usage: kelvane-control [--socket PATH] [--wait SECONDS] [VERB...]

Says one line to an application that was started with KELVANE_CONTROL=PATH, and prints its answer. Without a
verb, says each line of standard input.

  --socket PATH    otherwise that of KELVANE_CONTROL
  --wait SECONDS   how long the application may take to open it, 0 when not said
  --help, --version
)";

struct Options {
    std::string socket;
    int wait_s = 0;
    std::string line;
};

bool is_number(const std::string &text, int &value) {
    const char *end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, value);
    return error == std::errc() && rest == end && value >= 0;
}

bool take_options(std::vector<std::string> words, Options &o) {
    const char *path = std::getenv("KELVANE_CONTROL");
    o.socket = path ? path : "";
    size_t at = 0;
    for (; at + 1 < words.size() && words[at].starts_with("--"); at += 2) {
        const std::string &value = words[at + 1];
        if (words[at] == "--socket")
            o.socket = value;
        else if (words[at] != "--wait" || !is_number(value, o.wait_s))
            return false;
    }
    for (; at < words.size(); ++at) o.line += (o.line.empty() ? "" : " ") + words[at];
    const bool is_empty_line = at > 0 && o.line.empty() && words.back().empty();
    return !o.socket.empty() && !is_empty_line && !o.line.starts_with("--") &&
           o.line.find('\n') == std::string::npos;
}

bool try_to_connect(int fd, const std::string &path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) return errno = ENAMETOOLONG, false;
    std::copy(path.begin(), path.end(), address.sun_path);
    return connect(fd, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
}

bool connect_in_time(int fd, const Options &o) {
    using namespace std::chrono;
    const auto end = steady_clock::now() + seconds(o.wait_s);
    while (!try_to_connect(fd, o.socket)) {
        const bool may_come = errno == ENOENT || errno == ECONNREFUSED;
        if (!may_come || steady_clock::now() >= end) return false;
        std::this_thread::sleep_for(milliseconds(20));
    }
    return true;
}

void say(int fd, const std::string &line) {
    const std::string text = line + "\n";
    for (size_t sent = 0; sent < text.size();) {
        const ssize_t count = send(fd, text.data() + sent, text.size() - sent, MSG_NOSIGNAL);
        if (count <= 0) return;
        sent += static_cast<size_t>(count);
    }
}

// Up to the line feed; empty when the application ended.
std::string hear(int fd) {
    std::string answer;
    for (char c = 0; recv(fd, &c, 1, 0) == 1;) {
        if (c == '\n') return answer;
        answer += c;
    }
    return "";
}

// False when the line was not done.
bool converse(int fd, const std::string &line) {
    say(fd, line); // who refused this client may have said why
    const std::string answer = hear(fd);
    if (answer.empty()) {
        std::fputs("kelvane-control: the application ended\n", stderr);
        return false;
    }
    std::puts(answer.c_str());
    return std::fflush(stdout) == 0 && !answer.starts_with("error:");
}

int run(const Options &o) {
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (!connect_in_time(fd, o)) {
        std::fprintf(stderr, "kelvane-control: %s: %s\n", o.socket.c_str(), std::strerror(errno));
        return 1;
    }
    if (!o.line.empty()) return converse(fd, o.line) ? 0 : 1;
    bool all_done = true;
    for (std::string line; std::getline(std::cin, line);) all_done &= converse(fd, line);
    return all_done ? 0 : 1;
}

} // namespace

int main(int count, char **arguments) {
    const std::vector<std::string> words(arguments + 1, arguments + count);
    if (words == std::vector<std::string>{"--help"}) return std::fputs(usage, stdout) < 0;
    if (words == std::vector<std::string>{"--version"})
        return std::puts("kelvane-control " KELVANE_VERSION) < 0;
    Options options;
    if (take_options(words, options)) return run(options);
    std::fputs(usage, stderr);
    return usage_error;
}
