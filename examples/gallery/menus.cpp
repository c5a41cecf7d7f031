// SPDX-License-Identifier: MIT
// The menus that open over a page: each row opens one beside it, and the last answer stands below.
#include <array>
#include <cstdio>
#include <cstdlib>
#include <iterator>

#include "lettering.h"
#include "page.h"

namespace {

int selected = 0;
char answer[64] = "Nothing chosen so far";
irect place; // of the page

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

irect row_area(int index);

void write(const irect &r, const char *text, int color = BLACK) {
    const Ink ink = {.size = size_of(Type::label), .color = color, .bold = color == WHITE};
    draw_text(r.x + 2 * unit(), r.y + (r.h - capital_height(ink.size)) / 2, text, ink);
}

constexpr int answer_row = 6;

void draw_answer() {
    const irect r = row_area(answer_row);
    FillAreaRect(&r, WHITE);
    write(r, answer);
}

void note_answer(int index) {
    std::snprintf(answer, sizeof answer, index < 0 ? "Dismissed" : "Chosen: %d", index);
    if (&current_page() != &menus_page) return;
    draw_answer();
    const irect r = row_area(answer_row);
    PartialUpdate(r.x, r.y, r.w, r.h);
}

void open_plain() {
    const irect r = row_area(selected);
    OpenMenu(book, 1, r.x + 6 * unit(), r.y, note_answer);
}

void open_long() {
    static std::array<char[16], chapter_count> labels;
    static imenu chapters[chapter_count + 2] = {{ITEM_HEADER, 0, "Chapters", nullptr}};
    for (int i = 0; i < chapter_count; i++) {
        std::snprintf(labels[size_t(i)], sizeof labels[0], "Chapter %d", i + 1);
        chapters[i + 1] = {ITEM_ACTIVE, short(101 + i), labels[size_t(i)], nullptr};
    }
    OpenMenu(chapters, 1, place.x + 6 * unit(), place.y, note_answer);
}

void open_context(int side) {
    icontext_menu *context = CreateContextMenu("gallery word");
    if (!context) return;
    context->menu = word;
    context->hproc = note_answer;
    const irect r = row_area(selected);
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
    static ibitmap *icon = GetResource("close", nullptr);
    static imenuex items[] = {
        {ITEM_ACTIVE, 41, "Close the book", nullptr, icon, nullptr, nullptr},
        {ITEM_ACTIVE, 42, "Without an icon", nullptr, nullptr, nullptr, nullptr},
        {}};
    const irect r = row_area(selected);
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
    static const ibitmap *pictures[std::size(names)];
    for (size_t i = 0; i < std::size(names); i++)
        if (!pictures[i]) pictures[i] = GetResource(names[i], nullptr);
    OpenMenu3x3(cells, pictures, 0, note_answer);
}

const struct {
    const char *name;
    void (*open)();
} rows[] = {
    {"A menu with submenus", open_plain}, {"A long menu", open_long},
    {"A context menu", open_beside},      {"One that opens to the left", open_to_the_left},
    {"With icons", open_with_icons},      {"Nine cells", open_grid},
};
constexpr int row_count = int(std::size(rows));
static_assert(row_count == answer_row);

irect row_area(int index) {
    return grid_cell(place, 1, row_count + 1, index, 0);
}

void draw_row(int index) {
    const irect r = row_area(index);
    const bool active = index == selected;
    FillAreaRect(&r, active ? BLACK : WHITE);
    FillArea(r.x, r.y + r.h - hairline(), r.w, hairline(), BLACK);
    write(r, rows[index].name, active ? WHITE : BLACK);
}

void draw(const irect &area) {
    place = area;
    for (int i = 0; i < row_count; i++) draw_row(i);
    draw_answer();
}

void choose(int index) {
    selected = (index + row_count) % row_count;
    draw(place);
    PartialUpdateBW(place.x, place.y, place.w, place.h);
}

int tapped(int x, int y) {
    for (int i = 0; i < row_count; i++) {
        if (!inside(row_area(i), x, y)) continue;
        choose(i);
        rows[i].open();
        return 1;
    }
    return 0;
}

int handle(int type, int par1, int par2, const irect &) {
    if (type == EVT_POINTERDOWN) return tapped(par1, par2);
    if (type != EVT_KEYPRESS) return 0;
    switch (par1) {
    case KEY_UP:
        choose(selected - 1);
        return 1;
    case KEY_DOWN:
        choose(selected + 1);
        return 1;
    case KEY_OK:
        rows[selected].open();
        return 1;
    default:
        return 0;
    }
}

} // namespace

const Page menus_page = {"Menus", "Menus over a page: UP and DOWN, OK, or a tap", draw, handle,
                         nullptr};
