// SPDX-License-Identifier: MIT
// A theme file: a parameter text and named resources, each packed by zlib.
#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "file/stream.h"
#include "ground/heap.h"

namespace theme {

// The parts of a file that do not depend on what is packed.
inline constexpr std::string_view file_magic = "MarrowleafTheme";
inline constexpr uint8_t file_version = 1;
inline constexpr uint32_t file_fixed_size = 32;  // before the index
inline constexpr size_t file_entry_numbers = 12; // before the name of an entry
inline constexpr size_t file_name_field(size_t length) {
    return length / 4 * 4 + 4;
}
// What unpacks to more is no resource of a theme.
inline constexpr uint32_t largest_header = 16 << 20, largest_resource = 64 << 20;
// A theme that exceeds these would cost more memory and time than a device has: a few pictures are
// unpacked whenever a theme is opened, and each line of the text is kept. A picture may fill the
// largest display in 24 bits.
inline constexpr uint32_t largest_picture = 8 << 20, largest_text = 4 << 20;
// Only blank pictures are packed better than this.
inline constexpr uint32_t best_ratio = 100;
// What all resources of a theme may unpack to; what comes behind in the index is not there.
inline constexpr uint64_t largest_theme = 256 << 20;
inline constexpr bool can_be_resource(uint64_t unpacked, uint64_t packed) {
    return std::max(unpacked, packed) <= largest_resource &&
           (unpacked <= largest_picture || unpacked / best_ratio <= packed);
}

// Unpacked bytes, with four spare zero bytes behind them.
struct Block {
    ground::HeapPtr<uint8_t> bytes;
    size_t size = 0;
};

class Container {
  public:
    explicit Container(file::Stream file) : file_(std::move(file)) {}

    // Reads the header; false when it is not that of a theme. Throws bad_alloc, as all the others.
    bool read_header();
    // The parameter text; none when it does not unpack.
    Block unpack_parameters() const;
    // Names are compared whatever their case.
    bool has(std::string_view name) const;
    // A resource as it is; none when it is not there, is larger than `most` or does not unpack.
    Block unpack(std::string_view name, uint32_t most = UINT32_MAX) const;
    // The resources that lie inside the file as the index names them, in its order.
    const std::vector<std::string> &names() const { return names_; }
    // How many others the index has: outside the file, too large, alone or with those before, or of
    // a name it had before.
    size_t left_out() const { return left_out_; }

  private:
    struct Packed {
        uint32_t unpacked_size, offset, packed_size;
    };

    bool read_head();
    std::string read_at(uint32_t offset, size_t size) const;
    void read_index(std::string_view index);
    void add(std::string_view name, const Packed &entry);
    bool is_inside(const Packed &entry) const;
    Block unpack(const Packed &entry) const;

    file::Stream file_;
    std::string head_; // the start of the file
    uint64_t file_size_ = 0;
    uint32_t header_size_ = 0;
    Packed parameters_{};
    std::map<std::string, Packed>
        resources_; // by name in lower case; a hash could be made to collide
    std::vector<std::string> names_;
    size_t left_out_ = 0;
    uint64_t unpacked_size_ = 0; // of all resources
};

} // namespace theme
