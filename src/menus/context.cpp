// SPDX-License-Identifier: MIT
// Named context menus: records that are made once and found again.
#include "menus/context.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

#include "ground/guard.h"
#include "kelvane/hash.h"
#include "kelvane/languages.h"
#include "kelvane/theme.h"
#include "menus/stack.h"

namespace menus {
namespace {

constexpr int buckets = 31;

// A record with what it owns. Nothing else is in the table.
struct Record : icontext_menu {
    icontext_menu_properties own_properties;
};

void free_record(void *value) {
    Record *record = static_cast<Record *>(value);
    for (ifont *font : {record->own_properties.font_normal, record->own_properties.font_selected,
                        record->own_properties.font_disabled})
        CloseFont(font);
    std::free(record->id);
    delete record;
}

ihash records = nullptr;
const icontext_menu *next_context = nullptr;

icontext_menu *make_record(const char *id) {
    auto record = std::make_unique<Record>();
    record->id = strdup(id);
    if (!record->id) return nullptr;
    record->own_properties = LoadContextMenuProperties();
    record->properties = &record->own_properties;
    record->active_element = -1;
    record->enable_pointer = static_cast<short>(record->own_properties.enable_pointer);
    record->update_after_close = 1;
    vhash_add(records, id, record.get());
    if (vhash_find(records, id) != record.get()) {
        free_record(record.release());
        return nullptr;
    }
    return record.release();
}

bool is_sideways(int side) {
    return side == MENU_SIDE_RIGHT || side == MENU_SIDE_LEFT;
}

} // namespace

const icontext_menu *take_context() {
    return std::exchange(next_context, nullptr);
}

Anchor anchor_of(const icontext_menu &context, int x, int y) {
    const irect &item = context.pos_selected_item;
    const bool has_item = item.w > 0 && item.h > 0;
    return {.by = has_item ? PlacedBy::item : PlacedBy::corner,
            .x = x,
            .y = y,
            .item = item,
            .side = context.pos_menu.flags};
}

const icontext_menu *submenu_context(const icontext_menu &parent, int level, const Item &item) {
    char id[32];
    std::snprintf(id, sizeof id, "submenu%i", level);
    icontext_menu *context = CreateContextMenu(id);
    if (!context) return nullptr;
    const int side = IsRTL() ? MENU_SIDE_LEFT : MENU_SIDE_RIGHT;
    context->hproc = parent.hproc;
    imenuex *items = const_cast<imenuex *>(item.submenu);
    context->menuex = item.is_plain ? nullptr : items;
    context->menu = item.is_plain ? reinterpret_cast<imenu *>(items) : nullptr;
    context->pos_menu = {0, 0, 0, 0,
                         is_sideways(parent.pos_menu.flags) ? parent.pos_menu.flags : side};
    context->properties = parent.properties;
    context->active_element = -1;
    context->enable_pointer = parent.enable_pointer;
    context->enable_aura = parent.enable_aura;
    context->use_own_font = parent.use_own_font;
    context->update_after_close = parent.update_after_close;
    context->only_choise = parent.only_choise;
    return context;
}

void reset_contexts() {
    hash_destroy(std::exchange(records, nullptr));
    next_context = nullptr;
}

} // namespace menus

icontext_menu *CreateContextMenu(const char *id) {
    using namespace menus;
    return ground::guarded(nullptr, [&]() -> icontext_menu * {
        if (!id) return nullptr;
        if (!records) records = vhash_new(buckets, nullptr, free_record);
        if (!records) return nullptr;
        void *found = vhash_find(records, id);
        return found ? static_cast<Record *>(found) : make_record(id);
    });
}

void OpenContextMenu(icontext_menu *context) {
    if (!context) return;
    SetContextMenuStruct(context);
    const irect &at = context->pos_menu;
    if (context->menuex)
        OpenMenuEx(context->menuex, context->active_element, at.x, at.y, context->hproc);
    else
        OpenMenu(context->menu, context->active_element, at.x, at.y, context->hproc);
    SetContextMenuStruct(nullptr);
}

void CloseContextMenu() {
    while (menus::top()) menus::close_top();
}

void SetContextMenu(const char *id) {
    if (!id || !menus::records) return;
    if (void *found = vhash_find(menus::records, id))
        SetContextMenuStruct(static_cast<menus::Record *>(found));
}

void SetContextMenuStruct(icontext_menu *context) {
    menus::next_context = context;
}
