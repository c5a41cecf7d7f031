// SPDX-License-Identifier: MIT
// The events as they arrive. Many may come between two looks at the list, so it is shown again at
// most every tenth of a second.
#include <array>
#include <cstdio>
#include <string>

#include "lettering.h"
#include "page.h"

namespace {

struct Name {
    int code;
    const char *text;
};

constexpr Name event_names[] = {
    {EVT_INIT, "Init"},
    {EVT_EXIT, "Exit"},
    {EVT_SHOW, "Show"},
    {EVT_HIDE, "Hide"},
    {EVT_KEYPRESS, "Key press"},
    {EVT_KEYRELEASE, "Key release"},
    {EVT_KEYREPEAT, "Key repeat"},
    {EVT_POINTERUP, "Pointer up"},
    {EVT_POINTERDOWN, "Pointer down"},
    {EVT_POINTERMOVE, "Pointer move"},
    {EVT_ORIENTATION, "Orientation"},
    {EVT_POINTERLONG, "Pointer long"},
    {EVT_POINTERHOLD, "Pointer hold"},
    {EVT_RESTORE, "Restore"},
    {EVT_MTSYNC, "Touch frame"},
    {EVT_POINTERDRAG, "Pointer drag"},
    {EVT_FOREGROUND, "Foreground"},
    {EVT_BACKGROUND, "Background"},
    {EVT_SDIN, "Card in"},
    {EVT_SDOUT, "Card out"},
    {EVT_AVRCP_COMMAND, "Media remote"},
};

constexpr Name key_names[] = {
    {KEY_POWER, "Power"}, {KEY_AUX6, "Aux 6"},  {KEY_AUX7, "Aux 7"},  {KEY_AUX8, "Aux 8"},
    {KEY_OK, "OK"},       {KEY_UP, "Up"},       {KEY_DOWN, "Down"},   {KEY_LEFT, "Left"},
    {KEY_RIGHT, "Right"}, {KEY_MINUS, "-"},     {KEY_PLUS, "+"},      {KEY_MENU, "Menu"},
    {KEY_PREV, "Prev"},   {KEY_NEXT, "Next"},   {KEY_HOME, "Home"},   {KEY_BACK, "Back"},
    {KEY_PREV2, "Prev2"}, {KEY_NEXT2, "Next2"}, {KEY_MUSIC, "Music"},
};

struct Entry {
    int number = 0, type = 0, par1 = 0, par2 = 0;
};

constexpr int kept = 64, pause_ms = 100;

std::array<Entry, kept> log_ring;
int arrived = 0;
irect list;

template <size_t N>
const char *find_name(const Name (&names)[N], int code) {
    for (const Name &name : names)
        if (name.code == code) return name.text;
    return nullptr;
}

int row_height() {
    return 8 * unit();
}

std::string describe(const Entry &e) {
    char text[64];
    const bool is_key = e.type >= EVT_KEYPRESS && e.type <= EVT_KEYREPEAT;
    const char *key = is_key ? find_name(key_names, e.par1) : nullptr;
    if (key) {
        std::snprintf(text, sizeof text, "%s (%d), %d", key, e.par1, e.par2);
    } else {
        std::snprintf(text, sizeof text, "%d, %d", e.par1, e.par2);
    }
    return text;
}

// Newest at the top, in bold.
void draw_entry(const irect &area, int row, const Entry &e) {
    const int top = area.y + row * row_height();
    const Ink ink = {.bold = row == 0};
    const int y = top + (row_height() - capital_height(ink.size)) / 2;
    char number[16];
    std::snprintf(number, sizeof number, "%d", e.number);
    draw_text(area.x + area.w * 9 / 100, y, number, ink, Align::right);
    char code[16];
    std::snprintf(code, sizeof code, "%d", e.type);
    draw_text(area.x + area.w * 18 / 100, y, code, ink, Align::right);
    const char *name = find_name(event_names, e.type);
    draw_text(area.x + area.w * 22 / 100, y, name ? name : "Other", ink);
    draw_text(area.x + area.w * 56 / 100, y, describe(e).c_str(), ink);
    FillArea(area.x, top + row_height() - hairline(), area.w, hairline(), BLACK);
}

void draw(const irect &area) {
    list = area;
    const int rows = area.h / row_height();
    for (int row = 0; row < rows && row < kept && row < arrived; row++)
        draw_entry(area, row, log_ring[size_t((arrived - 1 - row) % kept)]);
}

void refresh(void *) {
    if (&current_page() != &events_page) return;
    FillAreaRect(&list, WHITE);
    draw(list);
    PartialUpdateBW(list.x, list.y, list.w, list.h);
}

int handle(int, int, int, const irect &) {
    return 0;
}

void leave() {
    ClearTimer(refresh);
}

} // namespace

void note_event(int type, int par1, int par2) {
    log_ring[size_t(arrived % kept)] = {arrived + 1, type, par1, par2};
    arrived++;
    if (&current_page() == &events_page && QueryTimer(refresh) == 0)
        SetWeakTimer("gallery events", refresh, pause_ms);
}

const Page events_page = {"Events", "What arrives: number, code, name, parameters", draw, handle,
                          leave};
