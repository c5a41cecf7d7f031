// SPDX-License-Identifier: MIT
// Any bytes as a frame of another task. What is accepted is what was written, to the byte, and its
// records can be used as they are.
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "hw_linux/tasks/records.h"
#include "hw_linux/tasks/wire.h"
#include "raster/bitmap.h"

using namespace hw::tasks;

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

template <size_t n>
void check_text(const std::array<char, n> &text) {
    require(std::strlen(text.data()) < n);
}

void check_subtask(const SubtaskRecord &part) {
    require(part.subtask >= 0);
    check_text(part.name);
    check_text(part.book);
}

// A copy reads all of it, as who shows it does.
void check_icon(const TaskRecord &record) {
    if (record.icon_size == 0) return;
    require(record.icon_size <= most_icon);
    const std::vector<uint8_t> block(record.icon.begin(), record.icon.begin() + record.icon_size);
    require(raster::mirrored(reinterpret_cast<const ibitmap *>(block.data()), 0) != nullptr);
}

void check_task(TaskRecord record) {
    for (int i = 0; i < record.part_count; ++i) {
        const SubtaskRecord &part = record.parts[static_cast<size_t>(i)];
        check_subtask(part);
        const SubtaskRecord *first = find_subtask(record, part.subtask);
        require(first && first <= &part);
    }
    require(!find_subtask(record, -1));
    check_text(record.appname);
    check_text(record.name);
    check_text(record.book);
    check_text(record.title);
    check_icon(record);
    for (int i = 0; i < record.listened; ++i)
        require(listens(record, record.requests[static_cast<size_t>(i)]));
}

template <class Record>
Record record_in(const Frame &frame) {
    Record record;
    std::memcpy(&record, frame.data.data(), sizeof record);
    return record;
}

void check_records(const Frame &frame) {
    if (frame.kind == Kind::join || frame.kind == Kind::set_parameters)
        check_task(record_in<TaskRecord>(frame));
    if (frame.kind == Kind::new_subtask || frame.kind == Kind::set_subtask)
        check_subtask(record_in<SubtaskRecord>(frame));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    Frame frame;
    if (decode({data, size}, frame) != Verdict::good) {
        require(frame.data.empty() && frame.serial == 0);
        return 0;
    }
    require(frame.kind < Kind::count && frame.data.size() <= most_data);
    check_records(frame);
    const Header header = header_of(frame);
    require(size == sizeof header + frame.data.size());
    require(std::memcmp(data, &header, sizeof header) == 0);
    return 0;
}
