// SPDX-License-Identifier: MIT
// The operations of hw.h on tasks. Without a manager each gives the answer of its comment.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <utility>
#include <vector>

#include "ground/guard.h"
#include "hw.h"
#include "hw_linux/tasks/session.h"
#include "hw_seam.h"
#include "kelvane/bitmaps.h"
#include "kelvane/tasks.h"

using namespace hw::tasks;

namespace {

constexpr int default_timeout_ms = 10000;
constexpr int success = 0, failure = -1;

// Numbers that are handed out together.
int found(int *task_out, int *subtask_out, int task, int subtask) {
    if (task_out) *task_out = task;
    if (subtask_out) *subtask_out = subtask;
    return task > 0;
}

int none(int *task, int *subtask) {
    return found(task, subtask, -1, -1);
}

// Work with the manager; `otherwise` without one, or without memory.
template <class Work>
int with_client(int otherwise, Work work) {
    if (!is_supported()) return otherwise;
    return ground::guarded(otherwise, [&]() -> int { return work(*client()); });
}

template <class Record>
Frame frame_of(Kind kind, std::array<int32_t, wire_numbers> numbers, const Record &record) {
    Frame frame{kind, 0, numbers, std::vector<uint8_t>(sizeof record)};
    std::memcpy(frame.data.data(), &record, sizeof record);
    return frame;
}

int ask(Client &tasks, int otherwise, Frame frame) {
    return tasks.ask(std::move(frame)).value_or(otherwise);
}

int ask(Client &tasks, int otherwise, Kind kind, int a = 0, int b = 0, int c = 0) {
    return ask(tasks, otherwise, Frame{kind, 0, {a, b, c}, {}});
}

// An icon that is larger than there is room for is left out.
void set_icon(TaskRecord &record, const ibitmap *icon) {
    record.icon_size = 0;
    if (!icon) return;
    const size_t size = icon_bytes(*icon);
    if (size > most_icon) return;
    std::memcpy(record.icon.data(), icon, size);
    record.icon_size = static_cast<uint32_t>(size);
    if (!is_sane(record)) record.icon_size = 0;
}

SubtaskRecord subtask_record(const char *name, const char *book) {
    SubtaskRecord record;
    set_text(record.name, name);
    set_text(record.book, book);
    return record;
}

// A task whose screen has closed is about to end.
bool is_ending(const TaskRecord &record) {
    return record.screen == TaskScreen::closed;
}

bool is_open(const TaskRecord &record) {
    return record.screen == TaskScreen::open;
}

// The tasks, the one used last first.
std::vector<std::pair<uint64_t, int>> by_use(const Client &tasks) {
    std::vector<std::pair<uint64_t, int>> all;
    tasks.read_table([&](const Table &table) {
        all.clear();
        for (const TaskRecord &record : table.tasks)
            if (record.task > 0 && !is_ending(record)) all.emplace_back(record.used, record.task);
    });
    std::sort(all.rbegin(), all.rend());
    return all;
}

// The first task of by_use() that is wanted, with its subtask.
template <class Wanted>
int find_task(const Client &tasks, int *task_out, int *subtask_out, Wanted wanted) {
    TaskRecord record;
    for (const auto &[use, task] : by_use(tasks)) {
        if (!tasks.read_record(task, record)) continue;
        if (const int subtask = wanted(std::as_const(record)); subtask >= 0)
            return found(task_out, subtask_out, record.task, subtask);
    }
    return none(task_out, subtask_out);
}

bool is_text(const char *wanted, const char *text) {
    return std::strcmp(wanted, text) == 0;
}

int subtask_with_book(const TaskRecord &record, const char *book) {
    for (int i = 0; i < record.part_count; ++i) {
        const SubtaskRecord &part = record.parts[static_cast<size_t>(i)];
        if (is_text(part.book.data(), book)) return part.subtask;
    }
    return is_text(record.book.data(), book) ? record.subtask : -1;
}

// Who plays the device and what is written down about it belong to one process. The directory is
// meant from wherever the program begins.
void keep_environment() {
    for (const char *name : {"KELVANE_SCRIPT", "KELVANE_MONKEY", "KELVANE_CONTROL", "KELVANE_TRACE",
                             "KELVANE_FRAMES", "KELVANE_FILM", "KELVANE_RECORD"})
        unsetenv(name);
    setenv("KELVANE_TASKS", place_path().c_str(), 1);
}

// What hw_task_info() handed out last.
struct Info {
    TaskRecord record;
    std::array<isubtaskinfo, most_subtasks> subtasks;
    itaskinfo info;
};

const itaskinfo *describe(Info &known) {
    const TaskRecord &r = known.record;
    for (size_t i = 0; i < static_cast<size_t>(r.part_count); ++i)
        known.subtasks[i] = {r.parts[i].subtask, r.parts[i].name.data(), r.parts[i].book.data()};
    const auto *icon = reinterpret_cast<const ibitmap *>(r.icon.data());
    known.info = {.task = r.task,
                  .pid = r.pid,
                  .flags = r.flags,
                  .appname = r.appname.data(),
                  .name = r.name.data(),
                  .book = r.book.data(),
                  .title = r.title.data(),
                  .icon = r.icon_size > 0 ? icon : nullptr,
                  .subtask = r.subtask,
                  .nsubtasks = r.part_count,
                  .subtasks = known.subtasks.data()};
    return &known.info;
}

// The task that requests to the system go to; 0 without one.
int listener_of(const Client &tasks, int request) {
    int task = 0;
    tasks.read_table([&](const Table &table) {
        task = 0;
        for (const TaskRecord &record : table.tasks)
            if (record.task > 0 && listens(record, request)) task = record.task;
    });
    return task;
}

bool is_size(int size) {
    return size >= 0 && static_cast<size_t>(size) <= most_data;
}

std::vector<uint8_t> bytes_of(const void *data, int size) {
    const auto *bytes = static_cast<const uint8_t *>(data);
    return size > 0 ? std::vector<uint8_t>(bytes, bytes + size) : std::vector<uint8_t>();
}

int send_request(Client &tasks, int task, Frame frame, void *data, int outsize, int timeout) {
    if (task == 0) task = listener_of(tasks, frame.numbers[0]);
    if (task <= 0) return failure;
    if (frame.numbers[2] == 0) return tasks.send(task, frame) ? 1 : failure;
    const auto result = tasks.exchange(task, frame, timeout > 0 ? timeout : default_timeout_ms);
    if (!result) return failure;
    const size_t size = std::min(frame.data.size(), static_cast<size_t>(outsize));
    if (size > 0) std::memcpy(data, frame.data.data(), size);
    return *result;
}

} // namespace

int hw_task_supported(void) {
    return is_supported();
}

void hw_task_initmqueue(void) {
    with_client(0, [](Client &tasks) {
        return tasks.task() > 0 || tasks.join(TaskRecord(), Joining::process) ? 0 : -1;
    });
}

int hw_task_checkmessages(void) {
    return with_client(0, [](Client &) { return check_messages(); });
}

int hw_task_current(void) {
    return with_client(-1, [](const Client &tasks) { return tasks.task(); });
}

int hw_task_register(const char *appname, const char *name, const ibitmap_s *icon, int flags) {
    return with_client(-1, [&](Client &tasks) {
        TaskRecord record;
        set_text(record.appname, appname);
        set_text(record.name, name);
        set_icon(record, icon);
        record.flags = static_cast<uint32_t>(flags);
        if (!tasks.join(record, is_copy() ? Joining::program : Joining::process)) return -1;
        if (is_copy()) keep_environment();
        return tasks.task();
    });
}

int hw_task_newsubtask(const char *name) {
    return with_client(-1, [&](Client &tasks) {
        return ask(tasks, -1, frame_of(Kind::new_subtask, {}, subtask_record(name, nullptr)));
    });
}

int hw_task_list(int *list, int size) {
    return with_client(0, [&](const Client &tasks) {
        const auto all = by_use(tasks);
        const int count = std::clamp(size, 0, static_cast<int>(all.size()));
        for (int i = 0; list && i < count; ++i) list[i] = all[static_cast<size_t>(i)].second;
        return list ? count : 0;
    });
}

const itaskinfo_s *hw_task_info(int task) {
    static Info known;
    const bool is_known =
        with_client(0, [&](const Client &tasks) { return tasks.read_record(task, known.record); });
    return is_known ? describe(known) : nullptr;
}

int hw_task_findbybook(const char *book, int *task, int *subtask) {
    none(task, subtask);
    if (!book || !*book) return 0;
    return with_client(0, [&](const Client &tasks) {
        return find_task(tasks, task, subtask,
                         [=](const TaskRecord &record) { return subtask_with_book(record, book); });
    });
}

int hw_task_findbyappname(const char *appname) {
    if (!appname || !*appname) return -1;
    return with_client(-1, [=](const Client &tasks) {
        int task = -1;
        find_task(tasks, &task, nullptr, [=](const TaskRecord &record) {
            return is_text(record.appname.data(), appname) ? record.subtask : -1;
        });
        return task;
    });
}

int hw_task_setparameters(int task, const char *book, const char *title, const ibitmap_s *icon,
                          unsigned flags) {
    return with_client(0, [&](Client &tasks) {
        TaskRecord record;
        set_text(record.book, book);
        set_text(record.title, title);
        set_icon(record, icon);
        record.flags = flags;
        return ask(tasks, 0, frame_of(Kind::set_parameters, {task}, record));
    });
}

const char *hw_task_subtaskname(int task, int subtask) {
    static NameText name;
    const bool is_known = with_client(0, [&](const Client &tasks) {
        TaskRecord record;
        const SubtaskRecord *part =
            tasks.read_record(task, record) ? find_subtask(record, subtask) : nullptr;
        if (part) name = part->name;
        return part != nullptr;
    });
    return is_known ? name.data() : nullptr;
}

int hw_task_switchsubtask(int task, int subtask) {
    return with_client(
        0, [=](Client &tasks) { return ask(tasks, 0, Kind::switch_subtask, task, subtask); });
}

int hw_task_subtaskfinished(int subtask) {
    return with_client(0, [=](Client &tasks) { return ask(tasks, 0, Kind::end_subtask, subtask); });
}

int hw_task_active(int *task, int *subtask) {
    none(task, subtask);
    return with_client(0, [=](const Client &tasks) {
        TaskRecord record;
        if (!tasks.read_record(tasks.active(), record)) return 0;
        return found(task, subtask, record.task, record.subtask);
    });
}

int hw_task_foreground(int task, int subtask) {
    return with_client(0,
                       [=](Client &tasks) { return ask(tasks, 0, Kind::activate, task, subtask); });
}

int hw_task_background(void) {
    int active = -1, below = -1;
    const bool is_active = hw_task_active(&active, nullptr) && active == hw_task_current();
    return is_active && hw_task_previous_instack(&below, nullptr) && hw_task_foreground(below, -1);
}

int hw_task_close(int task, int subtask, int force) {
    return with_client(
        0, [=](Client &tasks) { return ask(tasks, 0, Kind::close, task, subtask, force); });
}

int hw_task_sendevent(int task, int type, int par1, int par2) {
    return with_client(failure, [=](Client &tasks) {
        return tasks.send(task, {Kind::event, 0, {type, par1, par2}, {}}) ? success : failure;
    });
}

int hw_task_sendevent_sync(int task, int type, int par1, int par2) {
    return with_client(failure, [=](Client &tasks) {
        if (task <= 0) return failure;
        if (task == tasks.task()) return hw::hooks.task_event_at_once(type, par1, par2), success;
        Frame frame{Kind::event_at_once, 0, {type, par1, par2}, {}};
        return tasks.exchange(task, frame, default_timeout_ms) ? success : failure;
    });
}

int hw_task_message(int task, int request, const void *data, int size) {
    if (!is_size(size) || (size > 0 && !data)) return failure;
    return with_client(failure, [=](Client &tasks) {
        const Frame frame{Kind::message, 0, {request}, bytes_of(data, size)};
        return tasks.send(task, frame) ? success : failure;
    });
}

int hw_task_sendrequest(int task, int request, void *data, int size, int outsize, int timeout,
                        int nowait) {
    if (!is_supported()) return 0;
    if (!is_size(size) || !is_size(outsize) || ((size > 0 || (outsize > 0 && !nowait)) && !data))
        return failure;
    return with_client(failure, [=](Client &tasks) {
        Frame frame{Kind::request, 0, {request, outsize, nowait == 0}, bytes_of(data, size)};
        return send_request(tasks, task, std::move(frame), data, outsize, timeout);
    });
}

int hw_task_setrequestlistener(int request, int flags) {
    return with_client(failure, [=](Client &tasks) {
        return ask(tasks, failure, Kind::listen, request, (flags & LISTENER_REMOVE) == 0);
    });
}

int hw_task_inrequest(void) {
    return with_client(0, [](const Client &tasks) { return tasks.is_answering(); });
}

int hw_task_setsubtaskinfo(int task, int subtask, const char *name, const char *book) {
    return with_client(0, [=](Client &tasks) {
        return ask(tasks, 0,
                   frame_of(Kind::set_subtask, {task, subtask}, subtask_record(name, book)));
    });
}

int hw_task_previous(int *task, int *subtask) {
    none(task, subtask);
    return with_client(0, [=](const Client &tasks) {
        const int active = tasks.active();
        return find_task(tasks, task, subtask, [=](const TaskRecord &record) {
            return record.task != active && is_open(record) ? record.subtask : -1;
        });
    });
}

int hw_task_previous_instack(int *task, int *subtask) {
    none(task, subtask);
    return with_client(0, [=](const Client &tasks) {
        const uint64_t own = tasks.last_use();
        return find_task(tasks, task, subtask, [=](const TaskRecord &record) {
            return record.used < own && is_open(record) ? record.subtask : -1;
        });
    });
}
