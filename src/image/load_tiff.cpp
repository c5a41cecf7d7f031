// SPDX-License-Identifier: MIT
// TIFF files, decoded by libtiff. LoadTIFF() takes bilevel and 8-bit pictures for what their rows
// look like, and others of its kinds come out white; LoadPicture() takes all for what they say they
// are.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

#include "ground/guard.h"
#include "ground/log.h"
#include "image/decode.h"
#include "image/limits.h"
#include "image/pipeline.h"
#include "image/stream.h"
#include "image/tiff_library.h"
#include "kelvane/pictures.h"
#include "raster/bitmap_rows.h"
#include "raster/pixels.h"

namespace {

using namespace image;

constexpr const char *function = "LoadTIFF";

// It is there once a file is open.
const TiffLibrary &libtiff() {
    return *tiff_library();
}

struct TiffClose {
    void operator()(TIFF *tiff) const { libtiff().TIFFClose(tiff); }
};
using TiffPtr = std::unique_ptr<TIFF, TiffClose>;

struct OptionsFree {
    void operator()(TIFFOpenOptions *options) const { libtiff().TIFFOpenOptionsFree(options); }
};

// What libtiff has to say stays unsaid: a loader has its own messages.
int keep_silent(TIFF *, void *, const char *, const char *, va_list) {
    return 1;
}

TiffPtr open(const char *path) {
    if (!tiff_library()) return nullptr;
    const std::unique_ptr<TIFFOpenOptions, OptionsFree> options(libtiff().TIFFOpenOptionsAlloc());
    if (!options) throw std::bad_alloc();
    libtiff().TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), max_codec_bytes());
    libtiff().TIFFOpenOptionsSetErrorHandlerExtR(options.get(), keep_silent, nullptr);
    libtiff().TIFFOpenOptionsSetWarningHandlerExtR(options.get(), keep_silent, nullptr);
    const Stream file = file::open_plain(path);
    const int fd = file ? fcntl(fileno(file.get()), F_DUPFD_CLOEXEC, 0) : -1;
    if (fd < 0) return nullptr;
    TiffPtr tiff(libtiff().TIFFFdOpenExt(fd, path, "rM", options.get()));
    if (!tiff) close(fd);
    return tiff;
}

enum class Rows {
    bilevel, // 1 is black
    grey,
    colors,
    unknown
};

struct Header {
    uint32_t width = 0, height = 0;
    uint16_t bits = 0, compression = COMPRESSION_NONE, photometric = 0, samples = 1, planar = 0;
    tmsize_t scanline = 0;
    bool tiled = false;

    bool is_readable() const { return width > 0 && height > 0 && bits > 0 && scanline > 0; }
    Size size() const { return {static_cast<int>(width), static_cast<int>(height)}; }
    Rows rows() const;
    bool is_plain() const;
};

// By what rows look like, whatever the file says that the samples mean.
Rows Header::rows() const {
    if (tiled) return Rows::unknown;
    if (bits == 1 && scanline >= (int64_t{width} + 7) / 8) return Rows::bilevel;
    if (bits == 8 && scanline == int64_t{width}) return Rows::grey;
    if (bits == 8 && scanline / width >= 3) return Rows::colors;
    return Rows::unknown;
}

// Whether rows are what they look like.
bool Header::is_plain() const {
    if (planar != PLANARCONFIG_CONTIG) return false;
    switch (rows()) {
    case Rows::bilevel:
        return samples == 1 && photometric == PHOTOMETRIC_MINISWHITE;
    case Rows::grey:
        return samples == 1 && photometric == PHOTOMETRIC_MINISBLACK;
    case Rows::colors:
        return samples == 3 && photometric == PHOTOMETRIC_RGB;
    case Rows::unknown:
        break;
    }
    return false;
}

Header read_header(TIFF *tiff) {
    Header h;
    libtiff().TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &h.width);
    libtiff().TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &h.height);
    libtiff().TIFFGetFieldDefaulted(tiff, TIFFTAG_BITSPERSAMPLE, &h.bits);
    libtiff().TIFFGetFieldDefaulted(tiff, TIFFTAG_COMPRESSION, &h.compression);
    libtiff().TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &h.photometric);
    libtiff().TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLESPERPIXEL, &h.samples);
    libtiff().TIFFGetFieldDefaulted(tiff, TIFFTAG_PLANARCONFIG, &h.planar);
    h.scanline = libtiff().TIFFScanlineSize(tiff);
    h.tiled = libtiff().TIFFIsTiled(tiff) != 0;
    return h;
}

// Those whose decoders need no more memory than a strip.
bool is_bounded(uint16_t compression) {
    constexpr uint16_t bounded[] = {COMPRESSION_NONE,          COMPRESSION_CCITTRLE,
                                    COMPRESSION_CCITTFAX3,     COMPRESSION_CCITTFAX4,
                                    COMPRESSION_LZW,           COMPRESSION_JPEG,
                                    COMPRESSION_PACKBITS,      COMPRESSION_DEFLATE,
                                    COMPRESSION_ADOBE_DEFLATE, COMPRESSION_CCITTRLEW};
    return std::ranges::find(bounded, compression) != std::end(bounded);
}

// Strips may name the same bytes over and over. There are no more of them than rows.
bool has_bounded_strips(TIFF *tiff) {
    const auto most = static_cast<uint64_t>(max_decoded_bytes());
    uint64_t sum = 0;
    const uint32_t count = libtiff().TIFFNumberOfStrips(tiff);
    for (uint32_t i = 0; i < count && sum <= most; ++i)
        sum += std::min<uint64_t>(libtiff().TIFFGetStrileByteCount(tiff, i), most + 1);
    return sum <= most;
}

// Each scan of a JPEG strip may go over the whole strip, for next to no data.
bool has_bounded_scans(TIFF *tiff, const Header &h) {
    if (h.compression != COMPRESSION_JPEG || h.tiled) return true;
    uint32_t rows = h.height;
    libtiff().TIFFGetFieldDefaulted(tiff, TIFFTAG_ROWSPERSTRIP, &rows);
    const int64_t strip_area = int64_t{h.width} * std::min(rows, h.height);
    constexpr std::string_view scan_marker = "\xff\xda";
    int64_t area = 0;
    std::string raw;
    for (uint32_t i = 0; i < libtiff().TIFFNumberOfStrips(tiff); ++i) {
        raw.resize(libtiff().TIFFGetStrileByteCount(tiff, i));
        if (libtiff().TIFFReadRawStrip(tiff, i, raw.data(), static_cast<tmsize_t>(raw.size())) < 0)
            break;
        for (size_t at = 0; (at = raw.find(scan_marker, at)) != raw.npos; ++at) area += strip_area;
    }
    return area <= max_scanned_area();
}

bool is_reasonable(const Header &h) {
    return h.width <= max_side && h.height <= max_side &&
           image::is_reasonable(h.size(), static_cast<size_t>(h.scanline));
}

void to_grey(Rows kind, const Header &h, const uint8_t *raw, uint8_t *row) {
    switch (kind) {
    case Rows::bilevel:
        raster::row_to_grey(raw, 1, 0, h.width, row);
        for (uint32_t x = 0; x < h.width; ++x) row[x] = static_cast<uint8_t>(~row[x]);
        break;
    case Rows::grey:
        std::memcpy(row, raw, h.width);
        break;
    case Rows::colors:
        for (uint32_t x = 0; x < h.width; ++x, raw += h.scanline / h.width)
            row[x] = raster::grey_of(raw[0], raw[1], raw[2]);
        break;
    case Rows::unknown:
        std::memset(row, 255, h.width);
        break;
    }
}

bool read_rows(TIFF *tiff, const Header &h, Pipeline &pipeline) {
    const Rows kind = h.rows();
    std::vector<uint8_t> raw(static_cast<size_t>(h.scanline));
    for (uint32_t y = 0; y < h.height; ++y) {
        if (kind != Rows::unknown && libtiff().TIFFReadScanline(tiff, raw.data(), y, 0) != 1)
            return false;
        if (pipeline.row_is_used()) to_grey(kind, h, raw.data(), pipeline.row());
        pipeline.row_done();
    }
    return true;
}

// What a pixel takes in memory at once: the colours, and the samples of its strip.
constexpr size_t converted_bytes = 2 * sizeof(uint32_t);

// libtiff's own conversion of any picture, whole, in the order of the file.
class Colors {
  public:
    explicit Colors(TIFF *tiff) : is_open_(begin(tiff)) {
        image_.req_orientation = image_.orientation = ORIENTATION_TOPLEFT;
    }
    ~Colors() {
        if (is_open_) libtiff().TIFFRGBAImageEnd(&image_);
    }
    Colors(const Colors &) = delete;
    Colors &operator=(const Colors &) = delete;

    bool read(Size size, Pipeline &pipeline) {
        const auto width = static_cast<size_t>(size.width);
        std::vector<uint32_t> pixels(width * static_cast<size_t>(size.height));
        if (!is_open_ ||
            libtiff().TIFFRGBAImageGet(&image_, pixels.data(), image_.width, image_.height) == 0)
            return false;
        for (const uint32_t *row = pixels.data(); row < pixels.data() + pixels.size();
             row += width) {
            if (pipeline.row_is_used()) std::transform(row, row + width, pipeline.row(), on_white);
            pipeline.row_done();
        }
        return true;
    }

  private:
    bool begin(TIFF *tiff) {
        char why[1024]; // as long as libtiff wants it
        constexpr int stop_on_error = 1;
        return libtiff().TIFFRGBAImageBegin(&image_, tiff, stop_on_error, why) != 0;
    }
    // Colours are multiplied by their alpha.
    static uint8_t on_white(uint32_t p) {
        const unsigned r = p & 255, g = p >> 8 & 255, b = p >> 16 & 255,
                       transparency = 255 - (p >> 24);
        const unsigned grey =
            raster::grey_of(static_cast<int>(r), static_cast<int>(g), static_cast<int>(b));
        return static_cast<uint8_t>(std::min(grey + transparency, 255U));
    }

    TIFFRGBAImage image_{};
    const bool is_open_;
};

raster::BitmapPtr load(const char *path, Size wanted, Scaling scaling, const Finish &finish,
                       Header &h) {
    const TiffPtr tiff = open(path);
    if (!tiff) {
        kv_warn(function, "can't open %s\n", path);
        return nullptr;
    }
    h = read_header(tiff.get());
    if (!h.is_readable() || !is_bounded(h.compression)) {
        kv_warn(function, "Can't read image parameters\n");
        return nullptr;
    }
    kv_warn(function, "w=%u h=%u bps=%d scanline=%lld\n", h.width, h.height, h.bits,
            static_cast<long long>(h.scanline));
    if (!is_reasonable(h) || !has_bounded_strips(tiff.get()) || !has_bounded_scans(tiff.get(), h))
        throw std::bad_alloc();
    Pipeline pipeline(h.size(), resolved(wanted, h.size()), scaling, finish);
    if (read_rows(tiff.get(), h, pipeline)) return pipeline.finish();
    kv_warn(function, "error loading image\n");
    return nullptr;
}

} // namespace

raster::BitmapPtr image::decode_tiff(const char *path, const Request &request) {
    const TiffPtr tiff = open(path);
    if (!tiff) return nullptr;
    const Header h = read_header(tiff.get());
    if (!h.is_readable() || h.tiled || !is_bounded(h.compression)) return nullptr;
    const bool is_plain = h.is_plain();
    if (!::is_reasonable(h) || !has_bounded_strips(tiff.get()) ||
        !has_bounded_scans(tiff.get(), h) ||
        (!is_plain && !image::is_reasonable(h.size(), h.width * converted_bytes)))
        throw std::bad_alloc();
    Pipeline pipeline(h.size(), request.place(h.size()), request.finish);
    const bool is_whole =
        is_plain ? read_rows(tiff.get(), h, pipeline) : Colors(tiff.get()).read(h.size(), pipeline);
    return is_whole ? pipeline.finish() : nullptr;
}

ibitmap *LoadTIFF(const char *path, int width, int height, int br, int co, int proportional) {
    if (!path) return nullptr;
    const Finish finish{brightness_curve(br, co), take_frame_color(), dithering_levels()};
    const Size wanted{width, height};
    if (!is_request(wanted)) return nullptr;
    Header header;
    return ground::guarded_or(
        [&] { return load(path, wanted, scaling_of(proportional), finish, header).release(); },
        [&]() -> ibitmap * {
            kv_warn(function, "cannot allocate memory (%u x %u)\n", header.width, header.height);
            return nullptr;
        });
}
