// SPDX-License-Identifier: MIT
// Any bytes as a file of layouts: what was read stays in its bounds, and five keys reach all of it.
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "keyboard/layout.h"
#include "keyboard/selection.h"

using namespace keyboard;

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

void check(const TouchLayout &layout) {
    require(layout.keys.size() <= most_touch_keys);
    require(layout.rows >= 0 && layout.rows <= most_touch_rows);
    require(layout.columns >= 0 && layout.columns <= most_columns);
    int row = 0, end = 0; // of the key before
    for (const TouchKey &key : layout.keys) {
        require(key.code != code::none && key.code != code::next);
        if (key.pos.y > row) row = key.pos.y, end = 0;
        require(key.pos.y == row && row < layout.rows);
        require(key.pos.x >= end && key.pos.w > 0);
        end = key.pos.x + key.pos.w;
        require(end <= layout.columns);
    }
    const int last = static_cast<int>(layout.keys.size()) - 1;
    if (last >= 0) require(layout.key_at(end - 1, row) == last);
}

// Through all lines, into what stands there and out again.
void walk(const Block &block, bool is_zoned) {
    SelectionGrid grid(block, is_zoned, {code::enter});
    for (int line = 0; line <= command_row; ++line) {
        grid.move(Step::down);
        grid.move(Step::left);
        if (!grid.choose()) require(grid.choose());
        grid.move(Step::left);
        const GridKey key = *grid.key();
        grid.go_home();
        grid.go_to(key);
        require(grid.choose() && grid.key()->column == key.column && grid.key()->row == key.row);
        grid.leave_zone();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    Layouts layouts;
    read_sections({reinterpret_cast<const char *>(data), size}, layouts.languages);
    require(layouts.languages.size() <= most_languages);
    read_external({reinterpret_cast<const char *>(data), size}, layouts.languages, 0);
    for (const Language &language : layouts.languages) {
        require(!language.code.empty() && language.code.size() <= 8);
        for (const TouchLayout *layout :
             {&language.touch_lower, &language.touch_upper, &language.touch_numeric})
            check(*layout);
        check(touch_of_block(language.lower));
        walk(language.lower, layouts.is_zoned());
        walk(language.upper, !layouts.is_zoned());
    }
    return 0;
}
