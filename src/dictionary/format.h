// SPDX-License-Identifier: MIT
// The layout of a dictionary file, for those who read and who write one. Numbers are little-endian.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace dictionary {

inline constexpr std::string_view magic = "SDIC";
inline constexpr uint32_t version = 257;
inline constexpr size_t header_bytes = 128;

// Offsets in the header. A section lies where the value there says, up to the next value that is
// not 0. Messages name sections by these offsets.
enum Field : unsigned {
    version_field = 4,
    limit_field = 12,      // most bytes of an unpacked container
    protection_field = 28, // not 0: scrambled
    collation_field = 36,
    morphology_field = 40,
    keyboard_field = 44,
    index_field = 56,
    containers_field = 60 // where the first container begins
};

// Before the data of a section stands how long it is, unpacked.
inline constexpr size_t section_prefix = 4;

// What exceeds these was written to do harm: zlib packs nothing better than the ratio.
inline constexpr uint32_t largest_section = 16 << 20, largest_container = 16 << 20;
inline constexpr uint32_t best_ratio = 1100;

// A record of a container: its length in all, the headword and the translation, each with a NUL. A
// length of 0 ends the container.
inline constexpr size_t record_prefix = 2;
inline constexpr size_t largest_record = 0xFFFF;
inline constexpr size_t most_records = 1 << 20; // of a container; what lies behind is not there
// An entry of the index: the bytes of a container, and its first headword with a NUL. A size of 0
// ends the index.
inline constexpr size_t largest_packed_container = 0xFFFF;
// What these sections have behind so many bytes is not there: in memory they are larger.
inline constexpr size_t most_index_bytes = 4 << 20, most_morphology_bytes = 2 << 20;

constexpr uint16_t read_u16(const uint8_t *bytes) {
    return static_cast<uint16_t>(bytes[0] | bytes[1] << 8);
}

constexpr uint32_t read_u32(const uint8_t *bytes) {
    return read_u16(bytes) | static_cast<uint32_t>(read_u16(bytes + 2)) << 16;
}

} // namespace dictionary
