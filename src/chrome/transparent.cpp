// SPDX-License-Identifier: MIT
// Lightens or darkens areas of 4-bit rasters.
#include "chrome/transparent.h"

#include <array>
#include <cstdint>
#include <vector>

#include "ground/guard.h"
#include "kelvane/canvas.h"
#include "kelvane/frames.h"
#include "raster/bitmap.h"

namespace {

constexpr int depth = 4, levels = 1 << depth;

struct LevelTable {
    int percent;
    std::array<uint8_t, levels> level;
};

// Full contrast starts from `levels`, not from the highest level, so at low percentages a level
// may reach 16; its fifth bit then goes into the pixel to the left.
LevelTable make_table(int percent) {
    LevelTable table{percent, {}};
    const double p = percent / 100.0;
    for (size_t v = 0; v < levels; ++v) {
        const double level = static_cast<double>(v);
        const double value = p >= 0 ? level * p + levels * (1 - p) : -p * level;
        table.level[v] = static_cast<uint8_t>(static_cast<int64_t>(value));
    }
    return table;
}

const LevelTable &table_of(int percent) {
    static std::vector<LevelTable> tables;
    for (const LevelTable &table : tables)
        if (table.percent == percent) return table;
    if (tables.size() == tables.capacity()) tables.reserve(tables.size() + 5);
    return tables.emplace_back(make_table(percent));
}

void replace_high(uint8_t &byte, const LevelTable &table) {
    byte = static_cast<uint8_t>((byte & 0x0F) | table.level[byte >> 4] << 4);
}

void replace_low(uint8_t &byte, const LevelTable &table) {
    byte = static_cast<uint8_t>((byte & 0xF0) | table.level[byte & 0x0F]);
}

} // namespace

namespace chrome {

void replace_levels(ibitmap &bm, int percent) {
    const LevelTable &table = table_of(percent);
    for (size_t y = 0; y < bm.height; ++y) {
        uint8_t *row = bm.data + y * bm.scanline;
        for (size_t x = 0; x < bm.width; ++x)
            x % 2 == 0 ? replace_high(row[x / 2], table) : replace_low(row[x / 2], table);
    }
}

} // namespace chrome

void Transparent(int x, int y, int w, int h, int percent) {
    ground::guarded([&] {
        const icanvas *c = GetCanvas();
        if (!c || c->depth != depth) return; // bytes hold no levels to replace
        const raster::BitmapPtr copy(BitmapFromScreen(x, y, w, h));
        if (!copy || raster::depth_of(*copy) != depth) return;
        chrome::replace_levels(*copy, percent);
        DrawBitmap(x, y, copy.get());
    });
}

void TransparentRect(irect rect, int percent) {
    Transparent(rect.x, rect.y, rect.w, rect.h, percent);
}
