// SPDX-License-Identifier: MIT
// Saves bitmaps as grey PNG files.
#include <algorithm>
#include <csetjmp>
#include <cstdint>
#include <new>
#include <vector>

#include <png.h>

#include "ground/guard.h"
#include "image/stream.h"
#include "kelvane/pictures.h"
#include "raster/bitmap.h"
#include "raster/bitmap_rows.h"

namespace {

using namespace image;

// One compression. libpng leaves a failing call by a jump: to be safe to jump out of, the functions
// that call it hold nothing that has a destructor.
class PngEncoder {
  public:
    // Throws std::bad_alloc.
    PngEncoder();
    PngEncoder(const PngEncoder &) = delete;
    ~PngEncoder() { png_destroy_write_struct(&png_, &info_); }

    // Each is false when the file cannot be written.
    bool start(std::FILE *f, unsigned width, unsigned height);
    bool write_row(const uint8_t *grey);
    bool finish();

  private:
    [[noreturn]] static void fail(png_structp png, png_const_charp) { png_longjmp(png, 1); }
    static void ignore(png_structp, png_const_charp) {}
    static void write(png_structp png, png_bytep bytes, size_t count);
    // Closing the file flushes it.
    static void flush(png_structp) {}

    png_structp png_;
    png_infop info_;
};

PngEncoder::PngEncoder()
    : png_(png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, fail, ignore)),
      info_(!png_ ? nullptr : png_create_info_struct(png_)) {
    if (info_) return;
    png_destroy_write_struct(&png_, nullptr);
    throw std::bad_alloc();
}

void PngEncoder::write(png_structp png, png_bytep bytes, size_t count) {
    if (kv_fwrite(bytes, 1, count, static_cast<std::FILE *>(png_get_io_ptr(png))) != count)
        png_error(png, "the file cannot be written");
}

bool PngEncoder::start(std::FILE *f, unsigned width, unsigned height) {
    if (setjmp(png_jmpbuf(png_)) != 0) return false;
    png_set_write_fn(png_, f, write, flush);
    png_set_IHDR(png_, info_, width, height, 8, PNG_COLOR_TYPE_GRAY, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png_, info_);
    return true;
}

bool PngEncoder::write_row(const uint8_t *grey) {
    if (setjmp(png_jmpbuf(png_)) != 0) return false;
    png_write_row(png_, grey);
    return true;
}

bool PngEncoder::finish() {
    if (setjmp(png_jmpbuf(png_)) != 0) return false;
    png_write_end(png_, info_);
    return true;
}

// A row as depth 2 or 4. A row that is too short for that continues in the next one, and the last
// one in white.
void read_row(const ibitmap &bm, size_t y, std::vector<uint8_t> &grey) {
    const int depth = raster::depth_of(bm) == 2 ? 2 : 4;
    const size_t bits = (raster::pixel_bytes(bm) - y * bm.scanline) * 8;
    const size_t pixels = std::min(bits / static_cast<size_t>(depth), grey.size());
    std::fill(grey.begin(), grey.end(), 255);
    raster::row_to_grey(bm.data + y * bm.scanline, depth, 0, pixels, grey.data());
}

bool write_picture(PngEncoder &encoder, std::FILE *f, const ibitmap &bm) {
    std::vector<uint8_t> grey(bm.width);
    if (!encoder.start(f, bm.width, bm.height)) return false;
    for (size_t y = 0; y < bm.height; ++y) {
        read_row(bm, y, grey);
        if (!encoder.write_row(grey.data())) return false;
    }
    return encoder.finish();
}

} // namespace

int SavePNG(const char *path, const ibitmap *bm) {
    return ground::guarded(0, [&]() -> int {
        if (!path || !bm) return 0;
        file::Replacement file(path);
        if (!is_open(file, "SavePNG", path)) return 0;
        PngEncoder encoder;
        return write_picture(encoder, file.stream(), *bm) && file.commit();
    });
}
