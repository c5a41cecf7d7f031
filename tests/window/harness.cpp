// SPDX-License-Identifier: MIT
// Processes, the X server and its extensions, behind the header without either.
#include "harness.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>

namespace desktop {
namespace {

using Clock = std::chrono::steady_clock;

[[noreturn]] void run_child(const std::vector<std::string> &command, const std::string &directory,
                            const Environment &environment, int output) {
    dup2(output, STDOUT_FILENO);
    dup2(output, STDERR_FILENO);
    for (const auto &[name, value] : environment) setenv(name.c_str(), value.c_str(), 1);
    std::vector<char *> arguments;
    for (const std::string &word : command) arguments.push_back(const_cast<char *>(word.c_str()));
    arguments.push_back(nullptr);
    if (chdir(directory.c_str()) == 0) execvp(arguments[0], arguments.data());
    _exit(127);
}

std::vector<Window> children_of(Display *display, Window window) {
    Window root, parent, *list = nullptr;
    unsigned count = 0;
    std::vector<Window> result;
    if (XQueryTree(display, window, &root, &parent, &list, &count))
        result.assign(list, list + count);
    if (list) XFree(list);
    return result;
}

bool is_viewable(Display *display, Window window, bool popup) {
    XWindowAttributes a;
    return XGetWindowAttributes(display, window, &a) && a.map_state == IsViewable &&
           (a.override_redirect != 0) == popup;
}

bool has_title(Display *display, Window window, const std::string &title) {
    char *name = nullptr;
    if (!XFetchName(display, window, &name) || !name) return false;
    const bool same = std::string(name).starts_with(title);
    XFree(name);
    return same;
}

Window parent_of(Display *display, Window window) {
    Window root, parent = 0, *list = nullptr;
    unsigned count;
    XQueryTree(display, window, &root, &parent, &list, &count);
    if (list) XFree(list);
    return parent;
}

// A window manager puts its frame between the root and the window.
Window search(Display *display, Window window, const std::string &title, int depth) {
    for (Window child : children_of(display, window)) {
        if (has_title(display, child, title) && is_viewable(display, child, false)) return child;
        if (depth > 1)
            if (Window found = search(display, child, title, depth - 1)) return found;
    }
    return 0;
}

// Windows come and go while they are looked at.
int ignore_error(Display *, XErrorEvent *) {
    return 0;
}

} // namespace

bool await(const std::function<bool()> &condition) {
    for (const auto deadline = Clock::now() + patience; Clock::now() < deadline;) {
        if (condition()) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return false;
}

Sandbox::Sandbox() {
    std::filesystem::create_directories(path("system/config"));
    std::filesystem::create_directories(path("system/tmp"));
}

void Sandbox::write(const std::string &name, const std::string &text) const {
    write_file(path(name), text);
}

std::string Sandbox::read(const std::string &name) const {
    return read_file(path(name));
}

bool Sandbox::has(const std::string &name) const {
    return std::filesystem::exists(path(name));
}

Program::Program(const std::vector<std::string> &command, const std::string &directory,
                 const Environment &environment) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    pid_ = fork();
    if (pid_ == 0) run_child(command, directory, environment, ends[1]);
    close(ends[1]);
    output_ = ends[0];
}

Program::~Program() {
    if (pid_ > 0) {
        ::kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
    close(output_);
}

// False when nothing more came in time, or ever will.
bool Program::read_more() {
    pollfd ready = {output_, POLLIN, 0};
    if (poll(&ready, 1, std::chrono::milliseconds(patience).count()) <= 0) return false;
    char bytes[4096];
    const ssize_t count = read(output_, bytes, sizeof bytes);
    if (count > 0) buffer_.append(bytes, static_cast<size_t>(count));
    return count > 0;
}

std::optional<std::string> Program::take_line() {
    size_t end;
    while ((end = buffer_.find('\n')) == std::string::npos)
        if (!read_more()) return std::nullopt;
    std::string line = buffer_.substr(0, end);
    buffer_.erase(0, end + 1);
    return line;
}

std::optional<std::vector<std::string>> Program::take_until(const std::string &last) {
    std::vector<std::string> lines;
    while (auto line = take_line()) {
        lines.push_back(*line);
        if (*line == last) return lines;
    }
    return std::nullopt;
}

std::vector<std::string> Program::take_rest() {
    std::vector<std::string> lines;
    while (auto line = take_line()) lines.push_back(*line);
    return lines;
}

void Program::signal(int number) const {
    if (pid_ > 0) ::kill(pid_, number);
}

int Program::wait() {
    int status = 0;
    if (!await([&] { return waitpid(pid_, &status, WNOHANG) == pid_; })) return -1;
    pid_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// -noreset keeps the server going between clients. It writes its number to the pipe when ready.
Server::Server(int width, int height) {
    const std::string size = std::to_string(width) + "x" + std::to_string(height) + "x24";
    program_.emplace(std::vector<std::string>{"Xvfb", "-displayfd", "1", "-noreset", "-nolisten",
                                              "tcp", "-screen", "0", size},
                     "/");
    XSetErrorHandler(ignore_error);
    const auto is_number = [](const std::string &line) {
        return !line.empty() && line.find_first_not_of("0123456789") == std::string::npos;
    };
    while (name_.empty()) {
        const auto line = program_->take_line();
        if (!line) throw std::runtime_error("no X server");
        if (is_number(*line)) name_ = ":" + *line;
    }
    display_ = XOpenDisplay(name_.c_str());
    if (!display_) throw std::runtime_error("no display " + name_);
}

void Server::kill() {
    XCloseDisplay(display_); // Xlib ends a process whose server is lost
    display_ = nullptr;
    program_->signal(SIGKILL);
}

Server::~Server() {
    if (display_) XCloseDisplay(display_);
    program_->signal(SIGTERM); // lets it remove its socket
    program_->wait();
}

unsigned long Server::find_window(const std::string &title) const {
    Window found = 0;
    await([&] { return (found = search(display_, DefaultRootWindow(display_), title, 3)) != 0; });
    return found;
}

std::vector<unsigned long> Server::popups() const {
    std::vector<unsigned long> found;
    for (Window window : children_of(display_, DefaultRootWindow(display_))) {
        const Place place = place_of(window);
        if (place.width > 10 && place.height > 10 && is_viewable(display_, window, true))
            found.push_back(window);
    }
    return found;
}

Place Server::place_of(unsigned long window) const {
    XWindowAttributes a{};
    Window child;
    int x = 0, y = 0;
    XGetWindowAttributes(display_, window, &a);
    XTranslateCoordinates(display_, window, DefaultRootWindow(display_), 0, 0, &x, &y, &child);
    return {x, y, a.width, a.height};
}

Image Server::grab(unsigned long window) const {
    const Place place = place_of(window);
    XImage *image = XGetImage(display_, window, 0, 0, static_cast<unsigned>(place.width),
                              static_cast<unsigned>(place.height), AllPlanes, ZPixmap);
    if (!image) return {};
    Image result{place.width, place.height, {}};
    for (int y = 0; y < place.height; ++y)
        for (int x = 0; x < place.width; ++x)
            result.pixels.push_back(static_cast<uint32_t>(XGetPixel(image, x, y)) & 0xFFFFFF);
    XDestroyImage(image);
    return result;
}

unsigned long Server::frame_of(unsigned long window) const {
    const Window root = DefaultRootWindow(display_);
    for (Window parent = parent_of(display_, window); parent && parent != root;
         parent = parent_of(display_, parent))
        window = parent;
    return window;
}

void Server::set_auto_repeat(unsigned delay_ms, unsigned interval_ms) const {
    XAutoRepeatOn(display_);
    XkbSetAutoRepeatRate(display_, XkbUseCoreKbd, delay_ms, interval_ms);
}

void Server::watch_presses(unsigned long window) const {
    XSelectInput(display_, window, KeyPressMask);
    XSync(display_, False);
}

int Server::count_presses() const {
    int presses = 0;
    for (XEvent event; XCheckTypedEvent(display_, KeyPress, &event);) ++presses;
    return presses;
}

void Server::key(unsigned long keysym, bool down) const {
    XTestFakeKeyEvent(display_, XKeysymToKeycode(display_, keysym), down, CurrentTime);
    XFlush(display_);
}

void Server::stroke(unsigned long keysym) const {
    key(keysym, true);
    key(keysym, false);
}

void Server::move(int x, int y) const {
    XTestFakeMotionEvent(display_, -1, x, y, CurrentTime);
    XFlush(display_);
}

void Server::button(unsigned number, bool down) const {
    XTestFakeButtonEvent(display_, number, down, CurrentTime);
    XFlush(display_);
}

void Server::click(unsigned number, int x, int y) const {
    move(x, y);
    button(number, true);
    button(number, false);
}

} // namespace desktop
