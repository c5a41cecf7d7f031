// SPDX-License-Identifier: MIT
// A text that is read as far as its lines are laid out: a page costs what is on it, however long
// the text goes on.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "text/bidi.h"
#include "text/joining.h"

namespace text {

// What is read is what decoding the whole text and joining its letters would give.
class Reader {
  public:
    // No more than the first `most` characters are read.
    Reader(const char *utf8, size_t most) : utf8_(utf8), most_(most) {}
    Reader(const Reader &) = delete;
    Reader &operator=(const Reader &) = delete;

    // What has been read. Reading more moves it.
    uint16_t *data() { return data_; }
    int size() const { return static_cast<int>(size_); }
    // Reads more. False at the end of the text.
    bool read();
    // Reads up to a character. False when the text has none there.
    bool has(int at) {
        while (at >= size())
            if (!read()) return false;
        return true;
    }
    // Whether the text, of which all that may be read is read, ends there.
    bool is_whole() const { return is_decoded_ && *decoded_.next == '\0'; }
    // That of the first character which has one.
    Direction direction();
    // Where a character that was read begins.
    const char *address(int at) const;

  private:
    void decode();
    void make_room(size_t count);
    Direction find_direction() const;

    const char *const utf8_;
    const size_t most_;
    // All is decoded before `next`, and letters are joined among the first `size_` characters.
    struct Place {
        const char *next;
        size_t count;
    };
    Place decoded_{utf8_, 0}, before_{utf8_, 0}; // up to now, and before the last piece
    size_t size_ = 0;
    bool is_decoded_ = false; // all of it
    Joining joining_;
    Direction direction_ = Direction::none;

    uint16_t local_[1024]; // a page mostly needs no more
    std::unique_ptr<uint16_t[]> heap_;
    uint16_t *data_ = local_;
    size_t room_ = sizeof local_ / sizeof *local_;
};

} // namespace text
