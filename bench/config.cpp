// peers: glib-2.0
// SPDX-License-Identifier: MIT
// Configuration files beside GLib's key files. Nothing is synced to the disk on either side.
#include <benchmark/benchmark.h>
#include <filesystem>
#include <fstream>
#include <glib.h>
#include <string>
#include <unistd.h>

#include "beside.h"
#include "kelvane/config.h"

// In place of the C library's, for both sides.
extern "C" int fdatasync(int) {
    return 0;
}
extern "C" int fsync(int) {
    return 0;
}

namespace {

struct files {
    std::filesystem::path root =
        std::filesystem::temp_directory_path() / ("kelvane-bench-" + std::to_string(getpid()));
    std::string ours = root / "ours.cfg", peer = root / "peer.ini";

    explicit files(long keys) {
        std::filesystem::create_directories(root);
        std::string text;
        for (long i = 0; i < keys; i++)
            text += key(i) + "=value of the setting " + std::to_string(i * 7) + "\n";
        std::ofstream(ours) << text;
        std::ofstream(peer) << "[settings]\n" << text;
    }
    ~files() { std::filesystem::remove_all(root); }

    static std::string key(long i) { return "setting" + std::to_string(i); }
};

GKeyFile *load(const files &f) {
    GKeyFile *file = g_key_file_new();
    if (!g_key_file_load_from_file(file, f.peer.c_str(), G_KEY_FILE_NONE, nullptr)) std::abort();
    return file;
}

void open_and_close(benchmark::State &state) {
    state.SetLabel("the peer keeps comments and the order, and takes no lock");
    const files f(state.range(0));
    beside(
        state, Against::peer, [&] { CloseConfigNoSave(OpenConfig(f.ours.c_str(), nullptr)); },
        [&] { g_key_file_free(load(f)); });
}
BENCHMARK(open_and_close)->Arg(1000)->Arg(10000)->UseManualTime();

void read_string(benchmark::State &state) {
    state.SetLabel("the peer hands out a copy");
    const files f(200);
    const bool present = state.range(0) != 0;
    iconfig *ours = OpenConfig(f.ours.c_str(), nullptr);
    GKeyFile *peer = load(f);
    std::vector<std::string> names;
    for (long i = 0; i < 200; i++) names.push_back(files::key(present ? i : i + 200));
    beside(
        state, Against::peer,
        [&] {
            for (const auto &name : names)
                benchmark::DoNotOptimize(ReadString(ours, name.c_str(), ""));
        },
        [&] {
            for (const auto &name : names)
                g_free(g_key_file_get_value(peer, "settings", name.c_str(), nullptr));
        });
    CloseConfigNoSave(ours);
    g_key_file_free(peer);
}
BENCHMARK(read_string)->ArgName("present")->Arg(1)->Arg(0)->UseManualTime();

void save_one_change(benchmark::State &state) {
    state.SetLabel("both read, change and write the file; ours parses it when others changed it");
    const files f(state.range(0));
    iconfig *ours = OpenConfig(f.ours.c_str(), nullptr);
    int value = 0;
    beside(
        state, Against::peer,
        [&] {
            WriteInt(ours, "setting500", value++);
            if (SaveConfig(ours) != 1) std::abort();
        },
        [&] {
            GKeyFile *peer = load(f);
            g_key_file_set_integer(peer, "settings", "setting500", value);
            if (!g_key_file_save_to_file(peer, f.peer.c_str(), nullptr)) std::abort();
            g_key_file_free(peer);
        });
    CloseConfigNoSave(ours);
}
BENCHMARK(save_one_change)->Arg(1000)->UseManualTime();

} // namespace

BENCHMARK_MAIN();
