// SPDX-License-Identifier: MIT
// The task manager: who is a task, which one is active, and who may talk to whom. It carries no
// messages itself, so that tasks that know each other go on when it is killed.
#pragma once

#include <array>
#include <vector>

#include "hw_linux/tasks/link.h"
#include "hw_linux/tasks/place.h"
#include "hw_linux/tasks/records.h"

namespace hw::tasks {

// Memory that holds the table, readable by whom its descriptor is given to.
class SharedTable {
  public:
    // Empty on failure.
    static SharedTable make();
    // Somebody else's; empty when it is no table.
    static SharedTable map(const Descriptor &descriptor);

    SharedTable() = default;
    SharedTable(SharedTable &&other) noexcept;
    SharedTable &operator=(SharedTable &&other) noexcept;
    SharedTable(const SharedTable &) = delete;
    SharedTable &operator=(const SharedTable &) = delete;
    ~SharedTable();

    Table *get() const { return table_; }
    Table *operator->() const { return table_; }
    explicit operator bool() const { return table_ != nullptr; }
    const Descriptor &descriptor() const { return descriptor_; }

  private:
    Descriptor descriptor_; // of one that was made here
    Table *table_ = nullptr;
};

class Manager {
  public:
    Manager(SharedTable table, const Place &place)
        : table_(std::move(table)), place_(place), next_task_(place.next_task()) {}

    // A new connection.
    void welcome(Descriptor link);
    // Waits until something happens, and does what it asks for.
    void step(const Descriptor &door);
    bool is_needed() const;

  private:
    // An end of a connection, for a task whose program has not begun yet.
    struct Kept {
        int sender;
        Descriptor end;
    };
    // What belongs to the record at the same place.
    struct Seat {
        Descriptor link, process, framebuffer;
        bool is_starting = false; // its link closes when it executes its program
        std::vector<Kept> kept{};
    };
    struct Change;

    void read_link(Descriptor &link, int place);
    bool handle(Descriptor &link, int place, Arrival &arrival);
    void reply(const Descriptor &link, const Frame &question, int result, int descriptor = -1);
    int result_of(int place, Arrival &arrival);
    int greet(Descriptor &link);
    void hand_over_kept(int place);
    int join(Descriptor &link, const Frame &frame);
    int add(Descriptor &link, TaskRecord record);
    int attach(int place, const Frame &frame, Descriptor framebuffer);
    int new_subtask(int place, const Frame &frame);
    int set_subtask(const Frame &frame);
    int switch_subtask(const Frame &frame);
    int end_subtask(int task, int subtask);
    int set_parameters(const Frame &frame);
    int activate(const Frame &frame);
    int close(const Frame &frame);
    int listen(int place, const Frame &frame);
    Descriptor connect(int place, int task);
    bool hand_to(Seat &to, int sender, Descriptor end);

    int place_of(int task) const;
    int place_of_process(int pid) const;
    int free_place() const;
    TaskRecord &record(int place) { return table_->tasks[static_cast<size_t>(place)]; }
    Seat &seat(int place) { return seats_[static_cast<size_t>(place)]; }
    void touch(int place);
    void choose_active();
    void wake(int task);
    void forget(int place);

    SharedTable table_;
    const Place &place_;
    std::array<Seat, most_tasks> seats_;
    std::vector<Descriptor> strangers_; // connected, and no task yet
    uint64_t clock_ = 0;                // counts what became active
    int next_task_;
};

} // namespace hw::tasks
