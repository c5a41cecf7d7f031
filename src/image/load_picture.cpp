// SPDX-License-Identifier: MIT
// Any picture file, told by its bytes, the way it is to be shown.
#include <optional>
#include <utility>

#include "ground/guard.h"
#include "ground/log.h"
#include "image/decode.h"
#include "image/limits.h"
#include "image/picture_header.h"
#include "image/stream.h"
#include "image/turn.h"
#include "kelvane/pictures.h"

namespace {

using namespace image;

constexpr const char *function = "LoadPicture";

Shape shape_of(int how) {
    if (how == PICTURE_COVER) return Shape::covering;
    return how == PICTURE_STRETCH ? Shape::stretched : Shape::fitted;
}

raster::BitmapPtr refused(const char *format, const char *path) {
    kv_warn(function, format, path);
    return nullptr;
}

raster::BitmapPtr decode(const PictureHeader &header, std::FILE *file, const char *path,
                         const Request &request) {
    if (header.format == Format::jpeg) return decode_jpeg(file, request);
    if (header.format == Format::tiff) return decode_tiff(path, request);
    const auto bytes = file::read_whole(file, max_file_bytes);
    if (!bytes) return nullptr;
    return header.format == Format::png ? decode_png(bytes->raw(), request)
                                        : decode_bmp(bytes->raw(), request);
}

raster::BitmapPtr load(const char *path, Request request) {
    const Stream file = open_picture(function, path);
    if (!file) return nullptr;
    const std::optional<PictureHeader> header = read_picture_header(file.get());
    if (!header) return refused("no picture that can be read: %s\n", path);
    if (header->stands()) std::swap(request.wanted.width, request.wanted.height);
    raster::BitmapPtr stored = decode(*header, file.get(), path, request);
    if (!stored) return refused("error loading image %s\n", path);
    return turned(std::move(stored), header->orientation);
}

} // namespace

ibitmap *LoadPicture(const char *path, int w, int h, int how, int dither) {
    return ground::guarded_or(
        [&]() -> ibitmap * {
            const Size wanted{w, h};
            if (!path || !is_request(wanted)) return nullptr;
            const int levels = dither != 0 ? panel_levels() : no_dithering;
            return load(path, {wanted, shape_of(how), {no_curve(), no_frame, levels}}).release();
        },
        [&]() -> ibitmap * {
            kv_warn(function, "cannot allocate memory\n");
            return nullptr;
        });
}

int GetPictureSize(const char *path, int *w, int *h) {
    const Stream file = path ? file::open_plain(path) : nullptr;
    const std::optional<PictureHeader> header =
        file ? read_picture_header(file.get()) : std::nullopt;
    const Size size = header ? header->shown() : Size{0, 0};
    if (w) *w = size.width;
    if (h) *h = size.height;
    return header ? 1 : 0;
}
