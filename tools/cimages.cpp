// SPDX-License-Identifier: MIT
// Turns picture files into the table of built-in pictures, as C++ source on standard output:
//
//     cimages arrow.png button.png ... > builtin_images.cpp
//
// A picture is named after its file. Greys become the nearest of 16 levels, and pixels that are
// less than half opaque are left out by the bitmap's mask.
#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "picture.h"

namespace {

struct Named {
    std::string name;
    tool::PackedPicture picture;
};

Named load(const std::filesystem::path &file) try {
    return {file.stem().string(), tool::pack(tool::read_png(file))};
} catch (const std::runtime_error &e) {
    throw std::runtime_error(file.string() + ": " + e.what());
}

void print_bitmap(const tool::PackedPicture &p, size_t index) {
    std::printf("const struct {\n    uint16_t width, height, depth, scanline;\n"
                "    uint8_t data[%zu];\n} bitmap%zu = {%d, %d, %d, %d, {",
                p.data.size(), index, p.width, p.height, p.depth, p.scanline);
    for (size_t i = 0; i < p.data.size(); ++i)
        std::printf("%s%d,", i % 24 == 0 ? "\n    " : "", p.data[i]);
    std::printf("\n}};\n");
}

void print_source(const std::vector<Named> &pictures) {
    std::printf("// Made from the pictures in cimages/. Do not edit.\n"
                "#include <cstdint>\n\n#include \"theme/builtin.h\"\n\nnamespace {\n");
    for (size_t i = 0; i < pictures.size(); ++i) print_bitmap(pictures[i].picture, i);
    std::printf("const theme::BuiltinImage table[] = {\n");
    for (size_t i = 0; i < pictures.size(); ++i)
        std::printf("    {\"%s\", &bitmap%zu},\n", pictures[i].name.c_str(), i);
    std::printf("};\n} // namespace\n\n"
                "const std::span<const theme::BuiltinImage> theme::builtin_images = table;\n");
}

} // namespace

int main(int argc, char **argv) try {
    std::vector<Named> pictures;
    for (int i = 1; i < argc; ++i) pictures.push_back(load(argv[i]));
    std::sort(pictures.begin(), pictures.end(),
              [](const Named &a, const Named &b) { return a.name < b.name; });
    print_source(pictures);
    return std::fflush(stdout) == 0 ? 0 : 1;
} catch (const std::exception &e) {
    std::fprintf(stderr, "cimages: %s\n", e.what());
    return 1;
}
