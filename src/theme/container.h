// SPDX-License-Identifier: MIT
// A theme file: a parameter text and named resources, each packed by zlib.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "kelvane/files.h"

namespace theme {

struct Free {
    void operator()(void *block) const { std::free(block); }
};

// Unpacked bytes, with four spare zero bytes behind them.
struct Block {
    std::unique_ptr<uint8_t, Free> bytes;
    size_t size = 0;
};

class Container {
  public:
    // Null when there is no such file.
    static std::unique_ptr<Container> open(const std::string &path);

    // Reads the header; false when it is not that of a theme. Throws bad_alloc, as all the others.
    bool read_header();
    // The parameter text; none when it does not unpack.
    Block unpack_parameters() const;
    // Names are compared whatever their case.
    bool has(std::string_view name) const;
    // A resource as it is; none when it is not there or does not unpack.
    Block unpack(std::string_view name) const;

  private:
    struct Packed {
        uint32_t unpacked_size, offset, packed_size;
    };
    struct Close {
        void operator()(std::FILE *f) const { kv_fclose_no_sync(f); }
    };

    explicit Container(std::FILE *file) : file_(file) {}
    void read_index(std::string_view index);
    bool is_inside(const Packed &entry) const;
    Block unpack(const Packed &entry) const;

    std::unique_ptr<std::FILE, Close> file_;
    uint64_t file_size_ = 0;
    uint32_t header_size_ = 0;
    Packed parameters_{};
    std::unordered_map<std::string, Packed> resources_; // by name in lower case
};

} // namespace theme
