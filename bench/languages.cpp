// SPDX-License-Identifier: MIT
// Texts beside the hash finds that they take, and a language file beside a configuration file of
// the same bytes.
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

#include "beside.h"
#include "kelvane/config.h"
#include "kelvane/hash.h"
#include "kelvane/languages.h"

namespace {

constexpr int keys = 200;

std::string key(const char *name, int i) {
    return name + std::to_string(i);
}

// Each key leads through three others to a text.
void look_up(benchmark::State &state) {
    const int steps = static_cast<int>(state.range(0));
    const char *names[] = {"@Title", "@Second", "@Third", "@Text"};
    ihash peer = hash_new(1021);
    std::vector<std::string> all[4];
    for (int i = 0; i < keys; i++)
        for (int step = 0; step <= steps; step++) {
            all[step].push_back(key(names[step], i));
            const std::string text = step == steps ? "text" : key(names[step + 1], i);
            AddTranslation(all[step][i].c_str(), text.c_str());
            hash_add(peer, all[step][i].c_str(), text.c_str());
        }
    beside(
        state, Against::limit,
        [&] {
            for (const auto &k : all[0]) benchmark::DoNotOptimize(GetLangText(k.c_str()));
        },
        [&] {
            for (int step = 0; step <= steps; step++)
                for (const auto &k : all[step])
                    benchmark::DoNotOptimize(hash_find(peer, k.c_str()));
        });
    hash_destroy(peer);
}
BENCHMARK(look_up)->ArgName("steps")->Arg(0)->Arg(3)->UseManualTime();

void load(benchmark::State &state) {
    const auto before = std::filesystem::current_path();
    const auto root = std::filesystem::temp_directory_path() / key("kelvane-bench-", getpid());
    std::filesystem::create_directories(root / "system/language");
    std::filesystem::current_path(root);
    for (const char *file : {"system/language/de.txt", "peer.cfg"}) {
        std::ofstream out(file);
        for (int i = 0; i < 2000; i++)
            out << key("@Message", i) << "=Das ist der Text der Meldung " << i << "\n";
    }
    // Like the language, the settings of the last turn make room for those of the next.
    iconfig *peer = nullptr;
    beside(
        state, Against::limit, [] { LoadLanguage("de"); },
        [&] {
            CloseConfigNoSave(peer);
            peer = OpenConfig("peer.cfg", nullptr);
        });
    CloseConfigNoSave(peer);
    std::filesystem::current_path(before);
    std::filesystem::remove_all(root);
}
BENCHMARK(load)->Name("load_language")->UseManualTime();

} // namespace

BENCHMARK_MAIN();
