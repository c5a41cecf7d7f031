// peers: gdk-pixbuf-2.0 imlib2
// SPDX-License-Identifier: MIT
// Loading pictures beside their codecs alone and beside general libraries. All of them read the
// same file and give a picture of the same size.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <malloc.h>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

#include <Imlib2.h>
#include <gdk-pixbuf/gdk-pixbuf.h>
#include <jpeglib.h>
#include <png.h>
#include <zlib.h>

#include "beside.h"
#include "kelvane/pictures.h"

namespace {

constexpr int target_width = 600, target_height = 800;

// Something like a photograph: slow changes, edges, and noise as of a sensor.
std::vector<uint8_t> photograph(int width, int height) {
    std::vector<uint8_t> rgb;
    uint32_t noise = 1;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            for (int c = 0; c < 3; ++c) {
                noise = noise * 1664525 + 1013904223;
                const double wave = std::sin(x * 0.011 + c) * std::cos(y * 0.017 - c);
                const bool edge = (x / 97 + y / 61) % 3 == 0;
                rgb.push_back(static_cast<uint8_t>(128 + 70 * wave + (edge ? 30 : 0) +
                                                   static_cast<int>(noise >> 27)));
            }
    return rgb;
}

struct Files {
    std::filesystem::path root =
        std::filesystem::temp_directory_path() / ("kelvane-pictures-" + std::to_string(getpid()));
    Files() { std::filesystem::create_directories(root); }
    ~Files() { std::filesystem::remove_all(root); }
};

std::string place(const char *name) {
    static const Files files;
    return files.root / name;
}

std::string jpeg_file(int width, int height) {
    const std::string path = place((std::to_string(width) + ".jpg").c_str());
    if (std::filesystem::exists(path)) return path;
    std::vector<uint8_t> rgb = photograph(width, height);
    std::FILE *f = std::fopen(path.c_str(), "wb");
    jpeg_compress_struct info;
    jpeg_error_mgr errors;
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    jpeg_stdio_dest(&info, f);
    info.image_width = static_cast<JDIMENSION>(width);
    info.image_height = static_cast<JDIMENSION>(height);
    info.input_components = 3;
    info.in_color_space = JCS_RGB;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, 85, TRUE);
    jpeg_start_compress(&info, TRUE);
    for (JSAMPROW row = rgb.data(); info.next_scanline < info.image_height; row += width * 3)
        jpeg_write_scanlines(&info, &row, 1);
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    std::fclose(f);
    return path;
}

std::string png_file(int width, int height) {
    const std::string path = place("colors.png");
    const std::vector<uint8_t> rgb = photograph(width, height);
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(width);
    image.height = static_cast<png_uint_32>(height);
    image.format = PNG_FORMAT_RGB;
    if (!png_image_write_to_file(&image, path.c_str(), 0, rgb.data(), 0, nullptr)) std::abort();
    return path;
}

void check(bool ok) {
    if (!ok) std::abort();
}

std::string tiff_file(int width, int height) {
    const std::string path = place("colors.tiff");
    std::vector<uint8_t> rgb = photograph(width, height);
    GdkPixbuf *picture = gdk_pixbuf_new_from_data(rgb.data(), GDK_COLORSPACE_RGB, FALSE, 8, width,
                                                  height, 3 * width, nullptr, nullptr);
    check(gdk_pixbuf_save(picture, path.c_str(), "tiff", nullptr, nullptr) != FALSE);
    g_object_unref(picture);
    return path;
}

// Of the size that the loader takes.
std::string bmp_file() {
    const std::string path = place("greys.bmp");
    ibitmap *bm = LoadJPEG(jpeg_file(900, 900).c_str(), target_width, target_height, 100, 100, 0);
    check(bm != nullptr && SaveBitmap(path.c_str(), bm) != 0);
    std::free(bm);
    return path;
}

void load_ours(const std::string &path, int proportional = 0) {
    constexpr int w = target_width, h = target_height;
    ibitmap *bm = path.ends_with("png")    ? LoadPNGStretch(path.c_str(), w, h, proportional, 0)
                  : path.ends_with("tiff") ? LoadTIFF(path.c_str(), w, h, 100, 100, proportional)
                  : path.ends_with("bmp")  ? LoadBitmap(path.c_str())
                                           : LoadJPEG(path.c_str(), w, h, 100, 100, proportional);
    check(bm != nullptr);
    std::free(bm);
}

// The codec alone, as reduced as our loader lets it.
void decode_by_libjpeg(const std::string &path, unsigned denominator) {
    std::FILE *f = std::fopen(path.c_str(), "rb");
    jpeg_decompress_struct info;
    jpeg_error_mgr errors;
    info.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&info);
    jpeg_stdio_src(&info, f);
    jpeg_read_header(&info, TRUE);
    info.out_color_space = JCS_GRAYSCALE;
    info.scale_num = 1;
    info.scale_denom = denominator;
    jpeg_start_decompress(&info);
    std::vector<uint8_t> grey(info.output_width);
    for (JSAMPROW row = grey.data(); info.output_scanline < info.output_height;)
        jpeg_read_scanlines(&info, &row, 1);
    jpeg_finish_decompress(&info);
    jpeg_destroy_decompress(&info);
    std::fclose(f);
}

void load_by_gdk(const std::string &path) {
    GdkPixbuf *picture = gdk_pixbuf_new_from_file_at_scale(path.c_str(), target_width,
                                                           target_height, FALSE, nullptr);
    check(picture != nullptr);
    g_object_unref(picture);
}

void load_by_imlib(const std::string &path) {
    const Imlib_Image picture = imlib_load_image_immediately_without_cache(path.c_str());
    check(picture != nullptr);
    imlib_context_set_image(picture);
    const Imlib_Image scaled = imlib_create_cropped_scaled_image(
        0, 0, imlib_image_get_width(), imlib_image_get_height(), target_width, target_height);
    imlib_free_image_and_decache();
    imlib_context_set_image(scaled);
    imlib_free_image_and_decache();
}

void jpeg_and_libjpeg(benchmark::State &state) {
    state.SetLabel("the limit does not scale");
    const std::string path =
        jpeg_file(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    const auto denominator = static_cast<unsigned>(state.range(2));
    beside(
        state, Against::limit, [&] { load_ours(path); },
        [&] { decode_by_libjpeg(path, denominator); });
}
BENCHMARK(jpeg_and_libjpeg)
    ->ArgNames({"w", "h", "reduced"})
    ->Args({3000, 4000, 4})
    ->Args({900, 900, 1})
    ->UseManualTime();

template <void (*load_by_peer)(const std::string &)>
void jpeg_and(benchmark::State &state) {
    state.SetLabel("the peer makes colours");
    const std::string path =
        jpeg_file(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    beside(
        state, Against::peer, [&] { load_ours(path); }, [&] { load_by_peer(path); });
}
BENCHMARK(jpeg_and<load_by_gdk>)->ArgNames({"w", "h"})->Args({3000, 4000})->UseManualTime();
BENCHMARK(jpeg_and<load_by_imlib>)
    ->ArgNames({"w", "h"})
    ->Args({3000, 4000})
    ->Args({900, 900})
    ->UseManualTime();

uint32_t number(const std::string &bytes, size_t at) {
    uint32_t n = 0;
    for (size_t i = at; i < at + 4; ++i) n = n << 8 | static_cast<uint8_t>(bytes[i]);
    return n;
}

// The packed pixels of a PNG file.
std::string packed_pixels(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    const std::string file{std::istreambuf_iterator<char>(in), {}};
    std::string packed;
    for (size_t at = 8; at < file.size(); at += number(file, at) + 12)
        if (file.compare(at + 4, 4, "IDAT") == 0) packed += file.substr(at + 8, number(file, at));
    return packed;
}

void png_and_inflate(benchmark::State &state) {
    state.SetLabel("the limit neither undoes the filters of rows nor scales");
    constexpr int width = 1200, height = 1600;
    const std::string path = png_file(width, height), packed = packed_pixels(path);
    std::vector<uint8_t> pixels((width * 3 + 1) * height);
    const auto inflate_all = [&] {
        uLongf size = pixels.size();
        check(uncompress(pixels.data(), &size, reinterpret_cast<const Bytef *>(packed.data()),
                         packed.size()) == Z_OK);
    };
    beside(
        state, Against::limit, [&] { load_ours(path); }, inflate_all);
}
BENCHMARK(png_and_inflate)->UseManualTime();

void png_and_imlib(benchmark::State &state) {
    state.SetLabel("the peer makes colours");
    const std::string path = png_file(1200, 1600);
    beside(
        state, Against::peer, [&] { load_ours(path); }, [&] { load_by_imlib(path); });
}
BENCHMARK(png_and_imlib)->UseManualTime();

// The same file by LoadPicture() and by the loader of its format.
void any_picture_and_loader(benchmark::State &state) {
    const std::string path = state.range(0) == 0   ? png_file(1200, 1600)
                             : state.range(0) == 1 ? jpeg_file(3000, 4000)
                             : state.range(0) == 2 ? tiff_file(1200, 1600)
                                                   : bmp_file();
    const int how = static_cast<int>(state.range(1));
    state.SetLabel(path.substr(path.rfind('.') + 1));
    const auto load_any = [&] {
        ibitmap *bm = LoadPicture(path.c_str(), target_width, target_height, how, 0);
        check(bm != nullptr);
        std::free(bm);
    };
    // LoadTIFF() tells the size of each picture.
    std::FILE *const former = std::exchange(stderr, std::fopen("/dev/null", "w"));
    beside(state, Against::limit, load_any, [&] { load_ours(path, how == PICTURE_FIT ? 1 : 0); });
    std::fclose(std::exchange(stderr, former));
}
BENCHMARK(any_picture_and_loader)
    ->ArgNames({"format", "how"})
    ->ArgsProduct({{0, 1, 2, 3}, {PICTURE_FIT, PICTURE_COVER, PICTURE_STRETCH}})
    ->UseManualTime();

void picture_size_and_reading(benchmark::State &state) {
    state.SetLabel("the limit opens the file and reads its first 4 KB");
    const std::string path = state.range(0) == 0 ? png_file(1200, 1600) : jpeg_file(900, 900);
    const auto read_start = [&] {
        char bytes[4096];
        const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
        check(read(file, bytes, sizeof bytes) == sizeof bytes);
        close(file);
    };
    const auto ask = [&] {
        int w, h;
        check(GetPictureSize(path.c_str(), &w, &h) == 1);
    };
    beside(state, Against::limit, ask, read_start);
}
BENCHMARK(picture_size_and_reading)->ArgName("jpeg")->Arg(0)->Arg(1)->UseManualTime();

// A line of /proc/self/status in bytes.
double memory(const char *name) {
    std::ifstream in("/proc/self/status");
    for (std::string line; std::getline(in, line);)
        if (line.starts_with(name)) return std::atof(line.c_str() + std::strlen(name)) * 1024;
    return 0;
}

void jpeg_peak_memory(benchmark::State &state) {
    constexpr int width = 3000, height = 4000;
    const std::string path = jpeg_file(width, height);
    double peak = 0;
    for (auto _ : state) {
        malloc_trim(0);
        std::ofstream("/proc/self/clear_refs") << 5; // the peak starts anew
        const double before = memory("VmRSS:");
        load_ours(path);
        peak = std::max(peak, memory("VmHWM:") - before);
    }
    state.SetLabel("bytes, beside those of the whole grey picture");
    count(state, Against::limit, peak, width * height);
}
BENCHMARK(jpeg_peak_memory)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
