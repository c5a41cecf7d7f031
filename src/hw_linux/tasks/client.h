// SPDX-License-Identifier: MIT
// A task's end: its connection to the manager, those to other tasks, and what has arrived.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

#include <sched.h>
#include <unistd.h>

#include "hw_linux/tasks/framebuffer.h"
#include "hw_linux/tasks/link.h"
#include "hw_linux/tasks/manager.h"
#include "hw_linux/tasks/place.h"

namespace hw::tasks {

// A frame from another task, which waits for a step of the loop.
struct Waiting {
    int sender;
    Frame frame;
};

// What becomes a task: the process as it is, or the program that it is about to execute.
enum class Joining { process, program };

class Client {
  public:
    // Connects to the manager of a place, which must outlive it.
    explicit Client(const Place &place) : place_(place) {}

    // The manager is there, if necessary once more. A place whose manager speaks another version
    // is given up.
    // When it is not, errno tells why, unless it was given up.
    bool connect();
    bool has_given_up() const { return given_up_; }
    int task() const { return task_; }
    bool join(const TaskRecord &record, Joining joining);
    // The screen has opened, and is closed.
    void attach(const Descriptor &framebuffer);
    void detach();

    // Asks the manager, once more when it ended meanwhile; nothing when there is none, or when it
    // is silent for two seconds, or until the end.
    std::optional<int> ask(Frame question, const Descriptor *descriptor = nullptr,
                           Descriptor *answered = nullptr, int64_t end_ms = INT64_MAX);

    // What the table says. False when it cannot be read: whoever changes it is given some time to
    // go on.
    bool read_record(int task, TaskRecord &record) const;
    template <class Read>
    bool read_table(Read read) const {
        constexpr int most_yields = 100, most_tries = most_yields + 100;
        for (int i = 0; table_ && i < most_tries; ++i) {
            const uint32_t before = table_->changes.load(std::memory_order_acquire);
            if (before % 2 == 0) {
                read(*table_.get());
                std::atomic_thread_fence(std::memory_order_acquire);
                if (table_->changes.load(std::memory_order_relaxed) == before) return true;
            }
            if (i < most_yields)
                sched_yield();
            else
                usleep(1000);
        }
        return false;
    }
    int active() const;
    // Of this task's record.
    uint64_t last_use() const;
    bool is_asked_to_close() const;

    // Sends to another task. While there is no room at the other end, takes in what arrives here,
    // for half a second, or until the end.
    bool send(int task, const Frame &frame, int64_t end_ms = INT64_MAX);
    // Sends and waits for the answer, whose data replaces the frame's; meanwhile requests of others
    // are answered, and events of that task handled whose end it waits for.
    std::optional<int> exchange(int task, Frame &frame, int timeout_ms);

    // Hands on what has arrived; the number of frames handled.
    int hand_on();
    bool has_arrivals() const { return !inbox_.empty(); }
    bool is_answering() const { return answering_ > 0; }
    int wake_descriptor() const { return poll_.get(); }
    // What came of the time without a manager is over.
    bool is_settled() const;

  private:
    struct Peer {
        int task;
        Descriptor link;
    };
    struct Awaited {
        uint32_t serial;
        int task;
        Frame *answer; // filled when it arrives
        bool arrived, broken;
    };

    const TaskRecord *own_record() const;
    bool connect_once();
    bool is_resting() const;
    bool introduce();
    bool read_former(TaskRecord &record) const;
    void lose_manager();
    void rest();
    void attach_again();
    std::optional<int> await_reply(uint32_t serial, Descriptor *answered,
                                   int64_t end_ms = INT64_MAX);
    void watch(const Descriptor &link);
    void take_peer(Arrival arrival);
    const Descriptor *link_to(int task, int64_t end_ms);
    void drop_peer(int number);
    void take_in(int timeout_ms);
    bool take_from(int number);
    void take_from_manager();
    bool take_from_peer(int number);
    bool awaits(int task) const;
    bool has_room_from(int task) const;
    void sort_in(int sender, Frame &&frame);
    Waiting take_out(size_t place);
    bool hand_on(Waiting &waiting);
    bool cannot_wait(const Waiting &waiting) const;
    void answer_what_cannot_wait();
    void answer(Waiting &waiting);
    void send_answer(const Waiting &waiting, int result, std::vector<uint8_t> data);
    bool deliver_here(const Frame &frame);

    const Place &place_;
    Descriptor poll_, manager_;
    SharedTable table_;
    int task_ = -1;
    uint32_t serial_ = 0;
    std::vector<Peer> peers_;
    std::deque<Waiting> inbox_;
    size_t inbox_bytes_ = 0;
    int waits_ = 0; // for an answer or for room
    std::vector<Awaited *> awaited_;
    const Descriptor *framebuffer_ = nullptr;
    size_t answering_ = 0;
    int64_t reconnected_ms_ = 0, rests_until_ms_ = 0;
    bool given_up_ = false;
};

} // namespace hw::tasks
