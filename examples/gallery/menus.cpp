// SPDX-License-Identifier: MIT
// The menus that open over a page: each row opens one beside it, and the last answer stands below.
#include <array>
#include <cstdio>
#include <iterator>

#include "rows.h"

namespace {

imenu sizes[] = {{ITEM_BULLET, 11, "Small", nullptr},
                 {ITEM_BULLET, 12, "Medium", nullptr},
                 {ITEM_BULLET, 13, "Large", nullptr},
                 {ITEM_BULLET, 14, "Very large", nullptr},
                 {}};
imenu sides[] = {{ITEM_ACTIVE, 21, "Narrow", nullptr}, {ITEM_ACTIVE, 22, "Wide", nullptr}, {}};
imenu margins[] = {{ITEM_SUBMENU, 0, "Left", sides}, {ITEM_SUBMENU, 0, "Right", sides}, {}};
imenu book[] = {{ITEM_HEADER, 0, "The Time Machine", nullptr},
                {ITEM_ACTIVE, 1, "Contents", nullptr},
                {ITEM_ACTIVE, 2, "Bookmarks", nullptr},
                {ITEM_INACTIVE, 3, "Notes", nullptr},
                {ITEM_SEPARATOR, 0, nullptr, nullptr},
                {ITEM_SUBMENU, 0, "Text size", sizes},
                {ITEM_SUBMENU, 0, "Margins", margins},
                {ITEM_ACTIVE, 6, "Turn the screen", nullptr},
                {ITEM_SEPARATOR, 0, nullptr, nullptr},
                {ITEM_ACTIVE, 7, "About this book", nullptr},
                {}};
imenu word[] = {{ITEM_ACTIVE, 31, "Look it up", nullptr},
                {ITEM_ACTIVE, 32, "Translate", nullptr},
                {ITEM_SUBMENU, 0, "Mark", sizes},
                {}};

constexpr int chapter_count = 60;

// The row that opens a menu.
irect opener();
void note_answer(int index);

void open_plain() {
    const irect r = opener();
    OpenMenu(book, 1, r.x + 6 * unit(), r.y, note_answer);
}

void open_long() {
    static std::array<char[16], chapter_count> labels;
    static imenu chapters[chapter_count + 2] = {{ITEM_HEADER, 0, "Chapters", nullptr}};
    for (int i = 0; i < chapter_count; i++) {
        std::snprintf(labels[size_t(i)], sizeof labels[0], "Chapter %d", i + 1);
        chapters[i + 1] = {ITEM_ACTIVE, short(101 + i), labels[size_t(i)], nullptr};
    }
    OpenMenu(chapters, 1, opener().x + 6 * unit(), 0, note_answer);
}

void open_context(int side) {
    icontext_menu *context = CreateContextMenu("gallery word");
    if (!context) return;
    context->menu = word;
    context->hproc = note_answer;
    const irect r = opener();
    context->pos_selected_item = iRect(r.x + r.w / 3, r.y, r.w / 4, r.h, 0);
    context->pos_menu.flags = side;
    context->active_element = 0;
    context->enable_aura = 1;
    OpenContextMenu(context);
}

void open_beside() {
    open_context(MENU_SIDE_AUTO);
}

void open_to_the_left() {
    open_context(MENU_SIDE_LEFT);
}

void open_with_icons() {
    static const kelvane::Bitmap icon(GetResource("close", nullptr));
    static imenuex items[] = {
        {ITEM_ACTIVE, 41, "Close the book", nullptr, icon.get(), nullptr, nullptr},
        {ITEM_ACTIVE, 42, "Without an icon", nullptr, nullptr, nullptr, nullptr},
        {}};
    const irect r = opener();
    OpenMenuEx(items, 0, r.x + 6 * unit(), r.y, note_answer);
}

void open_grid() {
    static const char *names[] = {"icon_information", "icon_question", "icon_warning",
                                  "icon_error",       "icon_wifi",     "icon_information",
                                  "icon_question",    "icon_warning",  "icon_error"};
    static imenu cells[] = {{ITEM_ACTIVE, 51, "About", nullptr},
                            {ITEM_ACTIVE, 52, "Help", nullptr},
                            {ITEM_ACTIVE, 53, "Warnings of the battery", nullptr},
                            {ITEM_ACTIVE, 54, "Faults", nullptr},
                            {ITEM_ACTIVE, 55, "Network", nullptr},
                            {ITEM_INACTIVE, 56, "Notes", nullptr},
                            {ITEM_ACTIVE, 57, "Questions", nullptr},
                            {ITEM_HIDDEN | ITEM_ACTIVE, 58, "Hidden", nullptr},
                            {ITEM_ACTIVE, 59, "Last", nullptr},
                            {}};
    static kelvane::Bitmap icons[std::size(names)];
    static const ibitmap *pictures[std::size(names)];
    for (size_t i = 0; i < std::size(names); i++) {
        icons[i].reset(GetResource(names[i], nullptr));
        pictures[i] = icons[i].get();
    }
    OpenMenu3x3(cells, pictures, 0, note_answer);
}

const Row kinds[] = {
    {"A menu with submenus", open_plain}, {"A long menu", open_long},
    {"A context menu", open_beside},      {"One that opens to the left", open_to_the_left},
    {"With icons", open_with_icons},      {"Nine cells", open_grid},
};
Rows rows(menus_page, kinds, "Nothing chosen so far");

irect opener() {
    return rows.selected_area();
}

void note_answer(int index) {
    static char text[64];
    std::snprintf(text, sizeof text, index < 0 ? "Dismissed" : "Chosen: %d", index);
    rows.answer(text);
}

void draw(const irect &area) {
    rows.draw(area);
}

int handle(int type, int par1, int par2, const irect &) {
    return rows.handle(type, par1, par2);
}

} // namespace

const Page menus_page = {"Menus", "Menus over a page: UP and DOWN, OK, or a tap", draw, handle,
                         nullptr};
