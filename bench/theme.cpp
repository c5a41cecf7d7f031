// SPDX-License-Identifier: MIT
// Themes beside the work that a look-up cannot do without. x_peer is the peer's time divided by
// ours.
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <filesystem>
#include <fstream>
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
        state, "x_peer",
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
        state, "x_peer", [] { std::free(GetResource("picture", nullptr)); },
        [&] {
            std::string unpacked(bytes.size(), '\0');
            uLongf size = unpacked.size();
            uncompress(reinterpret_cast<Bytef *>(unpacked.data()), &size,
                       reinterpret_cast<const Bytef *>(packed.data()), packed.size());
            benchmark::DoNotOptimize(unpacked.data());
        });
}
BENCHMARK(theme_picture)->UseManualTime();

} // namespace

BENCHMARK_MAIN();
