// SPDX-License-Identifier: MIT
// Any sequence of frames that three processes send to the task manager. Whatever they say, the
// table that all tasks read stays whole.
#include <algorithm>
#include <array>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <span>

#include <sys/eventfd.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include "hw_linux/tasks/manager.h"

using namespace hw::tasks;

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

class Input {
  public:
    Input(const uint8_t *data, size_t size) : left_(data, size) {}
    bool empty() const { return left_.empty(); }
    // A small number, of either sign; 0 at the end.
    int next() {
        if (left_.empty()) return 0;
        const auto number = static_cast<int8_t>(left_.front());
        left_ = left_.subspan(1);
        return number;
    }

  private:
    std::span<const uint8_t> left_;
};

// Another process, which never ends, and both ends of its connection.
struct Sender {
    Descriptor own, managers;

    Sender() {
        auto [here, there] = make_link();
        if (fork() == 0) live(there);
        own = receive(here);
        managers = receive(here);
        require(own && managers);
    }

  private:
    [[noreturn]] static void live(const Descriptor &parent) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        const auto ends = make_link();
        for (const Descriptor *end : {&ends.first, &ends.second})
            send_frame(parent, {.kind = Kind::peer}, end->get());
        for (;;) pause();
    }
    static Descriptor receive(const Descriptor &link) {
        Arrival arrival;
        while (receive_frame(link, arrival) == Received::nothing) usleep(1000);
        return std::move(arrival.descriptor);
    }
};

void drop_what_is_left(const Descriptor &link) {
    char byte = 0;
    while (recv(link.get(), &byte, 1, MSG_DONTWAIT | MSG_TRUNC) >= 0) {
    }
}

SubtaskRecord next_subtask(Input &input) {
    SubtaskRecord part;
    part.subtask = input.next();
    std::memset(part.name.data(), 'n', static_cast<size_t>(std::abs(input.next())));
    return part;
}

TaskRecord next_task(Input &input) {
    TaskRecord task;
    task.task = input.next();
    task.used = static_cast<uint64_t>(input.next());
    task.screen = static_cast<TaskScreen>(input.next());
    task.subtask = input.next();
    task.next_subtask = input.next();
    task.listened = input.next();
    for (int i = 0; i < std::clamp(task.listened, 0, 4); ++i)
        task.requests[static_cast<size_t>(i)] = input.next();
    task.part_count = input.next();
    for (int i = 0; i < std::clamp(task.part_count, 0, 4); ++i)
        task.parts[static_cast<size_t>(i)] = next_subtask(input);
    task.icon_size = static_cast<uint32_t>(input.next());
    task.icon[0] = static_cast<uint8_t>(input.next());
    return task;
}

template <class Record>
void set_data(Frame &frame, const Record &record) {
    frame.data.resize(sizeof record);
    std::memcpy(frame.data.data(), &record, sizeof record);
}

Frame next_frame(Input &input) {
    Frame frame;
    frame.kind = static_cast<Kind>(std::abs(input.next()) % (static_cast<int>(Kind::count) + 1));
    frame.serial = 1;
    for (size_t i = 0; i < 3; ++i) frame.numbers[i] = input.next();
    if (frame.kind == Kind::close) frame.numbers[2] = 0; // the senders are to live on
    if (frame.kind == Kind::join || frame.kind == Kind::set_parameters)
        set_data(frame, next_task(input));
    if (frame.kind == Kind::new_subtask || frame.kind == Kind::set_subtask)
        set_data(frame, next_subtask(input));
    return frame;
}

std::optional<int> reply_to(const Descriptor &link) {
    std::optional<int> result;
    Arrival arrival;
    for (;;) {
        const Received received = receive_frame(link, arrival);
        if (received == Received::nothing) return result;
        require(received == Received::frame && arrival.frame.kind >= Kind::reply &&
                arrival.frame.kind <= Kind::wake);
        if (arrival.frame.kind == Kind::reply) result = arrival.frame.numbers[0];
    }
}

const TaskRecord *record_of(const Table &table, int task) {
    const auto at = std::find_if(table.tasks.begin(), table.tasks.end(),
                                 [=](const TaskRecord &r) { return r.task == task; });
    return at == table.tasks.end() ? nullptr : &*at;
}

void check_table(const Table &table) {
    require(table.changes % 2 == 0);
    int tasks = 0;
    for (const TaskRecord &record : table.tasks) {
        if (record.task == 0) continue;
        require(record.task > 0 && is_sane(record) && record_of(table, record.task) == &record);
        ++tasks;
    }
    require(tasks <= 3); // one of each process
    const TaskRecord *active = table.active == 0 ? nullptr : record_of(table, table.active);
    require(table.active == 0 || (active && active->screen == TaskScreen::open));
}

void check_reply(const Table &table, const Frame &question, int result) {
    const int task = question.numbers[0];
    const TaskRecord *record = record_of(table, task);
    if (question.kind == Kind::activate && result == 1)
        require(record && (record->screen != TaskScreen::open || table.active == task));
    if (question.kind == Kind::attach && result == 1 && task != 0 && question.numbers[1] == 0)
        require(table.active != 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static std::array<Sender, 3> senders;
    static const Descriptor door(eventfd(1, EFD_CLOEXEC)); // there is always something to do
    static const Descriptor memory(memfd_create("framebuffer", MFD_CLOEXEC));
    Input input(data, size);
    SharedTable shared = SharedTable::make();
    require(static_cast<bool>(shared));
    const Table &table = *shared.get();
    const Place nowhere;
    Manager manager(std::move(shared), nowhere);
    const auto welcome = [&](const Sender &sender) {
        manager.welcome(Descriptor(dup(sender.managers.get())));
    };
    for (const Sender &sender : senders) {
        for (const Descriptor *end : {&sender.own, &sender.managers}) drop_what_is_left(*end);
        welcome(sender);
    }
    while (!input.empty()) {
        const int choice = input.next();
        const Sender &sender = senders[static_cast<size_t>(std::abs(choice)) % senders.size()];
        if (choice < 0) welcome(sender); // once more
        const Frame frame = next_frame(input);
        send_frame(sender.own, frame, frame.kind == Kind::attach ? memory.get() : -1);
        manager.step(door);
        check_table(table);
        if (const auto result = reply_to(sender.own)) check_reply(table, frame, *result);
    }
    return 0;
}
