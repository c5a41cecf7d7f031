// SPDX-License-Identifier: MIT
// A dictionary file: its header and its sections, read with distrust.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "dictionary/format.h"
#include "file/stream.h"

struct libdeflate_decompressor;

namespace dictionary {

using Bytes = std::vector<uint8_t>;
using ByteView = std::span<const uint8_t>;

class File {
  public:
    // Throws bad_alloc.
    explicit File(file::Stream stream);

    // False when this is no dictionary, a protected one, or one whose numbers are absurd.
    bool read_header();
    uint32_t value(Field field) const { return read_u32(&header_[field]); }
    uint64_t size() const { return size_; }

    enum class Packing { none, zlib };
    // The data of a section; nothing, with a word on standard error, when it cannot be read.
    // Throws bad_alloc.
    std::optional<Bytes> read_section(Field field, Packing packing);
    // What zlib data unpacks to, in the place of `to`; its size, or nothing when it is damaged or
    // larger.
    std::optional<size_t> unpack(ByteView packed, std::span<uint8_t> to);
    // All bytes of a part of the file, or false.
    bool read(uint64_t offset, std::span<uint8_t> to);

  private:
    struct Extent {
        uint32_t start;
        int64_t size;
    };
    Extent extent(Field field) const;
    bool is_sound(const Extent &e) const;
    bool is_inside(const Extent &e) const;
    bool is_bearable(Field field);
    bool measure();

    struct UnpackerDeleter {
        void operator()(libdeflate_decompressor *unpacker) const;
    };

    file::Stream stream_;
    std::unique_ptr<libdeflate_decompressor, UnpackerDeleter> unpacker_;
    uint64_t size_ = 0;
    std::array<uint8_t, header_bytes> header_{};
};

} // namespace dictionary
