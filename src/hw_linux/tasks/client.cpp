// SPDX-License-Identifier: MIT
// Finds the manager, again when it was killed, and asks it.
#include "hw_linux/tasks/client.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include <poll.h>
#include <sys/epoll.h>

#include "hw_linux/tasks/real_time.h"
#include "hw_linux/tasks/serve.h"

namespace hw::tasks {
namespace {

constexpr int reply_ms = 2000, rest_ms = 1000; // after a reply that did not come
constexpr int settling_ms = 500;               // until the others have found a new manager as well
constexpr int most_attempts = 4;

Frame join_frame(const TaskRecord &record, Joining joining) {
    Frame frame{.kind = Kind::join, .serial = 0, .numbers = {joining == Joining::program}};
    frame.data.resize(sizeof record);
    std::memcpy(frame.data.data(), &record, sizeof record);
    return frame;
}

// What would do more when it is done twice.
bool does_more_twice(const Frame &question) {
    const bool ends_subtask = question.kind == Kind::end_subtask ||
                              (question.kind == Kind::close && question.numbers[1] >= 0);
    return ends_subtask || question.kind == Kind::new_subtask;
}

} // namespace

bool Client::connect() {
    if (manager_) return true;
    for (int attempt = 0; attempt < most_attempts && !given_up_ && !is_resting(); ++attempt)
        if (connect_once()) return true;
    return false;
}

// A manager that is silent, being stopped, is not asked for a while: nobody is to wait for long.
void Client::rest() {
    rests_until_ms_ = real_time_ms() + rest_ms;
    errno = ETIMEDOUT;
}

bool Client::is_resting() const {
    return real_time_ms() < rests_until_ms_;
}

bool Client::connect_once() {
    if (!poll_) poll_ = Descriptor(epoll_create1(EPOLL_CLOEXEC));
    manager_ = connect_to_manager(place_);
    if (!manager_) {
        if (errno == ETIMEDOUT) rest();
        return false;
    }
    if (!introduce()) {
        manager_.reset();
        return false;
    }
    watch(manager_);
    return true;
}

// Who was a task of a former manager says so, and keeps its number.
bool Client::introduce() {
    TaskRecord former;
    const bool was_task = read_former(former);
    Descriptor table;
    Frame hello{.kind = Kind::hello, .serial = ++serial_};
    if (send_frame(manager_, hello) != Sent::yes) return false;
    const std::optional<int> known = await_reply(hello.serial, &table);
    if (!known) return false;
    SharedTable mapped = SharedTable::map(table);
    if (!mapped) return false;
    table_ = std::move(mapped);
    if (*known > 0) task_ = *known;
    if (!was_task) return true;
    reconnected_ms_ = real_time_ms();
    if (*known <= 0 && !join(former, Joining::process)) return false;
    if (framebuffer_) attach_again();
    return true;
}

// Nobody writes any more into the table of a manager that is gone: what it left half done stays so.
bool Client::read_former(TaskRecord &record) const {
    if (read_record(task_, record)) return true;
    const TaskRecord *own = own_record();
    if (own) record = *own;
    return own && is_sane(record);
}

bool Client::join(const TaskRecord &record, Joining joining) {
    const std::optional<int> given = ask(join_frame(record, joining));
    if (given && *given > 0) task_ = *given;
    return given && *given > 0;
}

void Client::attach(const Descriptor &framebuffer) {
    framebuffer_ = &framebuffer;
    ask({Kind::attach, 0, {1, 0}, {}}, framebuffer_);
}

void Client::attach_again() {
    ask({Kind::attach, 0, {1, 1}, {}}, framebuffer_);
}

void Client::detach() {
    framebuffer_ = nullptr;
    ask({Kind::attach, 0, {0}, {}});
}

bool Client::is_settled() const {
    return real_time_ms() - reconnected_ms_ >= settling_ms;
}

void Client::lose_manager() {
    manager_.reset();
}

std::optional<int> Client::ask(Frame question, const Descriptor *descriptor, Descriptor *answered,
                               int64_t end_ms) {
    for (int attempt = 0; attempt < most_attempts; ++attempt) {
        if (is_resting() || !connect()) return std::nullopt;
        question.serial = ++serial_;
        const Sent sent = send_frame(manager_, question, descriptor ? descriptor->get() : -1);
        if (sent == Sent::yes) {
            const auto result = await_reply(question.serial, answered, end_ms);
            if (result || manager_ || does_more_twice(question)) return result;
        } else if (sent == Sent::no_room) {
            rest();
        } else {
            lose_manager();
        }
    }
    return std::nullopt;
}

// Without an answer the manager is lost, or silent.
std::optional<int> Client::await_reply(uint32_t serial, Descriptor *answered, int64_t end_ms) {
    const int64_t silent = real_time_ms() + reply_ms, end = std::min(silent, end_ms);
    for (int64_t now = real_time_ms(); now < end; now = real_time_ms()) {
        pollfd wait = {manager_.get(), POLLIN, 0};
        if (poll(&wait, 1, static_cast<int>(end - now)) <= 0) continue;
        Arrival arrival;
        switch (receive_frame(manager_, arrival)) {
        case Received::nothing:
            continue;
        case Received::foreign_version:
            std::fputs("KELVANE_TASKS: the task manager there is of another version\n", stderr);
            given_up_ = true;
            lose_manager();
            return std::nullopt;
        case Received::broken:
            lose_manager();
            errno = ECONNRESET;
            return std::nullopt;
        case Received::frame:
            break;
        }
        if (arrival.frame.kind == Kind::peer) {
            take_peer(std::move(arrival));
            continue;
        }
        if (arrival.frame.kind != Kind::reply || arrival.frame.serial != serial) continue;
        if (answered) *answered = std::move(arrival.descriptor);
        return arrival.frame.numbers[0];
    }
    if (end == silent) rest();
    return std::nullopt;
}

bool Client::read_record(int task, TaskRecord &record) const {
    bool found = false;
    const bool whole = read_table([&](const Table &table) {
        const auto at = std::find_if(table.tasks.begin(), table.tasks.end(),
                                     [=](const TaskRecord &r) { return r.task == task; });
        found = at != table.tasks.end() && task > 0;
        if (found) record = *at;
    });
    return whole && found && is_sane(record);
}

int Client::active() const {
    return table_ ? table_->active.load() : 0;
}

// Single numbers need no whole table. Null when there is no such task.
const TaskRecord *Client::own_record() const {
    if (!table_ || task_ <= 0) return nullptr;
    for (const TaskRecord &record : table_->tasks)
        if (record.task == task_) return &record;
    return nullptr;
}

uint64_t Client::last_use() const {
    const TaskRecord *own = own_record();
    return own ? own->used : 0;
}

bool Client::is_asked_to_close() const {
    const TaskRecord *own = own_record();
    return own && own->asked_to_close != 0;
}

void Client::watch(const Descriptor &link) {
    epoll_event interest{};
    interest.events = EPOLLIN;
    interest.data.fd = link.get();
    epoll_ctl(poll_.get(), EPOLL_CTL_ADD, link.get(), &interest);
}

} // namespace hw::tasks
