// SPDX-License-Identifier: MIT
// Bytes as a picture file, loaded in ways that the last bytes choose: an ordinary picture is a
// seed.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

#include "image/limits.h"
#include "kelvane/pictures.h"

// Loaders say why they refuse a file, which here is most of them, and take pictures of a size that
// leaves time for many.
inline void prepare_loaders() {
    stderr = std::fopen("/dev/null", "w");
    image::reduction = 100;
}

class PictureFile {
  public:
    void put(const uint8_t *data, size_t size) {
        if (ftruncate(fd_, 0) != 0 || pwrite(fd_, data, size, 0) != static_cast<ssize_t>(size))
            std::abort();
    }
    const char *path() const { return path_.c_str(); }

  private:
    int fd_ = memfd_create("picture", 0);
    std::string path_ = "/proc/self/fd/" + std::to_string(fd_);
};

struct Choice {
    int width, height, proportional, flags, frame;

    Choice(const uint8_t *data, size_t size) {
        const unsigned a = size > 0 ? data[size - 1] : 0, b = size > 1 ? data[size - 2] : 0;
        width = 1 + static_cast<int>(a);
        height = b % 8 == 0 ? -1 : 1 + static_cast<int>(b);
        proportional = (a ^ b) & 1;
        flags = static_cast<int>(a * b);
        frame = b & 2 ? static_cast<int>(a * 0x10101) : -1;
    }
};

// Every byte of a result must be there.
inline void use(ibitmap *bm, const Choice &choice) {
    if (bm == nullptr) return;
    if (bm->width != choice.width) std::abort();
    unsigned sum = 0;
    for (size_t i = 0; i < size_t{bm->scanline} * bm->height; ++i) sum += bm->data[i];
    volatile unsigned used = sum;
    static_cast<void>(used);
    std::free(bm);
}
