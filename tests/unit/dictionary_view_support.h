// SPDX-License-Identifier: MIT
// Dictionaries of a few words, and the view of them over a picture on the headless device.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>
#include <zlib.h>

#include "dialogs_support.h"
#include "dictionary_view/view.h"
#include "kelvane/dictionary.h"
#include "kelvane/dictionary_view.h"
#include "support/tempdir.h"

namespace dictionary_test {

using boxes::screen;
using Entries = std::vector<std::pair<std::string, std::string>>;

inline std::string number(size_t n, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i) text += static_cast<char>(n >> 8 * i);
    return text;
}

inline std::string packed(const std::string &text) {
    uLongf size = compressBound(text.size());
    std::string out(size, '\0');
    compress(reinterpret_cast<Bytef *>(out.data()), &size,
             reinterpret_cast<const Bytef *>(text.data()), text.size());
    out.resize(size);
    return out;
}

// Writes a dictionary of entries in the order of their characters, three in a container, that
// compares words as they are.
inline void write_dictionary(const std::string &name, const Entries &entries,
                             const std::string &keyboard = "") {
    constexpr size_t header_bytes = 128, in_container = 3;
    std::string index, containers;
    for (size_t i = 0; i < entries.size(); i += in_container) {
        std::string container;
        for (size_t j = i; j < std::min(i + in_container, entries.size()); ++j) {
            const std::string record = entries[j].first + '\0' + entries[j].second + '\0';
            container += number(record.size() + 2, 2) + record;
        }
        const std::string data = packed(container + number(0, 2));
        index += number(data.size(), 2) + entries[i].first + '\0';
        containers += data;
    }
    index += number(0, 2);
    const auto section = [](const std::string &text) {
        return text.empty() ? "" : number(text.size(), 4) + packed(text);
    };
    const std::string keys = section(keyboard), words = section(index);
    std::string header = "SDIC" + number(257, 4) + number(0, 4) + number(1 << 20, 4);
    header.resize(header_bytes);
    const auto put = [&](size_t at, size_t value) { header.replace(at, 4, number(value, 4)); };
    if (!keys.empty()) put(44, header_bytes);
    put(56, header_bytes + keys.size());
    put(60, header_bytes + keys.size() + words.size());
    write_file("system/dictionaries/" + name + ".dic", header + keys + words + containers);
}

// "w00", "w01", ... with a line each.
inline Entries numbered(int count) {
    Entries entries;
    for (int i = 0; i < count; ++i) {
        const std::string n = std::to_string(i);
        entries.emplace_back("w" + std::string(n.size() < 2 ? "0" : "") + n, "meaning " + n);
    }
    return entries;
}

class Test : public boxes::Test {
  protected:
    Test() {
        CloseDictionary();
        before = screen();
    }
    ~Test() override { CloseDictionary(); }
    static dictionary_view::View &view() { return *dictionary_view::view(); }
    static bool is_open() { return dictionary_view::view() != nullptr; }
    static std::string word() { return view().words.headword(); }
    static void press_all(const std::vector<int> &keys) {
        for (const int key : keys) headless::press(key);
    }
    static void tap(const irect &r) { headless::tap(r.x + r.w / 2, r.y + r.h / 2); }
    static void tap_tool(dictionary_view::Tool tool) {
        tap(view().place.tools[static_cast<size_t>(tool)]);
    }
    // The page is there again, and its handler has the input.
    void expect_closed() const {
        headless::detail::settle();
        EXPECT_FALSE(is_open());
        EXPECT_EQ(GetEventHandler(), headless::handler());
        EXPECT_TRUE(screen() == before);
    }

    std::vector<uint8_t> before;
};

} // namespace dictionary_test
