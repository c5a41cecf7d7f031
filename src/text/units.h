// SPDX-License-Identifier: MIT
// Text as the 16-bit characters that layout works on.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

#include "ground/utf8.h"

namespace text {

// A decoded text; short ones need no heap.
class Units {
  public:
    Units(const char *utf8, size_t bytes) {
        const size_t room = std::min<size_t>(bytes, INT32_MAX);
        data_ = local_;
        if (room > std::size(local_)) {
            heap_ = std::make_unique_for_overwrite<uint16_t[]>(room);
            data_ = heap_.get();
        }
        size_ = static_cast<int>(utf8::decode(utf8, utf8 + bytes, data_, room));
    }
    explicit Units(const char *utf8) : Units(utf8, std::strlen(utf8)) {}
    Units(const Units &) = delete;
    Units &operator=(const Units &) = delete;

    uint16_t *data() { return data_; }
    int size() const { return size_; }

  private:
    uint16_t local_[128];
    std::unique_ptr<uint16_t[]> heap_;
    uint16_t *data_;
    int size_;
};

} // namespace text
