// SPDX-License-Identifier: MIT
// Compares pictures by their pixels and traces by their lines.
#include "compare.h"

#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>
#include <optional>
#include <vector>

#include <png.h>

namespace test {
namespace {

namespace fs = std::filesystem;

constexpr unsigned longest_side = 16384;

struct Picture {
    unsigned width = 0, height = 0;
    std::vector<uint8_t> grey;
};

std::optional<Picture> load(const fs::path &path) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, path.c_str())) return std::nullopt;
    // No screen is larger; a damaged picture may say that it is.
    if (image.width > longest_side || image.height > longest_side) {
        png_image_free(&image);
        return std::nullopt;
    }
    image.format = PNG_FORMAT_GRAY;
    Picture picture{image.width, image.height, std::vector<uint8_t>(PNG_IMAGE_SIZE(image))};
    if (!png_image_finish_read(&image, nullptr, picture.grey.data(), 0, nullptr))
        return std::nullopt;
    return picture;
}

constexpr int pale(uint8_t grey) {
    return 192 + grey / 4;
}

void save_difference(const Picture &expected, const Picture &actual, const fs::path &path) {
    std::vector<uint8_t> rgb;
    rgb.reserve(actual.grey.size() * 3);
    for (size_t i = 0; i < actual.grey.size(); ++i) {
        const bool differs = actual.grey[i] != expected.grey[i];
        const auto light = static_cast<uint8_t>(pale(actual.grey[i]));
        const uint8_t colour[3] = {differs ? uint8_t{220} : light, differs ? uint8_t{0} : light,
                                   differs ? uint8_t{0} : light};
        rgb.insert(rgb.end(), colour, colour + 3);
    }
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = actual.width;
    image.height = actual.height;
    image.format = PNG_FORMAT_RGB;
    png_image_write_to_file(&image, path.c_str(), 0, rgb.data(), 0, nullptr);
}

size_t differing(const Picture &a, const Picture &b) {
    size_t count = 0;
    for (size_t i = 0; i < a.grey.size(); ++i) count += a.grey[i] != b.grey[i];
    return count;
}

std::string size_of(const Picture &picture) {
    return std::to_string(picture.width) + "x" + std::to_string(picture.height);
}

std::vector<std::string> lines_of(const fs::path &path) {
    std::ifstream stream(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

// Fields are only ever added, behind those that there are.
bool has_all_of(const std::string &actual, const std::string &expected) {
    if (expected.empty() || expected.back() != '}') return actual == expected;
    const size_t fields = expected.size() - 1;
    return actual.compare(0, fields, expected, 0, fields) == 0 && actual.size() > fields &&
           (actual[fields] == ',' || actual[fields] == '}');
}

} // namespace

bool have_same_bytes(const fs::path &a, const fs::path &b) {
    std::ifstream x(a, std::ios::binary), y(b, std::ios::binary);
    using Bytes = std::istreambuf_iterator<char>;
    return x && y && std::equal(Bytes(x), Bytes(), Bytes(y), Bytes());
}

std::string compare_pictures(const fs::path &expected, const fs::path &actual,
                             const fs::path &difference) {
    if (have_same_bytes(expected, actual)) return "";
    const auto a = load(expected), b = load(actual);
    if (!a || !b) return (a ? actual : expected).string() + " is no picture that can be read";
    if (a->width != b->width || a->height != b->height)
        return "the picture is " + size_of(*b) + " instead of " + size_of(*a);
    if (a->grey == b->grey) return "";
    save_difference(*a, *b, difference);
    return std::to_string(differing(*a, *b)) + " pixels differ, see " + difference.string();
}

std::string compare_traces(const fs::path &expected, const fs::path &actual) {
    const auto a = lines_of(expected), b = lines_of(actual);
    for (size_t i = 0; i < std::min(a.size(), b.size()); ++i)
        if (!has_all_of(b[i], a[i]))
            return "update " + std::to_string(i + 1) + " is " + b[i] + " instead of " + a[i];
    if (a.size() == b.size()) return "";
    return std::to_string(b.size()) + " updates of the screen instead of " +
           std::to_string(a.size()) + "; the first beyond is " +
           (a.size() < b.size() ? b[a.size()] : a[b.size()]);
}

} // namespace test
