// SPDX-License-Identifier: MIT
// What tasks and their manager write to each other: whole frames, each checked when it arrives.
//
// A frame is a header of 44 bytes and up to 65536 bytes of data, in the byte order of the machine
// that both ends run on. Nothing of a frame is used before decode() has accepted all of it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace hw::tasks {

inline constexpr uint16_t wire_version = 1;
inline constexpr size_t most_data = 65536;
inline constexpr size_t wire_numbers = 6;

enum class Kind : uint16_t {
    // From a task to the manager, which replies to each. The numbers are in brackets.
    hello,            // who am I?
    join,             // [1: and executes a program, which says hello; 0: as it is], data:
                      // TaskRecord. Its task is 0, or the one that a former manager gave
    attach,           // [1: with a framebuffer, whose descriptor comes along; 0: without,
                      // 1: as with a former manager; 0: its screen has just opened]
    new_subtask,      // data: SubtaskRecord
    set_subtask,      // [task, subtask], data: SubtaskRecord
    switch_subtask,   // [task, subtask]
    end_subtask,      // [subtask]
    set_parameters,   // [task], data: TaskRecord
    activate,         // [task, subtask]
    close,            // [task, subtask, force]
    listen,           // [request, 1: from now on; 0: no longer]
    connect,          // [task]
    read_framebuffer, // [task]
    // From the manager.
    reply, // [result]; a descriptor may come along
    peer,  // [task], with the descriptor of a connection to it
    wake,  // something in the table may concern you
    // Between tasks.
    event,         // [type, par1, par2]
    event_at_once, // the same, to be answered
    message,       // [request], data
    request,       // [request, outsize, 1: to be answered], data
    answer,        // [result], data
    input,         // [type, mod, par1, par2], of a script
    count
};

struct Frame {
    Kind kind = Kind::wake;
    uint32_t serial = 0; // a reply or an answer has that of its question
    std::array<int32_t, wire_numbers> numbers{};
    std::vector<uint8_t> data{};
};

struct Header {
    uint32_t magic;
    uint16_t version;
    Kind kind;
    uint32_t serial;
    std::array<int32_t, wire_numbers> numbers;
    uint32_t size; // of the data
    uint32_t reserved;
};
static_assert(sizeof(Header) == 44);
inline constexpr size_t most_frame = sizeof(Header) + most_data;

enum class Verdict { good, foreign_version, malformed };

Header header_of(const Frame &frame);
// Fills a frame with what arrived; a frame that is not good stays as it was. Throws bad_alloc.
Verdict decode(std::span<const uint8_t> bytes, Frame &frame);
// Whether a descriptor may come along.
bool carries_descriptor(const Frame &frame);

} // namespace hw::tasks
