// SPDX-License-Identifier: MIT
// A display server, a person at its keyboard and mouse, and programs that run on it.
// Whatever is waited for is waited for until it happens, or until a deadline says it never will.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

#include "support/tempdir.h"

struct _XDisplay;

namespace desktop {

using Environment = std::map<std::string, std::string>;

inline constexpr std::chrono::seconds patience{20};

// Asks again and again until the answer is true; false when patience ends.
bool await(const std::function<bool()> &condition);

// A new directory with the data tree of an application in it; removed with all it holds.
class Sandbox {
  public:
    Sandbox();

    std::string path(const std::string &name) const { return folder_.path() / name; }
    void write(const std::string &name, const std::string &text) const;
    std::string read(const std::string &name) const; // empty when there is no such file
    bool has(const std::string &name) const;

  private:
    TempDir folder_;
};

// A running program; what it writes to standard output and error is kept as lines.
class Program {
  public:
    Program(const std::vector<std::string> &command, const std::string &directory,
            const Environment &environment = {});
    ~Program(); // ends it
    Program(const Program &) = delete;
    Program &operator=(const Program &) = delete;

    // Takes the next line; nothing when the output has ended or patience has.
    std::optional<std::string> take_line();
    // Takes the lines up to and including the first that equals `last`; nothing when it never
    // comes.
    std::optional<std::vector<std::string>> take_until(const std::string &last);
    // Takes the lines up to the end of the program's output.
    std::vector<std::string> take_rest();
    void signal(int number) const;
    // The exit status once it has ended by itself; -1 when it was killed or does not end.
    int wait();

  private:
    bool read_more();

    pid_t pid_ = -1;
    int output_ = -1;
    std::string buffer_;
};

struct Image {
    int width = 0, height = 0;
    std::vector<uint32_t> pixels; // 0xRRGGBB
};

struct Place {
    int x, y, width, height;
};

// An X server of its own, without a screen.
class Server {
  public:
    Server(int width, int height);
    ~Server();
    Server(const Server &) = delete;
    Server &operator=(const Server &) = delete;

    const std::string &name() const { return name_; }
    void kill();

    // The top-level window whose title starts so, once it is viewable; 0 when it never is.
    unsigned long find_window(const std::string &title) const;
    // Every viewable pop-up, the newest last.
    std::vector<unsigned long> popups() const;
    Place place_of(unsigned long window) const; // on the root window
    Image grab(unsigned long window) const;
    unsigned long frame_of(unsigned long window) const; // itself when it has no frame

    // Key presses that the server sends to a window, its own auto-repeat among them.
    void set_auto_repeat(unsigned delay_ms, unsigned interval_ms) const;
    void watch_presses(unsigned long window) const;
    int count_presses() const; // since the last call

    void key(unsigned long keysym, bool down) const;
    void stroke(unsigned long keysym) const;
    void move(int x, int y) const;
    void button(unsigned number, bool down) const;
    void click(unsigned number, int x, int y) const;

  private:
    std::optional<Program> program_;
    std::string name_;
    _XDisplay *display_ = nullptr;
};

} // namespace desktop
