// SPDX-License-Identifier: MIT
// Dictionaries of a few words, and the view of them over a picture on the headless device.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "dialogs_support.h"
#include "dictionary_view/view.h"
#include "kelvane/dictionary.h"
#include "kelvane/dictionary_view.h"
#include "support/dictionary_file.h"
#include "support/tempdir.h"

namespace dictionary_test {

using boxes::screen;
using Entries = dictionaries::Words;

// Writes a dictionary of sorted entries, three in a container.
inline void write_dictionary(const std::string &name, const Entries &entries,
                             const std::string &keyboard = "") {
    constexpr size_t in_container = 3;
    std::vector<Entries> containers;
    for (size_t i = 0; i < entries.size(); ++i) {
        if (i % in_container == 0) containers.emplace_back();
        containers.back().push_back(entries[i]);
    }
    dictionaries::File file = dictionaries::file_of(containers, {}, keyboard);
    file.limit = 1 << 20;
    dictionaries::install(file, name);
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
