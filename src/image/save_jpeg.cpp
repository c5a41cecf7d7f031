// SPDX-License-Identifier: MIT
// Saves bitmaps as grey JPEG files.
#include <algorithm>
#include <csetjmp>
#include <cstdint>
#include <cstdio>
#include <vector>

#include <jpeglib.h>

#include "ground/guard.h"
#include "image/stream.h"
#include "kelvane/pictures.h"
#include "raster/bitmap.h"
#include "raster/bitmap_rows.h"

namespace {

using namespace image;

// One compression. libjpeg leaves a failing call by a jump: to be safe to jump out of, the
// functions that call it hold nothing that has a destructor.
class JpegEncoder {
  public:
    JpegEncoder();
    JpegEncoder(const JpegEncoder &) = delete;
    ~JpegEncoder() { jpeg_destroy_compress(&info_); }

    // Each is false when the file cannot be written.
    bool start(std::FILE *f, unsigned width, unsigned height, int quality);
    bool write_row(uint8_t *grey);
    bool finish();

  private:
    [[noreturn]] static void fail(j_common_ptr info) {
        std::longjmp(static_cast<JpegEncoder *>(info->client_data)->failure_, 1);
    }
    static void ignore(j_common_ptr, int) {}

    jpeg_compress_struct info_{};
    jpeg_error_mgr errors_{};
    std::jmp_buf failure_;
};

JpegEncoder::JpegEncoder() {
    info_.err = jpeg_std_error(&errors_);
    info_.client_data = this;
    errors_.error_exit = fail;
    errors_.emit_message = ignore;
}

bool JpegEncoder::start(std::FILE *f, unsigned width, unsigned height, int quality) {
    if (setjmp(failure_) != 0) return false;
    jpeg_create_compress(&info_);
    jpeg_stdio_dest(&info_, f);
    info_.image_width = width;
    info_.image_height = height;
    info_.input_components = 1;
    info_.in_color_space = JCS_GRAYSCALE;
    jpeg_set_defaults(&info_);
    jpeg_set_quality(&info_, quality, TRUE);
    info_.optimize_coding = TRUE;
    jpeg_start_compress(&info_, TRUE);
    return true;
}

bool JpegEncoder::write_row(uint8_t *grey) {
    if (setjmp(failure_) != 0) return false;
    jpeg_write_scanlines(&info_, &grey, 1);
    return true;
}

bool JpegEncoder::finish() {
    if (setjmp(failure_) != 0) return false;
    jpeg_finish_compress(&info_);
    return true;
}

// A row that is too short for its pixels continues in the next one, and the last one in white.
void read_row(const ibitmap &bm, size_t y, std::vector<uint8_t> &grey) {
    const int depth = raster::depth_of(bm);
    if (!raster::is_known_depth(depth)) return;
    const size_t bits = (raster::pixel_bytes(bm) - y * bm.scanline) * 8;
    const size_t pixels = std::min(bits / static_cast<size_t>(depth), grey.size());
    std::fill(grey.begin(), grey.end(), 255);
    raster::row_to_grey(bm.data + y * bm.scanline, depth, 0, pixels, grey.data());
}

bool write_picture(JpegEncoder &encoder, std::FILE *f, const ibitmap &bm, int quality) {
    std::vector<uint8_t> grey(bm.width);
    if (!encoder.start(f, bm.width, bm.height, quality)) return false;
    for (size_t y = 0; y < bm.height; ++y) {
        read_row(bm, y, grey);
        if (!encoder.write_row(grey.data())) return false;
    }
    return encoder.finish();
}

} // namespace

int SaveJPEG(const char *path, const ibitmap *bm, int quality) {
    return ground::guarded(0, [&]() -> int {
        if (!path || !bm) return 0;
        file::Replacement file(path);
        if (!is_open(file, "SaveJPEG", path)) return 0;
        JpegEncoder encoder;
        return write_picture(encoder, file.stream(), *bm, quality) && file.commit();
    });
}
