// SPDX-License-Identifier: MIT
// Makes headers of frames and checks what arrives.
#include "hw_linux/tasks/wire.h"

#include <cstring>

#include "hw_linux/tasks/records.h"

namespace hw::tasks {
namespace {

constexpr uint32_t wire_magic = 0x5453414B; // "KAST" backwards on little-endian machines

bool is_size(int32_t number) {
    return number >= 0 && static_cast<size_t>(number) <= most_data;
}

template <class Record>
bool holds(std::span<const uint8_t> data) {
    Record record;
    if (data.size() != sizeof record) return false;
    std::memcpy(&record, data.data(), sizeof record);
    return is_sane(record);
}

bool data_fits(const Header &header, std::span<const uint8_t> data) {
    switch (header.kind) {
    case Kind::join:
    case Kind::set_parameters:
        return holds<TaskRecord>(data);
    case Kind::new_subtask:
    case Kind::set_subtask:
        return holds<SubtaskRecord>(data);
    case Kind::request:
        return is_size(header.numbers[1]);
    case Kind::message:
    case Kind::answer:
        return true;
    default:
        return data.empty();
    }
}

} // namespace

Header header_of(const Frame &frame) {
    return {wire_magic,
            wire_version,
            frame.kind,
            frame.serial,
            frame.numbers,
            static_cast<uint32_t>(frame.data.size()),
            0};
}

Verdict decode(std::span<const uint8_t> bytes, Frame &frame) {
    Header header;
    if (bytes.size() < sizeof header) return Verdict::malformed;
    std::memcpy(&header, bytes.data(), sizeof header);
    if (header.magic != wire_magic) return Verdict::malformed;
    if (header.version != wire_version) return Verdict::foreign_version;
    const auto data = bytes.subspan(sizeof header);
    if (header.kind >= Kind::count || data.size() > most_data || header.size != data.size() ||
        header.reserved != 0 || !data_fits(header, data))
        return Verdict::malformed;
    frame = {header.kind, header.serial, header.numbers, {data.begin(), data.end()}};
    return Verdict::good;
}

bool carries_descriptor(const Frame &frame) {
    return frame.kind == Kind::attach || frame.kind == Kind::reply || frame.kind == Kind::peer;
}

} // namespace hw::tasks
