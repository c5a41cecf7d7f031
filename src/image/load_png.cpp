// SPDX-License-Identifier: MIT
// PNG files, decoded by libpng from memory.
#include <array>
#include <csetjmp>
#include <cstdint>
#include <cstring>
#include <new>
#include <span>
#include <vector>

#include <png.h>

#include "ground/guard.h"
#include "ground/log.h"
#include "image/decode.h"
#include "image/from_memory.h"
#include "image/limits.h"
#include "image/pipeline.h"
#include "image/stream.h"
#include "kelvane/pictures.h"
#include "raster/pixels.h"

namespace {

using namespace image;

constexpr const char *function = "LoadPNGStretch";

// What libpng hands out a row of.
enum class Pixels {
    grey,
    palette, // one byte each
    grey_alpha,
    rgb,
    rgb_keyed, // three colours, and an alpha made from the one transparent colour
    rgba
};

// A grey composited onto white.
uint8_t on_white(int grey, int alpha) {
    const int transparency = 255 - alpha;
    return static_cast<uint8_t>(grey + transparency - grey * transparency / 255);
}

// The loaders of PNG have always weighed colours without an alpha of their own from the wrong end,
// and pictures are made to look right that way.
enum class Weights { exchanged, right };

uint8_t grey_of(Weights weights, const uint8_t *rgb) {
    return weights == Weights::right ? raster::grey_of(rgb[0], rgb[1], rgb[2])
                                     : raster::grey_of(rgb[2], rgb[1], rgb[0]);
}

using Palette = std::array<uint8_t, 256>; // the grey of each index

void to_grey(Pixels kind, Weights weights, const Palette &palette, const uint8_t *p,
             std::span<uint8_t> row) {
    switch (kind) {
    case Pixels::grey:
        std::memcpy(row.data(), p, row.size());
        break;
    case Pixels::palette:
        for (uint8_t &grey : row) grey = palette[*p++];
        break;
    case Pixels::grey_alpha:
        for (uint8_t &grey : row) grey = on_white(p[0], p[1]), p += 2;
        break;
    case Pixels::rgb:
        for (uint8_t &grey : row) grey = grey_of(weights, p), p += 3;
        break;
    case Pixels::rgb_keyed:
        for (uint8_t &grey : row) grey = on_white(grey_of(weights, p), p[3]), p += 4;
        break;
    case Pixels::rgba:
        for (uint8_t &grey : row) grey = on_white(raster::grey_of(p[0], p[1], p[2]), p[3]), p += 4;
        break;
    }
}

// One decompression. libpng leaves a failing call by a jump: to be safe to jump out of, the
// functions that call it hold nothing that has a destructor.
class PngDecoder {
  public:
    // `file` outlives the decoder. Throws std::bad_alloc.
    PngDecoder(std::span<const uint8_t> file, Weights weights);
    PngDecoder(const PngDecoder &) = delete;
    ~PngDecoder() { png_destroy_read_struct(&png_, &info_, nullptr); }

    // Each is false when the file is damaged.
    bool read_header();
    bool start();
    bool read_rows(Pipeline &pipeline, uint8_t *raw);
    // The same of an interlaced file, with room for all rows.
    bool read_image(Pipeline &pipeline, uint8_t *raw);

    Size size() const {
        return {static_cast<int>(png_get_image_width(png_, info_)),
                static_cast<int>(png_get_image_height(png_, info_))};
    }
    bool is_interlaced() const { return png_get_interlace_type(png_, info_) != PNG_INTERLACE_NONE; }
    size_t row_bytes() const { return png_get_rowbytes(png_, info_); }

  private:
    [[noreturn]] static void fail(png_structp png, png_const_charp) { png_longjmp(png, 1); }
    static void ignore(png_structp, png_const_charp) {}
    static void read(png_structp png, png_bytep to, size_t count);
    void choose_pixels();
    void read_palette();
    void put_row(Pipeline &pipeline, const uint8_t *raw) const;

    std::span<const uint8_t> unread_;
    const Weights weights_;
    png_structp png_;
    png_infop info_;
    int passes_ = 1;
    Pixels pixels_ = Pixels::grey;
    Palette palette_{};
};

PngDecoder::PngDecoder(std::span<const uint8_t> file, Weights weights)
    : unread_(file), weights_(weights),
      png_(png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, fail, ignore)),
      info_(!png_ ? nullptr : png_create_info_struct(png_)) {
    if (info_) return;
    png_destroy_read_struct(&png_, nullptr, nullptr);
    throw std::bad_alloc();
}

void PngDecoder::read(png_structp png, png_bytep to, size_t count) {
    auto &unread = static_cast<PngDecoder *>(png_get_io_ptr(png))->unread_;
    if (count > unread.size()) png_error(png, "the file is cut short");
    std::memcpy(to, unread.data(), count);
    unread = unread.subspan(count);
}

bool PngDecoder::read_header() {
    if (setjmp(png_jmpbuf(png_)) != 0) return false;
    png_set_read_fn(png_, this, read);
    png_set_user_limits(png_, max_side, max_side);
    // Profiles and texts are not needed, and may unpack to much more than they are.
    png_set_keep_unknown_chunks(png_, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
    png_read_info(png_, info_);
    return true;
}

bool PngDecoder::start() {
    if (setjmp(png_jmpbuf(png_)) != 0) return false;
    png_set_strip_16(png_);
    png_set_packing(png_);
    choose_pixels();
    passes_ = png_set_interlace_handling(png_);
    png_read_update_info(png_, info_);
    return true;
}

void PngDecoder::choose_pixels() {
    const bool keyed = png_get_valid(png_, info_, PNG_INFO_tRNS) != 0;
    switch (png_get_color_type(png_, info_)) {
    case PNG_COLOR_TYPE_PALETTE:
        pixels_ = Pixels::palette;
        return read_palette();
    case PNG_COLOR_TYPE_GRAY:
        png_set_expand_gray_1_2_4_to_8(png_);
        pixels_ = keyed ? Pixels::grey_alpha : Pixels::grey;
        break;
    case PNG_COLOR_TYPE_GRAY_ALPHA:
        pixels_ = Pixels::grey_alpha;
        break;
    case PNG_COLOR_TYPE_RGB:
        pixels_ = keyed ? Pixels::rgb_keyed : Pixels::rgb;
        break;
    default:
        pixels_ = Pixels::rgba;
    }
    if (keyed) png_set_tRNS_to_alpha(png_);
}

// Indexes without a colour stay black.
void PngDecoder::read_palette() {
    png_colorp colors = nullptr;
    png_bytep alphas = nullptr;
    int color_count = 0, alpha_count = 0;
    png_get_PLTE(png_, info_, &colors, &color_count);
    png_get_tRNS(png_, info_, &alphas, &alpha_count, nullptr);
    for (int i = 0; i < color_count; ++i) {
        const uint8_t rgb[] = {colors[i].red, colors[i].green, colors[i].blue};
        palette_[static_cast<size_t>(i)] =
            on_white(grey_of(weights_, rgb), i < alpha_count ? alphas[i] : 255);
    }
}

bool PngDecoder::read_rows(Pipeline &pipeline, uint8_t *raw) {
    if (setjmp(png_jmpbuf(png_)) != 0) return false;
    const Size s = size();
    for (int y = 0; y < s.height; ++y) {
        const bool used = pipeline.row_is_used();
        png_read_row(png_, used ? raw : nullptr, nullptr);
        if (used) put_row(pipeline, raw);
        pipeline.row_done();
    }
    png_read_end(png_, nullptr);
    return true;
}

void PngDecoder::put_row(Pipeline &pipeline, const uint8_t *raw) const {
    to_grey(pixels_, weights_, palette_, raw, {pipeline.row(), static_cast<size_t>(size().width)});
}

bool PngDecoder::read_image(Pipeline &pipeline, uint8_t *raw) {
    if (setjmp(png_jmpbuf(png_)) != 0) return false;
    const auto height = static_cast<size_t>(size().height);
    for (int pass = 0; pass < passes_; ++pass)
        for (size_t y = 0; y < height; ++y) png_read_row(png_, raw + y * row_bytes(), nullptr);
    png_read_end(png_, nullptr);
    for (size_t y = 0; y < height; ++y) {
        if (pipeline.row_is_used()) put_row(pipeline, raw + y * row_bytes());
        pipeline.row_done();
    }
    return true;
}

// Without a path nobody is told.
raster::BitmapPtr refused(const char *format, const char *path) {
    if (path) kv_warn(function, format, path);
    return nullptr;
}

raster::BitmapPtr load(const char *path, Size wanted, Scaling scaling) {
    const Stream file = open_picture(function, path);
    if (!file) return nullptr;
    const auto bytes = file::read_whole(file.get(), max_file_bytes);
    if (!bytes) return refused("error laoding %s\n", path);
    return load_png(bytes->raw(), path, wanted, scaling);
}

} // namespace

raster::BitmapPtr image::load_png(std::span<const uint8_t> bytes, const char *path, Size wanted,
                                  Scaling scaling) {
    PngDecoder decoder(bytes, Weights::exchanged);
    if (!decoder.read_header()) return refused("error reading file info %s\n", path);
    if (decoder.is_interlaced()) return refused("number_passes>1 - error\n", path);
    const Size size = decoder.size();
    // Rows as they stand in the file: unpacking them takes longer than all that follows.
    if (!is_reasonable(size, decoder.row_bytes())) throw std::bad_alloc();
    if (!decoder.start()) return refused("error laoding %s\n", path);
    Pipeline pipeline(size, resolved(wanted, size), scaling,
                      {png_curve(), no_frame, dithering_levels()});
    std::vector<uint8_t> raw(decoder.row_bytes());
    if (!decoder.read_rows(pipeline, raw.data())) return refused("error laoding %s\n", path);
    return pipeline.finish();
}

raster::BitmapPtr image::decode_png(std::span<const uint8_t> file, const Request &request) {
    PngDecoder decoder(file, Weights::right);
    if (!decoder.read_header()) return nullptr;
    const Size size = decoder.size();
    if (!is_reasonable(size, decoder.row_bytes())) throw std::bad_alloc();
    if (!decoder.start()) return nullptr;
    const bool is_interlaced = decoder.is_interlaced();
    if (is_interlaced && !is_reasonable(size, decoder.row_bytes())) throw std::bad_alloc();
    Pipeline pipeline(size, request.place(size), request.finish);
    std::vector<uint8_t> raw(decoder.row_bytes() *
                             (is_interlaced ? static_cast<size_t>(size.height) : 1));
    const bool is_whole = is_interlaced ? decoder.read_image(pipeline, raw.data())
                                        : decoder.read_rows(pipeline, raw.data());
    return is_whole ? pipeline.finish() : nullptr;
}

ibitmap *LoadPNG(const char *path, int dither) {
    return LoadPNGStretch(path, -1, -1, 0, dither);
}

ibitmap *LoadPNGStretch(const char *path, int width, int height, int proportional, int) {
    return ground::guarded_or(
        [&]() -> ibitmap * {
            const Size wanted{width, height};
            if (!path || !is_request(wanted)) return nullptr;
            return load(path, wanted, scaling_of(proportional)).release();
        },
        [&]() -> ibitmap * {
            kv_warn(function, "cannot allocate memory\n");
            return nullptr;
        });
}
