// SPDX-License-Identifier: MIT
// Picture files of every kind, written by the codecs' own libraries, and the plain definition of
// what a loader makes of grey pixels.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <jpeglib.h>
#include <png.h>
#include <tiffio.h>

#include "image/pipeline.h"
#include "image/place.h"
#include "raster/bitmap.h"
#include "unit/file_fixture.h"

using Bytes = std::vector<uint8_t>;

struct GreyPicture {
    int width, height;
    Bytes pixels;
    int at(int x, int y) const { return pixels[static_cast<size_t>(y * width + x)]; }
};

template <class Random>
Bytes random_bytes(Random &random, size_t count) {
    Bytes bytes(count);
    for (uint8_t &b : bytes) b = static_cast<uint8_t>(random(0, 255));
    return bytes;
}

// --- files

struct PngKind {
    int bits = 8, color_type = PNG_COLOR_TYPE_RGB;
    bool interlaced = false;
    std::vector<png_color> palette = {};
    Bytes alphas = {};                 // of the palette
    const png_color_16 *key = nullptr; // the transparent colour
};

inline std::string write_png(const std::string &path, int w, int h, const PngKind &kind,
                             const Bytes &rows) {
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    std::FILE *f = std::fopen(path.c_str(), "wb");
    png_init_io(png, f);
    png_set_IHDR(png, info, static_cast<png_uint_32>(w), static_cast<png_uint_32>(h), kind.bits,
                 kind.color_type, kind.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    if (!kind.palette.empty())
        png_set_PLTE(png, info, kind.palette.data(), static_cast<int>(kind.palette.size()));
    if (!kind.alphas.empty() || kind.key != nullptr)
        png_set_tRNS(png, info, kind.alphas.data(), static_cast<int>(kind.alphas.size()), kind.key);
    png_set_check_for_invalid_index(png, 0);
    png_write_info(png, info);
    const size_t row_bytes = png_get_rowbytes(png, info);
    for (int pass = png_set_interlace_handling(png); pass > 0; --pass)
        for (size_t y = 0; y < static_cast<size_t>(h); ++y)
            png_write_row(png, rows.data() + y * row_bytes);
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    std::fclose(f);
    return path;
}

struct JpegKind {
    int components = 3;
    J_COLOR_SPACE space = JCS_RGB;
    bool progressive = false, arithmetic = false;
    int quality = 90;
};

inline std::string write_jpeg(const std::string &path, int w, int h, const JpegKind &kind,
                              Bytes samples) {
    jpeg_compress_struct info;
    jpeg_error_mgr errors;
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    std::FILE *f = std::fopen(path.c_str(), "wb");
    jpeg_stdio_dest(&info, f);
    info.image_width = static_cast<JDIMENSION>(w);
    info.image_height = static_cast<JDIMENSION>(h);
    info.input_components = kind.components;
    info.in_color_space = kind.space;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, kind.quality, TRUE);
    info.arith_code = kind.arithmetic;
    if (kind.progressive) jpeg_simple_progression(&info);
    jpeg_start_compress(&info, TRUE);
    for (JSAMPROW row = samples.data(); info.next_scanline < info.image_height;
         row += w * kind.components)
        jpeg_write_scanlines(&info, &row, 1);
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    std::fclose(f);
    return path;
}

// What libjpeg makes of a file at 1/denominator of its size.
inline GreyPicture decode_jpeg(const std::string &path, unsigned denominator) {
    jpeg_decompress_struct info;
    jpeg_error_mgr errors;
    info.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&info);
    std::FILE *f = std::fopen(path.c_str(), "rb");
    jpeg_stdio_src(&info, f);
    jpeg_read_header(&info, TRUE);
    info.out_color_space = JCS_GRAYSCALE;
    info.scale_denom = denominator;
    info.scale_num = 1;
    jpeg_start_decompress(&info);
    GreyPicture p{static_cast<int>(info.output_width), static_cast<int>(info.output_height), {}};
    p.pixels.resize(size_t{info.output_width} * info.output_height);
    while (info.output_scanline < info.output_height) {
        JSAMPROW row = p.pixels.data() + size_t{info.output_scanline} * info.output_width;
        jpeg_read_scanlines(&info, &row, 1);
    }
    jpeg_destroy_decompress(&info);
    std::fclose(f);
    return p;
}

struct TiffKind {
    uint16_t bits = 8, samples = 1, photometric = PHOTOMETRIC_MINISBLACK;
    uint16_t compression = COMPRESSION_NONE, planar = PLANARCONFIG_CONTIG;
    uint32_t tile = 0; // side of tiles, or 0
};

inline std::string write_tiff(const std::string &path, uint32_t w, uint32_t h, const TiffKind &kind,
                              Bytes rows) {
    TIFF *tiff = TIFFOpen(path.c_str(), "w");
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, w);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, h);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, kind.bits);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, kind.samples);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, kind.photometric);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, kind.compression);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, kind.planar);
    if (kind.tile != 0) {
        TIFFSetField(tiff, TIFFTAG_TILEWIDTH, kind.tile);
        TIFFSetField(tiff, TIFFTAG_TILELENGTH, kind.tile);
        Bytes tile(static_cast<size_t>(TIFFTileSize(tiff)));
        for (uint32_t n = 0; n < TIFFNumberOfTiles(tiff); ++n)
            TIFFWriteEncodedTile(tiff, n, tile.data(), static_cast<tmsize_t>(tile.size()));
    } else {
        TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 3u);
        const int planes = kind.planar == PLANARCONFIG_SEPARATE ? kind.samples : 1;
        uint8_t *row = rows.data();
        for (int plane = 0; plane < planes; ++plane)
            for (uint32_t y = 0; y < h; ++y, row += TIFFScanlineSize(tiff))
                TIFFWriteScanline(tiff, row, y, static_cast<uint16_t>(plane));
    }
    TIFFClose(tiff);
    return path;
}

// --- what comes out

// The levels of a bitmap of depth 4 or 2, row by row.
inline std::vector<int> levels(const ibitmap &bm) {
    const int bits = raster::depth_of(bm), top = (1 << bits) - 1;
    std::vector<int> all;
    for (int y = 0; y < bm.height; ++y)
        for (int x = 0; x < bm.width; ++x)
            all.push_back(bm.data[y * bm.scanline + x * bits / 8] >> (8 - bits - x * bits % 8) &
                          top);
    return all;
}

inline uint8_t limited(int grey) {
    return static_cast<uint8_t>(std::clamp(grey, 0, 255));
}

// Bilinear scaling, pixel by pixel.
inline GreyPicture plainly_scaled(const GreyPicture &from, image::Size to) {
    GreyPicture result{to.width, to.height, {}};
    const int x_step = (from.width - 1) * 1024 / std::max(to.width - 1, 1);
    const int y_step = (from.height - 1) * 1024 / std::max(to.height - 1, 1);
    for (int y = 0; y < to.height; ++y)
        for (int x = 0; x < to.width; ++x) {
            const int x0 = x * x_step >> 10, fx = x * x_step & 1023;
            const int y0 = y * y_step >> 10, fy = y * y_step & 1023;
            const int x1 = std::min(x0 + 1, from.width - 1), y1 = std::min(y0 + 1, from.height - 1);
            result.pixels.push_back(limited((from.at(x0, y0) * (1024 - fx) * (1024 - fy) >> 20) +
                                            (from.at(x1, y0) * fx * (1024 - fy) >> 20) +
                                            (from.at(x0, y1) * (1024 - fx) * fy >> 20) +
                                            (from.at(x1, y1) * fx * fy >> 20)));
        }
    return result;
}

// Error diffusion of a rectangle of a buffer, pixel by pixel.
inline void plainly_dithered(Bytes &p, int stride, int x0, int y0, int x1, int y1, int n) {
    const auto add = [&](int x, int y, int part) {
        if (x < x0 || x >= x1 || y >= y1) return;
        uint8_t &pixel = p[static_cast<size_t>(y * stride + x)];
        pixel = limited(pixel + (part >> 4));
    };
    for (int y = y0; y < y1; ++y)
        for (int x = x0; x < x1; ++x) {
            uint8_t &pixel = p[static_cast<size_t>(y * stride + x)];
            const int level = 256 / (2 * n) + (pixel * n >> 8) * 256 / n, error = pixel - level;
            pixel = limited(level);
            add(x + 1, y, error * 7);
            add(x - 1, y + 1, error * 3);
            add(x, y + 1, error * 5);
            add(x + 1, y + 1, error);
        }
}

// The levels of the bitmap that the rows of a picture become.
inline std::vector<int> plainly_made(const GreyPicture &picture, const image::Placement &place,
                                     const image::Finish &finish, int bits) {
    const int w = place.bitmap.width, h = place.bitmap.height;
    Bytes p(static_cast<size_t>(w * h), 255);
    const int x0 = place.x, x1 = place.x + place.drawn.width;
    const int y0 = std::clamp(place.y, 0, h), y1 = std::clamp(place.y + place.drawn.height, y0, h);
    const GreyPicture drawn = plainly_scaled(picture, place.drawn);
    for (int y = y0; y < y1; ++y)
        for (int x = x0; x < x1; ++x)
            p[static_cast<size_t>(y * w + x)] = limited(drawn.at(x - x0, y - place.y));
    for (uint8_t &pixel : p) pixel = finish.curve[pixel];
    if (finish.levels != image::no_dithering) plainly_dithered(p, w, x0, y0, x1, y1, finish.levels);
    if (finish.frame_color != image::no_frame) {
        const int color = finish.frame_color;
        const int grey =
            ((color >> 16 & 255) * 77 + (color >> 8 & 255) * 151 + (color & 255) * 28) >> 8;
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                if (x < x0 || x >= x1 || y < y0 || y >= y1)
                    p[static_cast<size_t>(y * w + x)] = limited(grey);
    }
    std::vector<int> all;
    for (const uint8_t pixel : p) all.push_back(pixel >> (8 - bits));
    return all;
}
