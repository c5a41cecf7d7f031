// SPDX-License-Identifier: MIT
// A form: each row is an entry of another kind, which opens the keyboard that suits it.
#include <cstring>
#include <iterator>

#include "lettering.h"
#include "page.h"

namespace {

constexpr int longest = 40; // characters of an entry

struct Field {
    const char *name;
    int flags;
    int maxlen;
    char text[3 * longest + 1];
};
Field fields[] = {{"Name", 0, longest, "Ishmael"},
                  {"Password", KBD_PASSWORD, 24, ""},
                  {"English text", KBD_ENTEXT | KBD_NOSELECT, longest, "Call me"},
                  {"Telephone", KBD_PHONE, 20, ""},
                  {"Number", KBD_NUMERIC, 8, "42"},
                  {"IP address", KBD_IPADDR, 15, "192.168.1.1"},
                  {"Web address", KBD_URL | KBD_NOSELECT, longest, "http://"},
                  {"Date", KBD_DATE, 10, "31.12.2026"},
                  {"Time", KBD_TIME, 5, "23:59"},
                  {"Date and time", KBD_DATETIME, 17, "31.12.26 23:59:00"},
                  {"Hexadecimal", KBD_HEX, 8, "0"},
                  {"From hour", KBD_HOURS, 5, "09:30"}};
constexpr int field_count = int(std::size(fields));

int selected = 0;
irect place; // of the page

irect row_area(int index) {
    return grid_cell(place, 1, field_count, index, 0);
}

void write(const irect &r, int x, const char *text, int color, bool bold) {
    const Ink ink = {.size = size_of(Type::label), .color = color, .bold = bold};
    draw_text(x, r.y + (r.h - capital_height(ink.size)) / 2, text, ink);
}

// A password is not shown here either.
const char *shown(const Field &field) {
    static char stars[3 * longest + 1];
    if (!(field.flags & KBD_PASSWORD)) return field.text;
    const size_t length = std::strlen(field.text);
    std::memset(stars, '*', length);
    stars[length] = '\0';
    return stars;
}

void draw_row(int index) {
    const irect r = row_area(index);
    const bool active = index == selected;
    const int color = active ? WHITE : BLACK;
    FillAreaRect(&r, active ? BLACK : WHITE);
    FillArea(r.x, r.y + r.h - hairline(), r.w, hairline(), BLACK);
    write(r, r.x + 2 * unit(), fields[index].name, color, active);
    write(r, r.x + r.w * 2 / 5, shown(fields[index]), color, false);
}

void draw(const irect &area) {
    place = area;
    for (int i = 0; i < field_count; i++) draw_row(i);
}

void choose(int index) {
    selected = (index + field_count) % field_count;
    draw(place);
    PartialUpdateBW(place.x, place.y, place.w, place.h);
}

// The rest of the page is drawn anew by EVT_SHOW.
void edited(char *text) {
    if (!text) return;
    draw_row(selected);
}

void edit() {
    Field &field = fields[selected];
    const int flags = field.flags | (selected + 1 < field_count ? KBD_NEXT_KEY : 0);
    OpenKeyboard(field.name, field.text, field.maxlen, flags, edited);
}

int tapped(int x, int y) {
    for (int i = 0; i < field_count; i++) {
        if (!inside(row_area(i), x, y)) continue;
        choose(i);
        edit();
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
        edit();
        return 1;
    case KEY_KEYBOARD: // "Next" was chosen
        choose(selected + 1);
        edit();
        return 1;
    default:
        return 0;
    }
}

} // namespace

const Page form_page = {"Form", "An entry of each kind: UP and DOWN, OK, or a tap", draw, handle,
                        nullptr};
