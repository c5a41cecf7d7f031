// SPDX-License-Identifier: MIT
// Foreign pixel formats to grey bytes.
//
// Each format is one loop over a row, written so that the compiler makes vectors of it; shuffling
// three-byte pixels takes SSSE3, which is asked for at run time.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

#include "ground/vectors.h"
#include "kelvane/canvas.h"

namespace {

using ConvertRow = void (*)(const uint8_t *src, uint8_t *dest, size_t width);

bool is_convertible(const kv_img_conv *conv) {
    return conv && conv->src && conv->dest && conv->width >= 1 && conv->height >= 1;
}

template <class Row>
void for_each_row(const kv_img_conv *conv, Row convert) {
    if (!is_convertible(conv)) return;
    const auto *src = static_cast<const uint8_t *>(conv->src);
    auto *dest = static_cast<uint8_t *>(conv->dest);
    for (ptrdiff_t y = 0; y < conv->height; ++y)
        convert(src + y * conv->src_scanline, dest + y * conv->dest_scanline,
                static_cast<size_t>(conv->width));
}

[[gnu::always_inline]] inline uint16_t pixel16(const uint8_t *src) {
    uint16_t v;
    std::memcpy(&v, src, sizeof v);
    return v;
}

// min(255, b5 + 5 (g5 + r4)) in bytes: only the last sum can pass 255, and then it wraps below b5.
[[gnu::always_inline]] inline uint8_t weighted(uint8_t b5, uint8_t g5, uint8_t r4) {
    const auto sum = static_cast<uint8_t>(b5 + 5 * (g5 + r4));
    return sum < b5 ? 255 : sum;
}

void rgb565_row(const uint8_t *src, uint8_t *dest, size_t width) {
    for (size_t i = 0; i < width; ++i) {
        const uint16_t v = pixel16(src + 2 * i);
        dest[i] = weighted(v & 31, v >> 6 & 31, v >> 12);
    }
}

[[gnu::always_inline]] inline void rgb24_loop(const uint8_t *src, uint8_t *dest, size_t width) {
    for (size_t i = 0; i < width; ++i)
        dest[i] = weighted(src[3 * i + 2] >> 3, src[3 * i + 1] >> 3, src[3 * i] >> 4);
}

void rgb24_row(const uint8_t *src, uint8_t *dest, size_t width) {
    rgb24_loop(src, dest, width);
}

#ifdef KELVANE_X86_64
[[gnu::target("ssse3")]] void rgb24_row_ssse3(const uint8_t *src, uint8_t *dest, size_t width) {
    rgb24_loop(src, dest, width);
}

ConvertRow rgb24_row_for_this_machine() {
    return __builtin_cpu_supports("ssse3") ? rgb24_row_ssse3 : rgb24_row;
}
#else
ConvertRow rgb24_row_for_this_machine() {
    return rgb24_row;
}
#endif

void gs4_row(const uint8_t *src, uint8_t *dest, size_t width) {
    for (size_t i = 0; i < width / 2; ++i) {
        dest[2 * i] = static_cast<uint8_t>((src[i] & 0xF0) | src[i] >> 4);
        dest[2 * i + 1] = static_cast<uint8_t>((src[i] & 0x0F) | src[i] << 4);
    }
    if (width % 2 != 0) dest[width - 1] = static_cast<uint8_t>((src[width / 2] >> 4) * 17);
}

// The low byte of a 16-bit pixel as if it were a whole one, into the second of two bytes.
void gray4_row(const uint8_t *src, uint8_t *dest, size_t width) {
    for (size_t i = 0; i < width; ++i) {
        const uint8_t v = src[2 * i];
        dest[2 * i] = 0;
        dest[2 * i + 1] = static_cast<uint8_t>((v >> 6) * 5 + (v & 31));
    }
}

// Rows that are copied faster by words in line than by a call of memcpy() for each.
bool is_short_row(int width) {
    return width >= 32 && width <= 256;
}

template <size_t size>
using Word [[gnu::vector_size(size)]] = uint8_t;

// A copy of known size is not always one move of a register; a word's is.
template <size_t size>
[[gnu::always_inline]] inline void copy_word(uint8_t *to, const uint8_t *from) {
    Word<size> word;
    std::memcpy(&word, from, size);
    std::memcpy(to, &word, size);
}

// The last word of a row may overlap the one before. Works on a copy, since for all the compiler
// knows a pixel is written over the record.
template <size_t word>
[[gnu::always_inline]] inline void copy_words(const kv_img_conv &conv) {
    const auto *src = static_cast<const uint8_t *>(conv.src);
    auto *dest = static_cast<uint8_t *>(conv.dest);
    const ptrdiff_t src_step = conv.src_scanline, dest_step = conv.dest_scanline;
    const ptrdiff_t last = conv.width - static_cast<ptrdiff_t>(word);
    for (int rows = conv.height; rows > 0; --rows, src += src_step, dest += dest_step) {
        for (ptrdiff_t i = 0; i < last; i += word) copy_word<word>(dest + i, src + i);
        copy_word<word>(dest + last, src + last);
    }
}

#ifdef KELVANE_X86_64
[[gnu::target("avx2")]] void copy_wide_words(const kv_img_conv &conv) {
    copy_words<32>(conv);
}

void copy_short_rows(const kv_img_conv &conv) {
    __builtin_cpu_supports("avx2") ? copy_wide_words(conv) : copy_words<16>(conv);
}
#else
void copy_short_rows(const kv_img_conv &conv) {
    copy_words<16>(conv);
}
#endif

// The power curves of the components. A value past a byte, which only a gamma below 0 gives, makes
// any sum white, so it is kept as 255.
class GammaTables {
  public:
    void set(double gamma) {
        if (gamma == gamma_) return;
        gamma_ = gamma;
        build(five_bits_, gamma);
        build(four_bits_, gamma);
    }
    uint8_t grey(uint16_t v) const {
        const int sum = five_bits_[v & 31] + 5 * (five_bits_[v >> 6 & 31] + four_bits_[v >> 12]);
        return static_cast<uint8_t>(std::min(sum, 255));
    }

  private:
    template <size_t size>
    static void build(std::array<uint8_t, size> &table, double gamma) {
        constexpr double top = size - 1;
        for (size_t i = 0; i < size; ++i) {
            const double level = std::round(top * std::pow(static_cast<double>(i) / top, gamma));
            table[i] = static_cast<uint8_t>(level < 255 ? level : 255);
        }
    }

    double gamma_ = std::numeric_limits<double>::quiet_NaN();
    std::array<uint8_t, 32> five_bits_{};
    std::array<uint8_t, 16> four_bits_{};
};

// Kept from call to call, as a caller converts many pictures with one gamma.
GammaTables gamma_tables;

} // namespace

void kv_rgb565_to_gs(const kv_img_conv *conv) {
    for_each_row(conv, rgb565_row);
}

void kv_rgb565_to_gs_with_gamma(const kv_img_conv *conv, double gamma) {
    kv_rgb565_to_gs_with_gamma_c(conv, gamma);
}

void kv_rgb565_to_gs_with_gamma_c(const kv_img_conv *conv, double gamma) {
    gamma_tables.set(gamma);
    for_each_row(conv, [](const uint8_t *src, uint8_t *dest, size_t width) {
        for (size_t i = 0; i < width; ++i) dest[i] = gamma_tables.grey(pixel16(src + 2 * i));
    });
}

void kv_rgb24_to_gs(const kv_img_conv *conv) {
    for_each_row(conv, rgb24_row_for_this_machine());
}

void kv_gray4_to_gs(const kv_img_conv *conv) {
    for_each_row(conv, gray4_row);
}

void kv_gs4_to_gs(const kv_img_conv *conv) {
    for_each_row(conv, gs4_row);
}

void kv_gs_to_gs(const kv_img_conv *conv) {
    if (is_convertible(conv) && is_short_row(conv->width)) return copy_short_rows(*conv);
    for_each_row(conv, [](const uint8_t *src, uint8_t *dest, size_t width) {
        std::memcpy(dest, src, width);
    });
}
