// SPDX-License-Identifier: MIT
// Checks records that others have written.
#include "hw_linux/tasks/records.h"

#include <algorithm>
#include <cstring>

#include "kelvane/bitmaps.h"

namespace hw::tasks {
namespace {

template <size_t n>
bool ends(const std::array<char, n> &text) {
    return std::memchr(text.data(), '\0', n) != nullptr;
}

constexpr bool within(int64_t number, int64_t least, int64_t most) {
    return number >= least && number <= most;
}

bool icon_is_sane(const TaskRecord &record) {
    if (record.icon_size == 0) return true;
    if (!within(record.icon_size, sizeof(ibitmap), most_icon)) return false;
    ibitmap icon;
    std::memcpy(&icon, record.icon.data(), sizeof icon);
    constexpr int depths[] = {1, 2, 4, 8, 16, 24};
    const int depth = icon.depth & ~BITMAP_MASK;
    return std::find(std::begin(depths), std::end(depths), depth) != std::end(depths) &&
           icon_bytes(icon) == record.icon_size;
}

} // namespace

size_t icon_bytes(const ibitmap &icon) {
    const size_t width = icon.width, height = icon.height, scanline = icon.scanline;
    const size_t row_bits = width * (icon.depth & ~BITMAP_MASK);
    const size_t spare = scanline * 8 < row_bits ? 4 : 0;
    const size_t mask = icon.depth & BITMAP_MASK ? (width + 7) / 8 * height : 0;
    return sizeof icon + scanline * height + spare + mask;
}

void set_text(char *to, size_t size, const char *from) {
    if (!from) from = "";
    size_t length = strnlen(from, size);
    if (length == size) {
        --length;
        while (length > 0 && (static_cast<unsigned char>(from[length]) & 0xC0) == 0x80) --length;
    }
    std::memset(to, 0, size);
    std::memcpy(to, from, length);
}

bool is_sane(const SubtaskRecord &record) {
    return record.subtask >= 0 && ends(record.name) && ends(record.book);
}

bool is_sane(const TaskRecord &record) {
    if (record.task < 0 || !within(record.part_count, 0, most_subtasks) ||
        !within(record.listened, 0, most_listened) || record.next_subtask < 1)
        return false;
    const auto parts_end = record.parts.begin() + record.part_count;
    return ends(record.appname) && ends(record.name) && ends(record.book) && ends(record.title) &&
           std::all_of(record.parts.begin(), parts_end,
                       [](const SubtaskRecord &part) { return is_sane(part); }) &&
           icon_is_sane(record);
}

SubtaskRecord *find_subtask(TaskRecord &record, int subtask) {
    const auto end = record.parts.begin() + record.part_count;
    const auto found = std::find_if(record.parts.begin(), end,
                                    [=](const auto &part) { return part.subtask == subtask; });
    return found == end ? nullptr : &*found;
}

bool listens(const TaskRecord &record, int request) {
    const auto end = record.requests.begin() + record.listened;
    return std::find(record.requests.begin(), end, request) != end;
}

} // namespace hw::tasks
