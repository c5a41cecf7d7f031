// SPDX-License-Identifier: MIT
// Decodes and joins a text piece by piece, and finds its direction.
#include "text/reader.h"

#include <algorithm>
#include <cstring>

#include "ground/utf8.h"

namespace text {
namespace {

constexpr size_t piece = 256;      // characters that are decoded at once
constexpr size_t longest_utf8 = 4; // bytes of a character
constexpr size_t block = 64;       // bytes that are looked at at once

// Without early ends, so that the loop looks at many bytes at once.
bool has_letters(const char *s) {
    unsigned found = 0;
    for (size_t i = 0; i < block; ++i) {
        const auto byte = static_cast<uint8_t>(s[i]);
        found |= (byte >= 0x80) | (static_cast<uint8_t>((byte | 0x20) - 'a') < 26);
    }
    return found != 0;
}

} // namespace

void Reader::make_room(size_t count) {
    if (count <= room_) return;
    const size_t room = std::max(count, 4 * room_);
    auto larger = std::make_unique_for_overwrite<uint16_t[]>(room);
    std::copy_n(data_, decoded_.count, larger.get());
    heap_ = std::move(larger);
    data_ = heap_.get();
    room_ = room;
}

void Reader::decode() {
    // What waits to be joined is looked at again with each piece: so pieces grow with it.
    const size_t wanted = std::max(piece, decoded_.count - size_);
    const size_t count = std::min(wanted, most_ - decoded_.count);
    make_room(decoded_.count + count);
    before_ = decoded_;
    // Enough bytes, or the end of the text: no character is cut.
    const char *const end = decoded_.next + strnlen(decoded_.next, longest_utf8 * count);
    decoded_.count += utf8::decode(decoded_.next, end, data_ + decoded_.count, count);
    is_decoded_ = *decoded_.next == '\0' || decoded_.count == most_;
}

bool Reader::read() {
    const size_t former = size_;
    while (size_ == former) {
        if (size_ == decoded_.count) {
            if (is_decoded_) return false;
            decode();
        }
        size_ = static_cast<size_t>(joining_.join(data_, size(), static_cast<int>(decoded_.count),
                                                  is_decoded_ ? More::no : More::yes));
        if (size_ == former && !is_decoded_) decode();
    }
    return true;
}

// No more of the text than it takes, and at most all that may be read.
Direction Reader::find_direction() const {
    for (size_t i = 0; i < decoded_.count; ++i)
        if (const Direction found = strong_direction(data_[i]); found != Direction::none)
            return found;
    const char *s = decoded_.next;
    for (size_t left = most_ - decoded_.count; left > 0 && *s != '\0'; --left) {
        for (; left > block && strnlen(s, block) == block && !has_letters(s); s += block)
            left -= block;
        const uint16_t c = utf8::next(s, s + strnlen(s, longest_utf8));
        if (const Direction found = strong_direction(c); found != Direction::none) return found;
    }
    return Direction::left_to_right;
}

Direction Reader::direction() {
    if (direction_ == Direction::none) direction_ = find_direction();
    return direction_;
}

const char *Reader::address(int at) const {
    const auto count = static_cast<size_t>(at);
    const Place from = count < before_.count ? Place{utf8_, 0} : before_;
    return utf8::skip(from.next, decoded_.next, count - from.count);
}

} // namespace text
