// SPDX-License-Identifier: MIT
// The containers that were used last, unpacked.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "dictionary/container.h"
#include "dictionary/file.h"
#include "dictionary/index.h"

namespace dictionary {

class Cache {
  public:
    Cache() = default;
    // @param limit most bytes of an unpacked container. Throws bad_alloc.
    explicit Cache(uint32_t limit);

    // A container of the file; null, with a word on standard error, when it cannot be unpacked. It
    // stays until four others were opened. Throws bad_alloc.
    Container *open(size_t number, File &file, const Index &index);

    // What the containers have cost until now, in bytes that were read and unpacked.
    uint64_t unpacked() const { return unpacked_; }
    // The same, with those that were walked over in search of words.
    uint64_t searched() const;

  private:
    static constexpr size_t none = SIZE_MAX;
    struct Slot {
        std::unique_ptr<uint8_t[]> bytes;
        size_t number = none;
        uint64_t last_used = 0;
        Container container;
    };
    Slot &find(size_t number);
    bool fill(Slot &slot, size_t number, File &file, const Index &index);

    std::array<Slot, 4> slots_;
    uint32_t limit_ = 0;
    uint64_t uses_ = 0, unpacked_ = 0;
    Bytes packed_;
};

} // namespace dictionary
