// SPDX-License-Identifier: MIT
// What is known about tasks: records of one size, which lie in the manager's table and travel in
// frames.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

struct ibitmap_s;

namespace hw::tasks {

inline constexpr int most_tasks = 64;
inline constexpr int most_subtasks = 16;
inline constexpr int most_listened = 64; // codes of requests a task
inline constexpr size_t most_icon = 16384;

using NameText = std::array<char, 128>;
using PathText = std::array<char, 512>;

struct SubtaskRecord {
    int32_t subtask = 0;
    NameText name{};
    PathText book{};
};

enum class TaskScreen : int32_t { not_yet, open, closed };

struct TaskRecord {
    int32_t task = 0; // 0: a free place
    int32_t pid = 0;
    uint64_t used = 0; // grows each time a task becomes active; 0: not yet
    uint32_t flags = 0;
    TaskScreen screen = TaskScreen::not_yet;
    int32_t asked_to_close = 0;
    int32_t subtask = 0;
    int32_t part_count = 1; // its subtasks
    int32_t next_subtask = 1;
    int32_t listened = 0;
    std::array<int32_t, most_listened> requests{};
    std::array<SubtaskRecord, most_subtasks> parts{};
    PathText appname{};
    NameText name{};
    PathText book{};
    NameText title{};
    uint32_t icon_size = 0; // of a whole ibitmap; 0 without one
    alignas(8) std::array<uint8_t, most_icon> icon{};
};

// Written by the manager alone, read by all.
struct Table {
    std::atomic<uint32_t> changes; // odd while something is being written
    std::atomic<int32_t> active;   // the task with a screen that was used last; 0 without one
    std::array<TaskRecord, most_tasks> tasks;
};

// The text, as much of it as fits without cutting a character. Null is empty.
void set_text(char *to, size_t size, const char *from);
template <size_t n>
void set_text(std::array<char, n> &to, const char *from) {
    set_text(to.data(), n, from);
}

// Of a whole bitmap.
size_t icon_bytes(const ibitmap_s &icon);

// Every text ends, every count and number is in its range.
bool is_sane(const SubtaskRecord &record);
bool is_sane(const TaskRecord &record);

// The place of a subtask in its task's record; null without one.
SubtaskRecord *find_subtask(TaskRecord &record, int subtask);
bool listens(const TaskRecord &record, int request);

} // namespace hw::tasks
