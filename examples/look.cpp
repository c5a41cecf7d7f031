// SPDX-License-Identifier: MIT
// How the open theme looks: windows, selections and borders, a page each, below the application's
// caption and above the pager.
//
// PREV and NEXT or the pager turn the pages, MENU turns the screen, BACK ends.
#include <algorithm>
#include <cstdlib>
#include <iterator>

#include <kelvane.h>

namespace {

struct Free {
    ifont *font;
    ~Free() { CloseFont(font); }
};

// A hundredth of the shorter side of the screen.
int unit() {
    return std::min(ScreenWidth(), ScreenHeight()) / 100;
}

irect inset(const irect &r, int by) {
    return iRect(r.x + by, r.y + by, r.w - 2 * by, r.h - 2 * by, 0);
}

// Cell `index` of a grid that fills `area`.
irect cell_of(const irect &area, int columns, int rows, int index) {
    const int column = index % columns, row = index / columns;
    const int left = area.w * column / columns, top = area.h * row / rows;
    return iRect(area.x + left, area.y + top, area.w * (column + 1) / columns - left,
                 area.h * (row + 1) / rows - top, 0);
}

void write(const irect &r, const char *text, int flags) {
    DrawTextRect(r.x, r.y, r.w, r.h, text, flags);
}

// Draws a button that ends at `bottom`. Returns its height.
int draw_button(const char *picture, const char *font_name, int x, int bottom, const char *text) {
    ibitmap *button = GetResource(picture, nullptr);
    if (button == nullptr) return 0;
    const int height = button->height, y = bottom - height;
    const Free font{GetThemeFont(font_name, "#defaultb,18,0")};
    ifont *before = GetFont();
    SetFont(font.font, -1);
    DrawBitmap(x, y, button);
    DrawTextRect(x, y, button->width, height, text, ALIGN_CENTER | VALIGN_MIDDLE);
    SetFont(before, -1);
    std::free(button);
    return height;
}

int draw_buttons(const irect &r) {
    const int bottom = r.y + r.h;
    return std::max(
        draw_button("button_normal", "button.font.normal", r.x, bottom, "Button"),
        draw_button("button_selected", "button.font.active", r.x + r.w / 2, bottom, "Selected"));
}

void draw_window(const irect &r, const char *title, const char *text, int flags) {
    irect inside;
    DrawFrame(r.x, r.y, r.w, r.h, nullptr, title, flags, &inside);
    const Free font{GetThemeFont("window.font", "default,20,0")};
    SetFont(font.font, -1);
    irect room = inset(inside, unit());
    if ((flags & FRAME_BUTTONS) != 0) room.h -= draw_buttons(room);
    write(room, text, ALIGN_LEFT | TEXT_DOTS);
}

void draw_windows(const irect &area) {
    const bool upright = area.h > area.w;
    const int columns = upright ? 1 : 2, rows = upright ? 4 : 2;
    struct {
        const char *title, *text;
        int flags;
    } const windows[] = {
        {"Window", "Whatever opens above the page has such a frame.",
         FRAME_BUTTON_CLOSE | FRAME_BUTTON_MOVEUP | FRAME_BUTTON_MOVEDOWN},
        {"A dictionary", "A word and what it means.", FRAME_DICTIONARY | FRAME_HEADER},
        {nullptr, "A frame without a title.", 0},
        {nullptr, "A frame that hangs from another one.", FRAME_OVERLAP},
    };
    for (int i = 0; i < 4; i++)
        draw_window(inset(cell_of(area, columns, rows, i), unit()), windows[i].title,
                    windows[i].text, windows[i].flags);
}

// A border or an underline leaves the text alone; what stands on a dark background is white.
void draw_selected(const irect &row, const char *key) {
    const iselection_style style = LoadSelectionProperties(key);
    const bool is_filled = style.style < 1 || style.style > 4;
    const bool is_inverted = is_filled && style.background_style == 1;
    const bool is_dark = is_filled && style.background_style != 2 && style.background_color < DGRAY;
    if (!is_inverted) DrawPickOutEx(&row, key);
    const Free font{GetThemeFont("window.font", "default,20,0")};
    SetFont(font.font, is_dark && !is_inverted ? WHITE : BLACK);
    write(inset(row, 2 * unit()), key, ALIGN_LEFT | VALIGN_MIDDLE);
    if (is_inverted) DrawPickOutEx(&row, key);
}

// The common selection, then those that the shipped themes have by name, a kind each.
void draw_selections(const irect &area) {
    constexpr const char *keys[] = {"default", "square",   "rounded", "underline",
                                    "bar",     "inverted", "hatched", "filled"};
    constexpr int rows = int(std::size(keys));
    for (int i = 0; i < rows; i++) draw_selected(inset(cell_of(area, 1, rows, i), unit()), keys[i]);
}

void draw_borders(const irect &area) {
    constexpr int radii[] = {0, 4, 8, 16, 32};
    constexpr int styles = ROUND_BOTTOM_RIGHT, columns = int(std::size(radii));
    for (int i = 0; i < styles * columns; i++) {
        const irect cell = inset(cell_of(area, columns, styles, i), unit() * 3 / 2);
        const int radius = std::min(radii[i % columns], cell.h / 2);
        DrawBorder(&cell, 2 + i / columns % 3, 1 + i / columns, radius, BLACK);
    }
}

struct Page {
    const char *title;
    void (*draw)(const irect &area);
};
constexpr Page pages[] = {
    {"Windows", draw_windows}, {"Selections", draw_selections}, {"Borders", draw_borders}};

ipager pager;

void draw() {
    ClearScreen();
    const Page &page = pages[pager.current_page - 1];
    DrawApplicationCaption(page.title, nullptr);
    const int top = GetCaptionHeight();
    page.draw(inset(iRect(0, top, ScreenWidth(), ScreenHeight() - top - GetPagerHeight(&pager), 0),
                    2 * unit()));
    DrawPager(&pager);
    FullUpdate();
}

void show_caption() {
    const icaption_properties caption = LoadApplicationCaptionProperties();
    SetApplicationCaptionHeight(caption.height);
    CloseFont(caption.font);
}

// Themes have other sizes for landscape.
void load_pager() {
    CloseFont(pager.page_font);
    std::free(pager.icon_left);
    std::free(pager.icon_right);
    const int page = std::max(pager.current_page, 1);
    pager = LoadPagerProperties();
    pager.current_page = page;
    pager.total_pages = int(std::size(pages));
}

void turn_screen(int orientation) {
    SetOrientation(orientation);
    load_pager();
    Repaint();
}

int turn_to(int page) {
    if (page < 1 || page > pager.total_pages) return 1;
    pager.current_page = page;
    draw();
    return 1;
}

int key_pressed(int key) {
    constexpr int clockwise[] = {1, 3, 0, 2};
    switch (key) {
    case KEY_BACK:
        CloseApp();
        return 1;
    case KEY_PREV:
    case KEY_LEFT:
        return turn_to(pager.current_page - 1);
    case KEY_NEXT:
    case KEY_RIGHT:
        return turn_to(pager.current_page + 1);
    case KEY_MENU:
        turn_screen(clockwise[GetOrientation() & 3]);
        return 1;
    default:
        return 0;
    }
}

int handler(int type, int par1, int par2) {
    if (PagerHandler(&pager, type, par1, par2)) return 1;
    switch (type) {
    case EVT_INIT:
        show_caption();
        load_pager();
        return 1;
    case EVT_SHOW:
        draw();
        return 1;
    case EVT_ORIENTATION:
        turn_screen(par1);
        return 1;
    case EVT_KEYPRESS:
        return key_pressed(par1);
    default:
        return 0;
    }
}

} // namespace

int main() {
    KelvaneMain(handler);
    return 1; // only reached when the screen could not be opened
}
