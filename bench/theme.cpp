// SPDX-License-Identifier: MIT
// Themes beside the work that a look-up cannot do without.
#include <benchmark/benchmark.h>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <unistd.h>
#include <vector>
#include <zlib.h>

#include "../tests/support/theme_file.h"
#include "beside.h"
#include "kelvane/hash.h"
#include "kelvane/theme.h"

namespace {

constexpr int parameters = 400;

std::string name(int i) {
    return std::string("section.parameter").append(std::to_string(i));
}

// A picture with some detail, 100 x 100 in 16 greys.
std::string picture() {
    std::string bytes("\x64\0\x64\0\4\0\x32\0", 8);
    for (int i = 0; i < 100 * 50; i++) bytes += static_cast<char>((i * i / 37) & 0x77);
    return bytes;
}

struct Theme {
    std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::path root = std::filesystem::temp_directory_path() /
                                 std::string("kelvane-bench-").append(std::to_string(getpid()));
    Theme() {
        std::string text;
        for (int i = 0; i < parameters; i++) text.append(name(i)).append("=0x1\n");
        ThemeFile file(text);
        file.add("picture", picture());
        std::filesystem::create_directories(root / "system/themes");
        std::filesystem::current_path(root);
        std::ofstream("system/themes/t.tqt", std::ios::binary) << file.bytes();
        OpenTheme("t");
    }
    ~Theme() {
        std::filesystem::current_path(before);
        std::filesystem::remove_all(root);
    }
};

void theme_int(benchmark::State &state) {
    const Theme theme;
    ihash peer = hash_new(1021);
    std::vector<std::string> names;
    for (int i = 0; i < parameters; i++) {
        hash_add(peer, name(i).c_str(), "0x1");
        names.push_back(name(state.range(0) != 0 ? i : i + parameters));
    }
    beside(
        state, Against::limit,
        [&] {
            for (const auto &n : names) benchmark::DoNotOptimize(GetThemeInt(n.c_str(), 0));
        },
        [&] {
            for (const auto &n : names) benchmark::DoNotOptimize(hash_find(peer, n.c_str()));
        });
    hash_destroy(peer);
}
BENCHMARK(theme_int)->ArgName("present")->Arg(1)->Arg(0)->UseManualTime();

void theme_picture(benchmark::State &state) {
    const Theme theme;
    const std::string bytes = picture(), packed = ThemeFile::pack(bytes);
    beside(
        state, Against::limit, [] { std::free(GetResource("picture", nullptr)); },
        [&] {
            std::string unpacked(bytes.size(), '\0');
            uLongf size = unpacked.size();
            uncompress(reinterpret_cast<Bytef *>(unpacked.data()), &size,
                       reinterpret_cast<const Bytef *>(packed.data()), packed.size());
            benchmark::DoNotOptimize(unpacked.data());
        });
}
BENCHMARK(theme_picture)->UseManualTime();

std::string read_file(const char *path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// All that the peer does: the file is read and its parameter text unpacked.
void read_and_unpack() {
    const std::string file = read_file("system/themes/default.tqt");
    const auto number = [&file](size_t at) {
        uint32_t value;
        std::memcpy(&value, file.data() + at, sizeof value);
        return value;
    };
    std::string text(number(20), '\0');
    uLongf size = text.size();
    uncompress(reinterpret_cast<Bytef *>(text.data()), &size,
               reinterpret_cast<const Bytef *>(file.data() + number(24)), number(28));
    benchmark::DoNotOptimize(text.data());
}

// The theme that comes with the library, on a device with its fonts.
void theme_open(benchmark::State &state) {
    const Theme folder;
    std::filesystem::copy_file(KELVANE_THEMES "/default.tqt", "system/themes/default.tqt");
    std::filesystem::create_directories("system/fonts");
    for (const char *font : {"DejaVuSans.ttf", "DejaVuSans-Bold.ttf"})
        std::filesystem::create_symlink(std::string("/usr/share/fonts/truetype/dejavu/") + font,
                                        std::string("system/fonts/") + font);
    stderr = std::fopen("/dev/null", "w"); // each opening is told of
    beside(
        state, Against::limit, [] { OpenTheme("default"); }, read_and_unpack);
}
BENCHMARK(theme_open)->UseManualTime();

} // namespace

BENCHMARK_MAIN();
