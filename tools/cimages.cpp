// SPDX-License-Identifier: MIT
// Turns picture files into the table of built-in pictures, as C++ source on standard output:
//
//     cimages arrow.png button.png ... > builtin_images.cpp
//
// A picture is named after its file. Greys become the nearest of 16 levels, and pixels that are
// less than half opaque are left out by the bitmap's mask.
#include <png.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

struct Picture {
    std::string name;
    size_t width = 0, height = 0;
    std::vector<uint8_t> grey_alpha; // two bytes a pixel
    uint8_t level(size_t x, size_t y) const {
        return static_cast<uint8_t>((grey_alpha[(y * width + x) * 2] + 8) / 17);
    }
    bool opaque(size_t x, size_t y) const { return grey_alpha[(y * width + x) * 2 + 1] >= 128; }
    bool has_holes() const {
        for (size_t i = 1; i < grey_alpha.size(); i += 2)
            if (grey_alpha[i] < 128) return true;
        return false;
    }
};

Picture load(const std::filesystem::path &path) {
    Picture picture;
    picture.name = path.stem().string();
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&png, path.c_str()) == 0)
        throw std::runtime_error(path.string() + ": " + png.message);
    png.format = PNG_FORMAT_GA;
    picture.width = png.width;
    picture.height = png.height;
    picture.grey_alpha.resize(PNG_IMAGE_SIZE(png));
    if (png_image_finish_read(&png, nullptr, picture.grey_alpha.data(), 0, nullptr) == 0)
        throw std::runtime_error(path.string() + ": " + png.message);
    return picture;
}

// The bitmap as it lies in memory: four 16-bit numbers, rows of nibbles, rows of mask bits.
std::vector<uint8_t> pack(const Picture &p) {
    const size_t scanline = (p.width + 1) / 2, mask_scanline = (p.width + 7) / 8;
    std::vector<uint8_t> pixels(scanline * p.height), mask(mask_scanline * p.height);
    for (size_t y = 0; y < p.height; ++y)
        for (size_t x = 0; x < p.width; ++x) {
            pixels[y * scanline + x / 2] |= static_cast<uint8_t>(p.level(x, y) << (x % 2 ? 0 : 4));
            if (p.opaque(x, y))
                mask[y * mask_scanline + x / 8] |= static_cast<uint8_t>(0x80 >> x % 8);
        }
    if (p.has_holes()) pixels.insert(pixels.end(), mask.begin(), mask.end());
    return pixels;
}

void print_bitmap(const Picture &p, size_t index) {
    const std::vector<uint8_t> bytes = pack(p);
    std::printf("const struct {\n    uint16_t width, height, depth, scanline;\n"
                "    uint8_t data[%zu];\n} bitmap%zu = {%zu, %zu, %d, %zu, {",
                bytes.size(), index, p.width, p.height, p.has_holes() ? 0x8004 : 4,
                (p.width + 1) / 2);
    for (size_t i = 0; i < bytes.size(); ++i)
        std::printf("%s%d,", i % 24 == 0 ? "\n    " : "", bytes[i]);
    std::printf("\n}};\n");
}

void print_source(const std::vector<Picture> &pictures) {
    std::printf("// Made from the pictures in cimages/. Do not edit.\n"
                "#include <cstdint>\n\n#include \"theme/builtin.h\"\n\nnamespace {\n");
    for (size_t i = 0; i < pictures.size(); ++i) print_bitmap(pictures[i], i);
    std::printf("const theme::BuiltinImage table[] = {\n");
    for (size_t i = 0; i < pictures.size(); ++i)
        std::printf("    {\"%s\", &bitmap%zu},\n", pictures[i].name.c_str(), i);
    std::printf("};\n} // namespace\n\n"
                "const std::span<const theme::BuiltinImage> theme::builtin_images = table;\n");
}

} // namespace

int main(int argc, char **argv) try {
    std::vector<Picture> pictures;
    for (int i = 1; i < argc; ++i) pictures.push_back(load(argv[i]));
    std::sort(pictures.begin(), pictures.end(),
              [](const Picture &a, const Picture &b) { return a.name < b.name; });
    print_source(pictures);
    return std::fflush(stdout) == 0 ? 0 : 1;
} catch (const std::exception &e) {
    std::fprintf(stderr, "cimages: %s\n", e.what());
    return 1;
}
