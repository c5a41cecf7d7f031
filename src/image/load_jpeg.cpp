// SPDX-License-Identifier: MIT
// JPEG files, decoded to grey by libjpeg, reduced when the bitmap is much smaller.
#include <algorithm>
#include <csetjmp>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <unistd.h>
#include <vector>

#include <jpeglib.h>

#include <jerror.h>

#include "ground/guard.h"
#include "ground/log.h"
#include "image/available_memory.h"
#include "image/decode.h"
#include "image/from_memory.h"
#include "image/limits.h"
#include "image/pipeline.h"
#include "image/stream.h"
#include "kelvane/pictures.h"
#include "raster/pixels.h"

namespace {

using namespace image;

constexpr const char *function = "LoadJPEG";

// What becomes of pictures for print, in four inks.
enum class Inks { refused, mixed };
constexpr int inks_of_print = 4;

// One decompression. libjpeg leaves a failing call by a jump: to be safe to jump out of, the
// functions that call it hold nothing that has a destructor.
class JpegDecoder {
  public:
    JpegDecoder();
    JpegDecoder(const JpegDecoder &) = delete;
    ~JpegDecoder() { jpeg_destroy_decompress(&info_); }

    // Each is false when the file is damaged or not supported.
    template <class SetSource>
    bool read_header(SetSource set_source);
    bool start(unsigned denominator, Inks inks);
    // With room for a row of four inks, if that is what the picture has.
    bool read_rows(Pipeline &pipeline, uint8_t *raw);

    Size size() const {
        return {static_cast<int>(info_.image_width), static_cast<int>(info_.image_height)};
    }
    Size decoded_size() const {
        return {static_cast<int>(info_.output_width), static_cast<int>(info_.output_height)};
    }
    bool has_inks() const { return info_.output_components == inks_of_print; }
    int64_t estimated_bytes() const {
        return int64_t{info_.num_components} * info_.data_precision * info_.image_width / 8 *
               info_.image_height;
    }

  private:
    static JpegDecoder &of(j_common_ptr info) {
        return *static_cast<JpegDecoder *>(info->client_data);
    }
    [[noreturn]] static void fail(j_common_ptr info) { std::longjmp(of(info).failure_, 1); }
    static void heed_message(j_common_ptr info, int level);
    static void limit_scans(j_common_ptr info);
    bool lacks_data() const;
    void mix(const uint8_t *inks, uint8_t *row) const;

    jpeg_decompress_struct info_{};
    jpeg_error_mgr errors_{};
    jpeg_progress_mgr progress_{};
    // Pixels that are missing at the end of the file are noticed; then the end itself is no fault.
    bool tells_missing_data_ = false;
    std::jmp_buf failure_;
};

JpegDecoder::JpegDecoder() {
    info_.err = jpeg_std_error(&errors_);
    info_.client_data = this;
    errors_.error_exit = fail;
    errors_.emit_message = heed_message;
    progress_.progress_monitor = limit_scans;
}

// libjpeg completes a picture whose data end early with grey, and takes that for a mere warning.
bool JpegDecoder::lacks_data() const {
    if (errors_.msg_code == JWRN_HIT_MARKER) return info_.unread_marker == JPEG_EOI;
    return errors_.msg_code == JWRN_JPEG_EOF && !tells_missing_data_;
}

void JpegDecoder::heed_message(j_common_ptr info, int level) {
    if (level < 0 && of(info).lacks_data()) fail(info);
}

void JpegDecoder::limit_scans(j_common_ptr info) {
    const int scans = of(info).info_.input_scan_number;
    const Size size = of(info).size();
    if (scans > max_jpeg_scans || int64_t{size.width} * size.height * scans > max_scanned_area())
        fail(info);
}

template <class SetSource>
bool JpegDecoder::read_header(SetSource set_source) {
    if (setjmp(failure_) != 0) return false;
    jpeg_create_decompress(&info_);
    info_.mem->max_memory_to_use = max_codec_bytes();
    info_.progress = &progress_;
    set_source(&info_);
    jpeg_read_header(&info_, TRUE);
    return true;
}

bool JpegDecoder::start(unsigned denominator, Inks inks) {
    if (setjmp(failure_) != 0) return false;
    // A missing scan would only make the picture coarser.
    tells_missing_data_ = !info_.arith_code && !jpeg_has_multiple_scans(&info_);
    const bool has_inks = info_.jpeg_color_space == JCS_CMYK || info_.jpeg_color_space == JCS_YCCK;
    info_.out_color_space = has_inks && inks == Inks::mixed ? JCS_CMYK : JCS_GRAYSCALE;
    info_.scale_num = 1;
    info_.scale_denom = denominator;
    jpeg_start_decompress(&info_);
    return true;
}

bool JpegDecoder::read_rows(Pipeline &pipeline, uint8_t *raw) {
    if (setjmp(failure_) != 0) return false;
    const bool has_inks = info_.output_components == inks_of_print;
    while (info_.output_scanline < info_.output_height) {
        JSAMPROW row = has_inks ? raw : pipeline.row();
        jpeg_read_scanlines(&info_, &row, 1);
        if (has_inks) mix(raw, pipeline.row());
        pipeline.row_done();
    }
    return true;
}

// Adobe's files have the light that an ink leaves; others, how much there is of it.
void JpegDecoder::mix(const uint8_t *inks, uint8_t *row) const {
    const int turned = info_.saw_Adobe_marker ? 0 : 255;
    const auto light = [&](int i) { return std::abs(turned - inks[i]); };
    for (unsigned x = 0; x < info_.output_width; ++x, inks += inks_of_print) {
        const int black = light(3);
        row[x] =
            raster::grey_of(light(0) * black / 255, light(1) * black / 255, light(2) * black / 255);
    }
}

// By how much a picture is decoded smaller that is drawn much smaller: in its shape in the size, or
// over all of it.
enum class Extent { inside, all };

unsigned denominator(Size picture, Size wanted, Extent extent) {
    const int across = picture.width / wanted.width, down = picture.height / wanted.height;
    const int ratio = extent == Extent::inside ? std::max(across, down) : std::min(across, down);
    for (const int d : {8, 4, 2})
        if (ratio >= d) return static_cast<unsigned>(d);
    return 1;
}

bool fits_memory(const JpegDecoder &decoder) {
    constexpr int64_t always_fits = 250000;
    const Size size = decoder.size();
    if (int64_t{size.width} * size.height <= always_fits) return true;
    const int64_t needed = decoder.estimated_bytes();
    const int64_t allowed = available_memory_kb() * 1024 * 8 / 10;
    if (needed <= allowed) return true;
    const int pid = getpid();
    tq_print_log2(LOG_INFO_LEVEL, "[pid:%d]Too large image! \n", pid);
    tq_print_log2(LOG_INFO_LEVEL, "[pid:%d]Need: %d Mb, Allowed: %d Mb! \n", pid,
                  static_cast<int>(needed >> 20), static_cast<int>(allowed >> 20));
    return false;
}

enum class Faults { told, passed_over };

raster::BitmapPtr damaged(Faults faults) {
    if (faults == Faults::told) kv_warn(function, "error loading image\n");
    return nullptr;
}

template <class SetSource>
raster::BitmapPtr decode(SetSource set_source, Size wanted, Scaling scaling, const Finish &finish,
                         Faults faults) {
    JpegDecoder decoder;
    if (!decoder.read_header(set_source)) return damaged(faults);
    const Size size = decoder.size();
    tq_print_log2(LOG_INFO_LEVEL, "[pid:%d]image width, height: %d, %d \n", getpid(), size.width,
                  size.height);
    if (!fits_memory(decoder)) return nullptr;
    if (!is_reasonable(size)) throw std::bad_alloc();
    wanted = resolved(wanted, size);
    const Extent extent = scaling == Scaling::proportional ? Extent::inside : Extent::all;
    if (!decoder.start(denominator(size, wanted, extent), Inks::refused)) return damaged(faults);
    Pipeline pipeline(decoder.decoded_size(), wanted, scaling, finish);
    if (!decoder.read_rows(pipeline, nullptr)) return damaged(faults);
    return pipeline.finish();
}

raster::BitmapPtr load(const char *path, Size wanted, Scaling scaling, const Finish &finish) {
    const Stream file = open_picture(function, path);
    if (!file) return nullptr;
    return decode([&](j_decompress_ptr info) { jpeg_stdio_src(info, file.get()); }, wanted, scaling,
                  finish, Faults::told);
}

} // namespace

raster::BitmapPtr image::decode_jpeg(std::FILE *file, const Request &request) {
    JpegDecoder decoder;
    if (!decoder.read_header([=](j_decompress_ptr info) { jpeg_stdio_src(info, file); }))
        return nullptr;
    const Size size = decoder.size();
    if (!is_reasonable(size) || !fits_memory(decoder)) throw std::bad_alloc();
    const Placement place = request.place(size);
    // Both sides shrink by the same, but for the last pixel of one.
    const Extent extent = request.shape == Shape::fitted ? Extent::inside : Extent::all;
    if (!decoder.start(denominator(size, place.drawn, extent), Inks::mixed)) return nullptr;
    const Size decoded = decoder.decoded_size();
    Pipeline pipeline(decoded, place, request.finish);
    std::vector<uint8_t> raw(decoder.has_inks() ? static_cast<size_t>(decoded.width) * inks_of_print
                                                : 0);
    return decoder.read_rows(pipeline, raw.data()) ? pipeline.finish() : nullptr;
}

raster::BitmapPtr image::load_jpeg(std::span<const uint8_t> bytes, Size wanted) {
    constexpr int unchanged = 100;
    return decode([&](j_decompress_ptr info) { jpeg_mem_src(info, bytes.data(), bytes.size()); },
                  wanted, Scaling::proportional,
                  {brightness_curve(unchanged, unchanged), no_frame, dithering_levels()},
                  Faults::passed_over);
}

ibitmap *LoadJPEG(const char *path, int width, int height, int br, int co, int proportional) {
    return ground::guarded_or(
        [&]() -> ibitmap * {
            if (!path) return nullptr;
            const Finish finish{brightness_curve(br, co), take_frame_color(), dithering_levels()};
            const Size wanted{width, height};
            if (!is_request(wanted)) return nullptr;
            return load(path, wanted, scaling_of(proportional), finish).release();
        },
        [&]() -> ibitmap * {
            kv_warn(function, "cannot allocate memory\n");
            return nullptr;
        });
}
