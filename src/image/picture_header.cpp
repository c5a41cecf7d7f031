// SPDX-License-Identifier: MIT
// Reads the headers of four formats, and of the EXIF data in two of them, without their libraries:
// a list of a hundred pictures asks for their sizes.
#include "image/picture_header.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <unistd.h>

#include "bmp/bmp.h"
#include "image/limits.h"

namespace image {
namespace {

enum class Order { little, big };

// A file through a window of 4 KB. What lies beyond its end is 0.
class Bytes {
  public:
    explicit Bytes(std::FILE *file) : fd_(fileno(file)) {}

    uint8_t u8(int64_t at) {
        if (at >= end_) return 0;
        if (at < start_ || at >= start_ + length_) fill(at);
        return at < start_ + length_ ? window_[static_cast<size_t>(at - start_)] : uint8_t{0};
    }
    uint16_t u16(int64_t at, Order order) {
        const unsigned first = u8(at), second = u8(at + 1);
        return static_cast<uint16_t>(order == Order::big ? first << 8 | second
                                                         : second << 8 | first);
    }
    uint32_t u32(int64_t at, Order order) {
        const uint32_t first = u16(at, order), second = u16(at + 2, order);
        return order == Order::big ? first << 16 | second : second << 16 | first;
    }
    bool has(int64_t at, std::string_view text) {
        for (const char c : text)
            if (u8(at++) != static_cast<uint8_t>(c)) return false;
        return true;
    }

  private:
    void fill(int64_t at) {
        const ssize_t got = pread(fd_, window_.data(), window_.size(), at);
        start_ = at;
        length_ = got > 0 ? got : 0;
        if (length_ == 0) end_ = std::min(end_, at);
    }

    int fd_;
    int64_t start_ = 0, length_ = 0;
    int64_t end_ = INT64_MAX; // nothing was there from here on
    std::array<uint8_t, 4096> window_;
};

constexpr int most_entries = 1000; // of a directory that are looked at

int limited(uint32_t side) {
    return static_cast<int>(std::min<uint32_t>(side, max_side + 1));
}

// The first directory of a TIFF file, or of EXIF data, which are one within another file.
class Directory {
  public:
    Directory(Bytes &bytes, int64_t base) : bytes_(bytes) {
        if (bytes.has(base, {"II*\0", 4}))
            order_ = Order::little;
        else if (bytes.has(base, {"MM\0*", 4}))
            order_ = Order::big;
        else
            return;
        at_ = base + bytes.u32(base + 4, order_);
        count_ = std::min<int>(bytes.u16(at_, order_), most_entries);
    }
    // The number of a tag; 0 where there is none.
    uint32_t find(uint16_t tag) {
        constexpr int entry_bytes = 12, short_type = 3, long_type = 4;
        for (int64_t i = 0, at = at_ + 2; i < count_; ++i, at += entry_bytes) {
            if (bytes_.u16(at, order_) != tag) continue;
            const uint16_t type = bytes_.u16(at + 2, order_);
            if (type == short_type) return bytes_.u16(at + 8, order_);
            return type == long_type ? bytes_.u32(at + 8, order_) : 0;
        }
        return 0;
    }

  private:
    Bytes &bytes_;
    int64_t at_ = 0;
    int count_ = 0;
    Order order_ = Order::little;
};

int orientation_in(Directory directory) {
    constexpr uint16_t tag = 274;
    const uint32_t found = directory.find(tag);
    return found >= upright && found <= last_orientation ? static_cast<int>(found) : upright;
}

constexpr int most_parts = 1000; // of a file, before its pixels

PictureHeader png_header(Bytes &bytes) {
    PictureHeader header{Format::png,
                         {limited(bytes.u32(16, Order::big)), limited(bytes.u32(20, Order::big))}};
    int64_t at = 8;
    for (int part = 0; part < most_parts; ++part) {
        const uint32_t size = bytes.u32(at, Order::big);
        if (bytes.has(at + 4, "IDAT") || bytes.has(at + 4, "IEND")) break;
        if (bytes.has(at + 4, "eXIf")) {
            header.orientation = orientation_in({bytes, at + 8});
            break;
        }
        at += int64_t{size} + 12;
    }
    return header;
}

// Start of a frame, of which there are several kinds.
bool is_frame(uint8_t marker) {
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

PictureHeader jpeg_header(Bytes &bytes) {
    constexpr uint8_t application_1 = 0xE1, scan = 0xDA, end = 0xD9;
    constexpr std::string_view exif{"Exif\0\0", 6};
    PictureHeader header{Format::jpeg, {0, 0}};
    bool has_exif = false;
    int64_t at = 2;
    for (int part = 0; part < most_parts && bytes.u8(at) == 0xFF; ++part) {
        const uint8_t marker = bytes.u8(at + 1);
        if (marker == 0xFF) { // one that fills
            ++at;
            continue;
        }
        if (marker == scan || marker == end) break;
        if (is_frame(marker)) {
            header.stored = {bytes.u16(at + 7, Order::big), bytes.u16(at + 5, Order::big)};
            break;
        }
        if (marker == application_1 && !has_exif && bytes.has(at + 4, exif)) {
            header.orientation = orientation_in({bytes, at + 10});
            has_exif = true;
        }
        at += 2 + int64_t{bytes.u16(at + 2, Order::big)};
    }
    return header;
}

PictureHeader tiff_header(Bytes &bytes) {
    constexpr uint16_t width = 256, height = 257;
    Directory directory(bytes, 0);
    return {Format::tiff,
            {limited(directory.find(width)), limited(directory.find(height))},
            orientation_in(directory)};
}

PictureHeader bmp_header(Bytes &bytes) {
    if (bytes.u32(bmp::INFO_SIZE, Order::little) == bmp::core_info_size)
        return {Format::bmp, {bytes.u16(18, Order::little), bytes.u16(20, Order::little)}};
    const auto height = static_cast<int32_t>(bytes.u32(bmp::HEIGHT, Order::little));
    return {Format::bmp,
            {limited(bytes.u32(bmp::WIDTH, Order::little)),
             limited(static_cast<uint32_t>(std::abs(int64_t{height})))}};
}

std::optional<PictureHeader> header_of(Bytes &bytes) {
    if (bytes.has(0, "\x89PNG\r\n\x1A\n") && bytes.has(12, "IHDR")) return png_header(bytes);
    if (bytes.has(0, "\xFF\xD8\xFF")) return jpeg_header(bytes);
    if (bytes.has(0, {"II*\0", 4}) || bytes.has(0, {"MM\0*", 4})) return tiff_header(bytes);
    if (bytes.has(0, "BM")) return bmp_header(bytes);
    return {};
}

} // namespace

std::optional<PictureHeader> read_picture_header(std::FILE *file) {
    Bytes bytes(file);
    std::optional<PictureHeader> header = header_of(bytes);
    if (header && !is_reasonable(header->stored)) header.reset();
    return header;
}

} // namespace image
