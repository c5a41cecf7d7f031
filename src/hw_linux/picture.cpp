// SPDX-License-Identifier: MIT
// Writes what a person sees as a PNG file.
#include "hw_linux/picture.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>

#include <png.h>

#include "file/stream.h"
#include "hw_linux/device.h"
#include "hw_linux/screen.h"
#include "hw_linux/tasks/session.h"

namespace hw {

namespace {

// The device's, or those of the task that is in front instead, which are painted into `other`.
PixelBuffer shown_pixels(std::unique_ptr<uint8_t[]> &other) {
    PixelBuffer pixels = device()->pixels();
    const auto active = tasks::active_framebuffer();
    if (!active) return pixels;
    const size_t size = static_cast<size_t>(pixels.stride) * static_cast<size_t>(pixels.height);
    other.reset(new (std::nothrow) uint8_t[size]);
    if (!other) return pixels;
    std::fill_n(other.get(), size, uint8_t{255});
    pixels.data = other.get();
    const icanvas &canvas = active->canvas;
    eink_waveform(panel_view(active->orientation), canvas, {0, 0, canvas.width, canvas.height, 0},
                  pixels);
    return pixels;
}

} // namespace

bool save_picture(const char *file, const char *asker) {
    if (!device()) return false;
    std::unique_ptr<uint8_t[]> other;
    const PixelBuffer pixels = shown_pixels(other);
    const size_t width = static_cast<size_t>(pixels.width), size = width * pixels.height;
    std::unique_ptr<uint8_t[]> grey(new (std::nothrow) uint8_t[size]);
    if (!grey) return false;
    for (int y = 0; y < pixels.height; ++y)
        for (size_t x = 0; x < width; ++x)
            grey[y * width + x] = pixels.data[int64_t{y} * pixels.stride + 4 * x];
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(pixels.width);
    image.height = static_cast<png_uint_32>(pixels.height);
    image.format = PNG_FORMAT_GRAY;
    image.flags = PNG_IMAGE_FLAG_FAST;
    file::Stream stream = file::open_plain(file, file::Access::create);
    const bool written =
        stream && png_image_write_to_stdio(&image, stream.get(), 0, grey.get(), 0, nullptr);
    if (stream && std::fclose(stream.release()) == 0 && written) return true;
    std::fprintf(stderr, "%s: %s: %s (a file that can be written is meant)\n", asker, file,
                 *image.message ? image.message : std::strerror(errno));
    return false;
}

} // namespace hw
