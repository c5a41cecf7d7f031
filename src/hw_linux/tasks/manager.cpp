// SPDX-License-Identifier: MIT
// Keeps the table, and hands out connections.
#include "hw_linux/tasks/manager.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>
#include <system_error>

#include <poll.h>
#include <sys/socket.h>

extern "C" {
#include <sys/pidfd.h> // does not say itself that it is C
}

namespace hw::tasks {
namespace {

constexpr int no_place = -1;
constexpr size_t most_strangers = 64;

template <class Record>
Record record_in(const Frame &frame) {
    Record record;
    std::memcpy(&record, frame.data.data(), sizeof record);
    return record;
}

} // namespace

// Readers see either what was before it or what comes after.
struct Manager::Change {
    explicit Change(Table &changed) : table(changed) { ++table.changes; }
    ~Change() { ++table.changes; }
    Change(const Change &) = delete;
    Change &operator=(const Change &) = delete;
    Table &table;
};

int Manager::place_of(int task) const {
    for (int place = 0; task > 0 && place < most_tasks; ++place)
        if (table_->tasks[static_cast<size_t>(place)].task == task) return place;
    return no_place;
}

int Manager::place_of_process(int pid) const {
    for (int place = 0; place < most_tasks; ++place) {
        const TaskRecord &known = table_->tasks[static_cast<size_t>(place)];
        if (known.task != 0 && known.pid == pid) return place;
    }
    return no_place;
}

int Manager::free_place() const {
    for (int place = 0; place < most_tasks; ++place)
        if (table_->tasks[static_cast<size_t>(place)].task == 0) return place;
    return no_place;
}

bool Manager::is_needed() const {
    return !strangers_.empty() || std::any_of(table_->tasks.begin(), table_->tasks.end(),
                                              [](const TaskRecord &r) { return r.task != 0; });
}

// A task that does not read finds out by the table; it has something to read already.
void Manager::wake(int task) {
    const int place = place_of(task);
    if (place != no_place && seat(place).link) send_frame(seat(place).link, {});
}

void Manager::choose_active() {
    const TaskRecord *last = nullptr;
    for (const TaskRecord &known : table_->tasks)
        if (known.task != 0 && known.screen == TaskScreen::open &&
            (!last || known.used > last->used))
            last = &known;
    const int before = table_->active.exchange(last ? last->task : 0);
    if (before == table_->active) return;
    wake(before);
    wake(table_->active);
}

void Manager::touch(int place) {
    record(place).used = ++clock_;
}

void Manager::forget(int place) {
    {
        const Change change(*table_.get());
        record(place) = {};
        seat(place) = {};
    }
    choose_active();
}

void Manager::welcome(Descriptor link) {
    if (process_at(link) == 0) return;
    if (strangers_.size() == most_strangers) strangers_.erase(strangers_.begin());
    strangers_.push_back(std::move(link));
}

// The program that a task's process executes comes back as that task.
int Manager::greet(Descriptor &link) {
    const int place = place_of_process(process_at(link));
    if (place == no_place) return 0;
    seat(place).link = std::move(link);
    return record(place).task;
}

// What was sent while the program started has lain in the connections.
void Manager::hand_over_kept(int place) {
    if (place == no_place) return;
    seat(place).is_starting = false;
    for (Kept &kept : std::exchange(seat(place).kept, {}))
        hand_to(seat(place), kept.sender, std::move(kept.end));
}

int Manager::join(Descriptor &link, const Frame &frame) {
    const int pid = process_at(link);
    const bool is_known = place_of_process(pid) != no_place;
    const int task = is_known ? greet(link) : add(link, record_in<TaskRecord>(frame));
    if (task > 0) seat(place_of(task)).is_starting = frame.numbers[0] != 0;
    return task;
}

int Manager::add(Descriptor &link, TaskRecord wanted) {
    wanted.pid = process_at(link);
    const int place = free_place();
    Descriptor process(place == no_place ? -1 : pidfd_open(wanted.pid, 0));
    if (!process || next_task_ == INT_MAX) return -1;
    if (wanted.task == 0 || place_of(wanted.task) != no_place) wanted.task = next_task_;
    next_task_ = std::max(next_task_, wanted.task == INT_MAX ? INT_MAX : wanted.task + 1);
    place_.set_next_task(next_task_);
    if (wanted.screen != TaskScreen::closed) wanted.screen = TaskScreen::not_yet;
    wanted.used = std::min(wanted.used, UINT64_MAX / 2); // nobody stays ahead of all others
    clock_ = std::max(clock_, wanted.used);
    {
        const Change change(*table_.get());
        record(place) = wanted;
    }
    seat(place) = {.link = std::move(link), .process = std::move(process), .framebuffer = {}};
    return wanted.task;
}

// The screen that opens is shown; one that closes has done what was asked.
int Manager::attach(int place, const Frame &frame, Descriptor framebuffer) {
    const bool is_open = frame.numbers[0] != 0 && framebuffer, was_open = frame.numbers[1] != 0;
    {
        const Change change(*table_.get());
        TaskRecord &task = record(place);
        task.screen = is_open ? TaskScreen::open : TaskScreen::closed;
        if (!is_open) task.asked_to_close = 0;
        if (is_open && (!was_open || task.used == 0)) touch(place);
    }
    seat(place).framebuffer = std::move(framebuffer);
    choose_active();
    return 1;
}

int Manager::new_subtask(int place, const Frame &frame) {
    TaskRecord &task = record(place);
    if (task.part_count == most_subtasks || task.next_subtask == INT_MAX) return -1;
    const Change change(*table_.get());
    SubtaskRecord &part = task.parts[static_cast<size_t>(task.part_count++)];
    part = record_in<SubtaskRecord>(frame);
    part.subtask = task.next_subtask++;
    return part.subtask;
}

int Manager::set_subtask(const Frame &frame) {
    const int place = place_of(frame.numbers[0]);
    SubtaskRecord *part =
        place == no_place ? nullptr : find_subtask(record(place), frame.numbers[1]);
    if (!part) return 0;
    const Change change(*table_.get());
    *part = record_in<SubtaskRecord>(frame);
    part->subtask = frame.numbers[1];
    return 1;
}

int Manager::switch_subtask(const Frame &frame) {
    const int place = place_of(frame.numbers[0]), subtask = frame.numbers[1];
    if (place == no_place || !find_subtask(record(place), subtask)) return 0;
    const Change change(*table_.get());
    record(place).subtask = subtask;
    return 1;
}

// The one that is shown afterwards is the last of those that are left.
int Manager::end_subtask(int place, int subtask) {
    TaskRecord &task = record(place);
    SubtaskRecord *part = find_subtask(task, subtask);
    if (!part || task.part_count == 1) return 0;
    const Change change(*table_.get());
    std::copy(part + 1, task.parts.data() + task.part_count, part);
    task.parts[static_cast<size_t>(--task.part_count)] = {};
    if (task.subtask == subtask)
        task.subtask = task.parts[static_cast<size_t>(task.part_count - 1)].subtask;
    return 1;
}

int Manager::set_parameters(const Frame &frame) {
    const int place = place_of(frame.numbers[0]);
    if (place == no_place) return 0;
    const auto wanted = record_in<TaskRecord>(frame);
    const Change change(*table_.get());
    TaskRecord &task = record(place);
    task.book = wanted.book;
    task.title = wanted.title;
    task.flags = wanted.flags;
    task.icon_size = wanted.icon_size;
    task.icon = wanted.icon;
    return 1;
}

int Manager::activate(const Frame &frame) {
    const int place = place_of(frame.numbers[0]), subtask = frame.numbers[1];
    if (place == no_place || (subtask >= 0 && !find_subtask(record(place), subtask))) return 0;
    {
        const Change change(*table_.get());
        if (subtask >= 0) record(place).subtask = subtask;
        if (table_->active != frame.numbers[0]) touch(place);
    }
    choose_active();
    return 1;
}

int Manager::close(const Frame &frame) {
    const int place = place_of(frame.numbers[0]), subtask = frame.numbers[1];
    if (place == no_place) return 0;
    if (subtask >= 0 && record(place).part_count > 1) return end_subtask(place, subtask);
    if (subtask >= 0 && !find_subtask(record(place), subtask)) return 0;
    if (frame.numbers[2] != 0)
        return pidfd_send_signal(seat(place).process.get(), SIGKILL, nullptr, 0) == 0;
    {
        const Change change(*table_.get());
        record(place).asked_to_close = 1;
    }
    wake(frame.numbers[0]);
    return 1;
}

// One task listens for a request: the one that said so last.
int Manager::listen(int place, const Frame &frame) {
    const int request = frame.numbers[0];
    const bool on = frame.numbers[1] != 0;
    TaskRecord &asker = record(place);
    if (on && asker.listened == most_listened && !listens(asker, request)) return -1;
    const Change change(*table_.get());
    for (TaskRecord &task : table_->tasks) {
        if (!on && &task != &asker) continue;
        const auto end = task.requests.begin() + task.listened;
        task.listened = static_cast<int>(std::remove(task.requests.begin(), end, request) -
                                         task.requests.begin());
    }
    if (on) asker.requests[static_cast<size_t>(asker.listened++)] = request;
    return 0;
}

// The end for who asks; the other one has gone to the task.
Descriptor Manager::connect(int place, int task) {
    const int other = place_of(task);
    if (other == no_place) return {};
    auto [ours, theirs] = make_link();
    if (!ours || !hand_to(seat(other), record(place).task, std::move(theirs))) return {};
    return std::move(ours);
}

bool Manager::hand_to(Seat &to, int sender, Descriptor end) {
    if (to.is_starting) {
        if (to.kept.size() == most_tasks) return false;
        to.kept.push_back({sender, std::move(end)});
        return true;
    }
    const Frame news{.kind = Kind::peer, .serial = 0, .numbers = {sender}};
    return to.link && send_frame(to.link, news, end.get()) == Sent::yes;
}

int Manager::result_of(int place, Arrival &arrival) {
    const Frame &frame = arrival.frame;
    switch (frame.kind) {
    case Kind::attach:
        return attach(place, frame, std::move(arrival.descriptor));
    case Kind::new_subtask:
        return new_subtask(place, frame);
    case Kind::set_subtask:
        return set_subtask(frame);
    case Kind::switch_subtask:
        return switch_subtask(frame);
    case Kind::end_subtask:
        return end_subtask(place, frame.numbers[0]);
    case Kind::set_parameters:
        return set_parameters(frame);
    case Kind::activate:
        return activate(frame);
    case Kind::close:
        return close(frame);
    case Kind::listen:
        return listen(place, frame);
    default:
        return -1;
    }
}

void Manager::reply(const Descriptor &link, const Frame &question, int result, int descriptor) {
    send_frame(link, {Kind::reply, question.serial, {result}, {}}, descriptor);
}

// False for what nobody in that place may send. A link that is a task's by now lies in its seat.
bool Manager::handle(Descriptor &link, int place, Arrival &arrival) {
    const Frame &frame = arrival.frame;
    if (frame.kind == Kind::hello || frame.kind == Kind::join) {
        if (place != no_place) return false;
        const int pid = process_at(link);
        const int task = frame.kind == Kind::hello ? greet(link) : join(link, frame);
        const int seated = place_of_process(pid);
        const Descriptor &answered = link ? link : seat(seated).link;
        reply(answered, frame, task, table_.descriptor().get());
        if (frame.kind == Kind::hello) hand_over_kept(seated);
        return true;
    }
    if (place == no_place) return false;
    hand_over_kept(place); // a process that has joined says nothing more before its program
    if (frame.kind == Kind::connect) {
        const Descriptor end = connect(place, frame.numbers[0]);
        reply(link, frame, end ? frame.numbers[0] : -1, end.get());
    } else if (frame.kind == Kind::read_framebuffer) {
        const int other = place_of(frame.numbers[0]);
        const bool has = other != no_place && seat(other).framebuffer;
        reply(link, frame, has ? 1 : 0, has ? seat(other).framebuffer.get() : -1);
    } else if (frame.kind < Kind::reply) {
        reply(link, frame, result_of(place, arrival));
    } else {
        return false;
    }
    return true;
}

// What breaks the rules is not heard any more; as a task it lives as long as its process.
void Manager::read_link(Descriptor &link, int place) {
    Arrival arrival;
    switch (receive_frame(link, arrival)) {
    case Received::nothing:
        return;
    case Received::foreign_version:
        send_frame(link, {}); // in our version, which is all that the other one wants to know
        break;
    case Received::broken:
        break;
    case Received::frame:
        if (handle(link, place, arrival)) return;
    }
    link.reset();
}

void Manager::step(const Descriptor &door) {
    std::vector<pollfd> waited;
    const auto wait_for = [&](const Descriptor &d) { waited.push_back({d.get(), POLLIN, 0}); };
    wait_for(door);
    for (const Seat &s : seats_) {
        wait_for(s.process);
        wait_for(s.link);
    }
    for (const Descriptor &stranger : strangers_) wait_for(stranger);
    constexpr int soon_ms = 50; // somebody who held the lock may have gone without a word
    const int ready = poll(waited.data(), waited.size(), is_needed() ? -1 : soon_ms);
    if (ready < 0 && errno != EINTR) throw std::system_error(errno, std::generic_category());
    if (ready <= 0) return;

    const auto is_ready = [&](size_t n) { return waited[n].revents != 0; };
    for (size_t n = 0; n < strangers_.size(); ++n)
        if (is_ready(1 + 2 * most_tasks + n)) read_link(strangers_[n], no_place);
    std::erase_if(strangers_, [](const Descriptor &stranger) { return !stranger; });
    for (int place = 0; place < most_tasks; ++place) {
        const size_t n = 1 + 2 * static_cast<size_t>(place);
        if (is_ready(n))
            forget(place);
        else if (is_ready(n + 1) && seat(place).link)
            read_link(seat(place).link, place);
    }
    if (is_ready(0)) welcome(Descriptor(accept4(door.get(), nullptr, nullptr, SOCK_CLOEXEC)));
}

} // namespace hw::tasks
