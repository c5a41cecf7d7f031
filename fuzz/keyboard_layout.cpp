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
    for (size_t i = 0; i < layout.keys.size(); ++i) {
        const TouchKey &key = layout.keys[i];
        require(key.code != code::none && key.code != code::next);
        require(key.pos.x >= 0 && key.pos.w > 0 && key.pos.x + key.pos.w <= layout.columns);
        require(layout.key_at(key.pos.x, key.pos.y) == static_cast<int>(i));
        require(layout.key_at(key.pos.x + key.pos.w - 1, key.pos.y) == static_cast<int>(i));
    }
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
