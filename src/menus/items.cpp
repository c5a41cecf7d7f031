// SPDX-License-Identifier: MIT
// Walks item arrays, which end with an item of type 0.
#include "menus/items.h"

#include "kelvane/languages.h"

namespace menus {
namespace {

constexpr unsigned kind_mask = 0x1F;
constexpr unsigned plain_flag = 0x8000;

int count_of(const imenuex *menu) {
    int count = 0;
    while (menu[count].type != 0) ++count;
    return count;
}

const char *label_of(const char *text) {
    return text ? GetLangText(text) : "";
}

} // namespace

int kind_of(unsigned type) {
    if ((type & ITEM_HIDDEN) != 0) return 0;
    const int kind = static_cast<int>(type & kind_mask);
    const bool known = is_selectable(kind) || kind == ITEM_HEADER || kind == ITEM_INACTIVE ||
                       kind == ITEM_SEPARATOR;
    return known ? kind : 0;
}

std::vector<imenuex> extended(const imenu *menu) {
    std::vector<imenuex> items;
    for (; menu->type != 0; ++menu)
        items.push_back({.type = static_cast<unsigned short>(menu->type | plain_flag),
                         .index = menu->index,
                         .text = menu->text,
                         .submenu = reinterpret_cast<imenuex *>(menu->submenu),
                         .icon = nullptr,
                         .reserved = nullptr,
                         .font = nullptr});
    items.push_back({});
    return items;
}

std::vector<Item> read_items(const imenuex *menu, OwnFonts fonts) {
    std::vector<Item> items;
    items.reserve(static_cast<size_t>(count_of(menu)));
    for (int position = 0; menu[position].type != 0; ++position) {
        const imenuex &from = menu[position];
        const int kind = kind_of(from.type);
        if (kind == 0) continue;
        items.push_back({.position = position,
                         .kind = kind,
                         .index = from.index,
                         .text = label_of(from.text),
                         .submenu = kind == ITEM_SUBMENU ? from.submenu : nullptr,
                         .is_plain = (from.type & plain_flag) != 0,
                         .icon = from.icon,
                         .font = fonts == OwnFonts::used ? from.font : nullptr});
    }
    return items;
}

int first_selectable_position(const imenuex *menu) {
    for (int position = 0; menu[position].type != 0; ++position)
        if (is_selectable(kind_of(menu[position].type))) return position;
    return -1;
}

} // namespace menus
