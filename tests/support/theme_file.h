// SPDX-License-Identifier: MIT
// Makes theme files byte by byte.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>
#include <zlib.h>

class ThemeFile {
  public:
    std::string magic = "MarrowleafTheme\x01";

    explicit ThemeFile(std::string_view parameters) : parameters_(parameters) {}

    void add(std::string_view name, std::string_view unpacked) {
        const std::string packed = pack(unpacked);
        add_entry(name, unpacked.size(), offset_, packed.size());
        data_ += packed;
        offset_ += packed.size();
    }
    // An entry as it stands; the offset counts from the end of the header.
    void add_entry(std::string_view name, size_t unpacked, size_t offset, size_t packed) {
        index_.push_back({std::string(name), unpacked, offset, packed});
    }
    std::string bytes() const {
        size_t header = 32;
        for (const Entry &e : index_) header += 12 + field(e.name);
        const std::string text = pack(parameters_);
        std::string out = magic;
        for (size_t n : {header, parameters_.size(), header + data_.size(), text.size()})
            out += u32(n);
        for (const Entry &e : index_) {
            for (size_t n : {e.unpacked, header + e.offset, e.packed}) out += u32(n);
            out += e.name;
            out.append(field(e.name) - e.name.size(), '\0');
        }
        out += data_;
        return out += text;
    }
    static std::string pack(std::string_view unpacked) {
        uLongf size = compressBound(unpacked.size());
        std::string packed(size, '\0');
        compress(reinterpret_cast<Bytef *>(packed.data()), &size,
                 reinterpret_cast<const Bytef *>(unpacked.data()), unpacked.size());
        packed.resize(size);
        return packed;
    }
    static std::string u32(size_t value) {
        std::string out;
        for (int i = 0; i < 4; i++) out += static_cast<char>(value >> 8 * i);
        return out;
    }
    // A bitmap of one byte of pixels, 1 x 1 with 4 bits.
    static std::string picture(uint8_t grey) {
        return std::string("\1\0\1\0\4\0\1\0", 8) + static_cast<char>(grey);
    }

  private:
    struct Entry {
        std::string name;
        size_t unpacked, offset, packed;
    };
    static size_t field(const std::string &name) { return name.size() / 4 * 4 + 4; }

    std::string parameters_, data_;
    size_t offset_ = 0;
    std::vector<Entry> index_;
};
