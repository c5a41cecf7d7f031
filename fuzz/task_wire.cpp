// SPDX-License-Identifier: MIT
// Any bytes as a frame of another task. What is accepted is what was written, to the byte, and its
// records can be used as they are.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "hw_linux/tasks/records.h"
#include "hw_linux/tasks/wire.h"

using namespace hw::tasks;

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

void check_texts(const Frame &frame) {
    if (frame.kind != Kind::join && frame.kind != Kind::set_parameters) return;
    TaskRecord record;
    std::memcpy(&record, frame.data.data(), sizeof record);
    for (int i = 0; i < record.part_count; ++i) {
        const SubtaskRecord &part = record.parts[static_cast<size_t>(i)];
        require(std::strlen(part.book.data()) < part.book.size());
        require(find_subtask(record, part.subtask) != nullptr);
    }
    require(std::strlen(record.appname.data()) < record.appname.size());
    require(record.icon_size <= most_icon);
    listens(record, 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    Frame frame;
    if (decode({data, size}, frame) != Verdict::good) {
        require(frame.data.empty() && frame.serial == 0);
        return 0;
    }
    require(frame.kind < Kind::count && frame.data.size() <= most_data);
    check_texts(frame);
    const Header header = header_of(frame);
    require(size == sizeof header + frame.data.size());
    require(std::memcmp(data, &header, sizeof header) == 0);
    return 0;
}
