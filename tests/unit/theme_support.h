// SPDX-License-Identifier: MIT
// An open theme for tests.
#pragma once

#include <map>
#include <string>

#include "chrome/chrome.h"
#include "kelvane/bitmaps.h"
#include "raster/bitmap.h"
#include "theme/parameters.h"
#include "theme/source.h"

// Gives its pictures and texts to everything drawn while it lives.
struct TestTheme {
    static inline std::map<std::string, raster::BitmapPtr> pictures;
    static inline std::map<std::string, std::string> texts;

    TestTheme() {
        chrome::reset();
        theme::drop_ui_parameters();
        theme::source.picture = [](const char *name) {
            const auto found = pictures.find(name);
            return found != pictures.end() ? CopyBitmap(found->second.get()) : nullptr;
        };
        theme::source.text = [](const char *name) {
            const auto found = texts.find(name);
            return found != texts.end() ? found->second.c_str() : nullptr;
        };
    }
    TestTheme(const TestTheme &) = delete;
    ~TestTheme() {
        theme::source = {};
        chrome::reset();
        theme::drop_ui_parameters();
        pictures.clear(), texts.clear();
    }
    // A picture of one grey level, 0 to 15.
    static void add(const char *name, int w, int h, int level) {
        ibitmap *bm = NewBitmap(w, h);
        std::fill_n(bm->data, raster::pixel_bytes(*bm), static_cast<uint8_t>(level * 0x11));
        pictures[name].reset(bm);
    }
};
