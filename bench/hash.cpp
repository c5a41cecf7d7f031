// peers: glib-2.0
// SPDX-License-Identifier: MIT
// Hash tables beside GLib's, and sorted enumeration beside a sort of the bare names.
#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstring>
#include <glib.h>
#include <random>
#include <string>
#include <vector>

#include "beside.h"
#include "kelvane/hash.h"

namespace {

constexpr int buckets = 1021;

std::vector<std::string> make_keys(int n) {
    std::vector<std::string> keys;
    for (int i = 0; i < n; i++) keys.push_back("section.setting" + std::to_string(i * 37 % n));
    return keys;
}

ihash filled(const std::vector<std::string> &keys) {
    ihash h = hash_new(buckets);
    for (const auto &key : keys) hash_add(h, key.c_str(), key.c_str());
    return h;
}

GHashTable *filled_peer(const std::vector<std::string> &keys) {
    GHashTable *h = g_hash_table_new_full(g_str_hash, g_str_equal, g_free, g_free);
    for (const auto &key : keys)
        g_hash_table_insert(h, g_strdup(key.c_str()), g_strdup(key.c_str()));
    return h;
}

void find(benchmark::State &state) {
    const auto keys = make_keys(static_cast<int>(state.range(0)));
    ihash ours = filled(keys);
    GHashTable *peer = filled_peer(keys);
    beside(
        state, Against::peer,
        [&] {
            for (const auto &key : keys) benchmark::DoNotOptimize(hash_find(ours, key.c_str()));
        },
        [&] {
            for (const auto &key : keys)
                benchmark::DoNotOptimize(g_hash_table_lookup(peer, key.c_str()));
        });
    hash_destroy(ours);
    g_hash_table_destroy(peer);
}
BENCHMARK(find)->Arg(1000)->UseManualTime();

void insert_and_free(benchmark::State &state) {
    const auto keys = make_keys(static_cast<int>(state.range(0)));
    beside(
        state, Against::peer, [&] { hash_destroy(filled(keys)); },
        [&] { g_hash_table_destroy(filled_peer(keys)); });
}
BENCHMARK(insert_and_free)->Arg(1000)->UseManualTime();

int by_name(const char *a, void *, const char *b, void *) {
    return std::strcmp(a, b);
}

int collect(const char *name, void *, void *names) {
    static_cast<std::vector<const char *> *>(names)->push_back(name);
    return 0;
}

std::vector<std::string> random_names(int n) {
    static std::mt19937 random(5);
    std::vector<std::string> names;
    for (int i = 0; i < n; i++) names.push_back(std::to_string(random()));
    return names;
}

// Many tables, or the processor would learn the order of the names of one.
void enumerate_sorted(benchmark::State &state) {
    constexpr int tables = 64;
    std::vector<ihash> hashes;
    std::vector<std::vector<const char *>> unsorted(tables);
    for (auto &names : unsorted) {
        hashes.push_back(filled(random_names(static_cast<int>(state.range(0)))));
        hash_enumerate(hashes.back(), nullptr, collect, &names);
    }
    std::vector<const char *> names;
    state.SetLabel("the limit knows the names and its comparison; ours hands out each item");
    beside(
        state, Against::limit,
        [&] {
            for (ihash h : hashes) {
                names.clear();
                hash_enumerate(h, by_name, collect, &names);
            }
        },
        [&] {
            for (const auto &some : unsorted) {
                names = some;
                std::sort(names.begin(), names.end(),
                          [](const char *a, const char *b) { return std::strcmp(a, b) < 0; });
                benchmark::DoNotOptimize(names.data());
            }
        });
    for (ihash h : hashes) hash_destroy(h);
}
BENCHMARK(enumerate_sorted)->Arg(100)->Arg(1000)->UseManualTime();

} // namespace

BENCHMARK_MAIN();
