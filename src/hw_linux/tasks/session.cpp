// SPDX-License-Identifier: MIT
// Whether there are tasks, which of them this process is, and whether it is the one in front.
#include "hw_linux/tasks/session.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <optional>
#include <utility>

#include <pthread.h>

#include "ground/guard.h"
#include "hw_linux/device.h"
#include "kelvane/events.h"

namespace hw::tasks {
namespace {

struct Session {
    bool is_decided = false;
    bool is_copy = false;
    Place place;
    std::optional<Client> client;
    OwnFramebuffer framebuffer;
    bool is_open = false; // the framebuffer
    bool is_in_front = true;
    bool is_closing = false;
    int input_task = 0; // where the last input went, and how often that task had been shown
    uint32_t input_updates = 0;
};

// Never destroyed: an application may ask while it ends.
Session &session = *new Session;

// A copy of this process has no part in its connections.
void leave_copy() {
    session.is_copy = true;
    session.is_open = false;
    session.framebuffer.close();
    if (session.client) session.client.emplace(session.place);
}

void decide() {
    session.is_decided = true;
    const char *directory = std::getenv("KELVANE_TASKS");
    if (!directory || !*directory || !session.place.open(directory)) return;
    session.client.emplace(session.place);
    if (session.client->connect()) {
        pthread_atfork(nullptr, nullptr, leave_copy);
        return;
    }
    if (!session.client->has_given_up())
        std::fprintf(stderr, "KELVANE_TASKS=%s: no task manager: %s\n", directory,
                     std::strerror(errno));
    session.client.reset();
}

bool is_named(const TaskRecord &record, const char *name) {
    return std::strcmp(record.appname.data(), name) == 0 ||
           std::strcmp(record.name.data(), name) == 0;
}

struct Shown {
    uint64_t in = 0;
    uint32_t updates = 0;
};

Shown shown_of(int task) {
    if (const FramebufferHeader *own = session.framebuffer.header();
        own && task == session.client->task())
        return {own->shown_in, own->updates};
    const auto other = framebuffer_of(task);
    return other ? Shown{other->header().shown_in, other->header().updates} : Shown{};
}

void follow_active() {
    const bool in_front = session.client->active() == session.client->task();
    if (!session.is_open || in_front == session.is_in_front || !session.client->is_settled())
        return;
    session.is_in_front = in_front;
    device()->set_visible(in_front);
    if (in_front)
        hooks.foreground();
    else
        hooks.background();
}

void follow_close() {
    if (session.is_closing || !session.client->is_asked_to_close()) return;
    session.is_closing = true;
    hooks.end_loop();
}

} // namespace

bool is_supported() {
    if (!session.is_decided) ground::guarded(decide);
    return session.client.has_value();
}

Client *client() {
    if (!is_supported()) return nullptr;
    session.client->connect();
    return &*session.client;
}

bool is_copy() {
    return session.is_copy;
}

std::string place_path() {
    return session.place.path();
}

std::shared_ptr<uint8_t[]> make_framebuffer(size_t bytes) {
    if (is_supported()) return session.framebuffer.make(bytes);
    return std::shared_ptr<uint8_t[]>(new (std::nothrow) uint8_t[bytes]);
}

void open_framebuffer() {
    Client *const tasks = client();
    if (!tasks || tasks->task() <= 0 || !session.framebuffer.header()) return;
    tasks->attach(session.framebuffer.descriptor());
    session.is_open = true;
    session.is_in_front = tasks->active() == tasks->task();
}

void close_framebuffer() {
    if (std::exchange(session.is_open, false)) session.client->detach();
    session.framebuffer.close();
    session.is_in_front = true;
    session.is_closing = false;
}

void tell_geometry(const icanvas &canvas, int orientation) {
    FramebufferHeader *const header = session.framebuffer.header();
    if (!header) return;
    header->width = canvas.width;
    header->height = canvas.height;
    header->scanline = canvas.scanline;
    header->orientation = orientation;
}

bool is_in_front() {
    return session.is_in_front;
}

void note_shown() {
    FramebufferHeader *const header = session.framebuffer.header();
    if (!header || !session.is_open) return;
    header->shown_in = session.client->last_use();
    ++header->updates;
}

bool has_shown() {
    const FramebufferHeader *const header = session.framebuffer.header();
    return !header || header->updates > 0;
}

bool is_shown(const char *name) {
    TaskRecord record;
    if (!is_supported() || !session.client->read_record(session.client->active(), record))
        return false;
    const Shown shown = shown_of(record.task);
    const bool answered =
        record.task != session.input_task || shown.updates != session.input_updates;
    return is_named(record, name) && shown.in == record.used && answered;
}

bool go_home() {
    int first = 0;
    if (!is_supported()) return false;
    session.client->read_table([&](const Table &table) {
        first = 0;
        for (const TaskRecord &record : table.tasks)
            if (record.screen == TaskScreen::open && (first == 0 || record.task < first))
                first = record.task;
    });
    if (first == 0 || first == session.client->active()) return false;
    return ground::guarded(false, [=] {
        return session.client->ask({Kind::activate, 0, {first, -1}, {}}) == 1;
    });
}

bool forward_input(int type, int mod, int par1, int par2) {
    if (!is_supported()) return false;
    const int active = session.client->active();
    if (type == EVT_KEYPRESS || type == EVT_POINTERDOWN) {
        session.input_task = active;
        session.input_updates = shown_of(active).updates;
    }
    if (active == 0 || active == session.client->task()) return false;
    ground::guarded([&] {
        session.client->send(active, {Kind::input, 0, {type, mod, par1, par2}, {}});
    });
    return true;
}

std::unique_ptr<ForeignFramebuffer> framebuffer_of(int task) {
    using Mapped = std::unique_ptr<ForeignFramebuffer>;
    return ground::guarded_or(
        [=]() -> Mapped {
            Frame question{.kind = Kind::read_framebuffer, .numbers = {task}};
            Descriptor memory;
            const auto has = session.client->ask(std::move(question), nullptr, &memory);
            return has && *has == 1 ? ForeignFramebuffer::map(memory) : nullptr;
        },
        [] { return Mapped(); });
}

std::unique_ptr<ForeignFramebuffer> active_framebuffer() {
    if (!is_supported()) return nullptr;
    const int active = session.client->active();
    return active == 0 || active == session.client->task() ? nullptr : framebuffer_of(active);
}

int wake_descriptor() {
    return session.client ? session.client->wake_descriptor() : -1;
}

bool has_arrivals() {
    return session.client && session.client->has_arrivals();
}

int check_messages() {
    if (!client()) return 0;
    const int handled = session.client->hand_on();
    follow_active();
    follow_close();
    return handled;
}

} // namespace hw::tasks
