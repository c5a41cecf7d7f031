// SPDX-License-Identifier: MIT
// Loads the plug-in "libMorphwrapper.so" and asks it.
#include "dictionary/analysis.h"

#include <array>
#include <cstdio>
#include <dlfcn.h>

namespace dictionary {
namespace {

constexpr const char *library = "libMorphwrapper.so", *function = "morphoAnalize";
constexpr size_t longest_result = 1024;

// 1 when `out`, of `size` bytes, holds what a word is to be looked up as.
using Analyse = int(const char *word, const char *language, char *out, int size);

Analyse *load() {
    void *const handle = dlopen(library, RTLD_NOW | RTLD_LOCAL);
    auto *const found = handle ? reinterpret_cast<Analyse *>(dlsym(handle, function)) : nullptr;
    if (handle && !found) dlclose(handle);
    std::fputs(found ? "using Lingvo morphology\n" : "using internal morphology\n", stderr);
    return found;
}

Analyse *plug_in() {
    static Analyse *const loaded = load();
    return loaded;
}

} // namespace

bool has_plug_in() {
    return plug_in();
}

std::optional<std::string> analyse(const char *word, const char *language) {
    std::array<char, longest_result> out{};
    if (plug_in()(word, language, out.data(), static_cast<int>(out.size())) != 1)
        return std::nullopt;
    out.back() = '\0';
    return out.data();
}

} // namespace dictionary
