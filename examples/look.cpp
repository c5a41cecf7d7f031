// SPDX-License-Identifier: MIT
// How the open theme looks: windows, selections, borders, boxes, menus, keyboards and dictionaries,
// a page each, below the application's caption and above the pager.
//
// PREV and NEXT or the pager turn the pages, MENU turns the screen, BACK ends. On the pages of
// boxes, menus, keyboards and dictionaries OK opens one after the other.
#include <algorithm>
#include <cstdio>
#include <iterator>

#include <kelvane.hpp>

namespace {

// What everything is measured in.
int unit() {
    return GetThemeInt("unit.size", 4);
}

// From the sides of the screen, and of a window, to what is written there.
int margin() {
    return 6 * unit();
}

irect inset(const irect &r, int horizontal, int vertical) {
    return iRect(r.x + horizontal, r.y + vertical, r.w - 2 * horizontal, r.h - 2 * vertical, 0);
}

// The rows of `area` from one part of the height to another one, in hundredths.
irect band(const irect &area, int from, int to) {
    const int top = area.h * from / 100;
    return iRect(area.x, area.y + top, area.w, area.h * to / 100 - top, 0);
}

// The left or the right half, with a gap between the two.
irect half(const irect &area, int index) {
    const int width = area.w / 2 - unit();
    return iRect(index == 0 ? area.x : area.x + area.w - width, area.y, width, area.h, 0);
}

// Cell `index` of a grid that fills `area`.
irect cell_of(const irect &area, int columns, int rows, int index) {
    const int column = index % columns, row = index / columns;
    const int left = area.w * column / columns, top = area.h * row / rows;
    return iRect(area.x + left, area.y + top, area.w * (column + 1) / columns - left,
                 area.h * (row + 1) / rows - top, 0);
}

bool is_upright() {
    return ScreenHeight() > ScreenWidth();
}

// Writes in a font of the theme, in its colour.
void write(const irect &r, const char *font_name, const char *deflt, const char *text, int flags) {
    const auto font = kelvane::Font::of_theme(font_name, deflt);
    const kelvane::FontGuard current(font);
    DrawTextRect(r.x, r.y, r.w, r.h, text, flags);
}

// Draws a button that ends at `bottom`. Returns its size.
irect draw_button(const char *picture, const char *font_name, int x, int bottom, const char *text) {
    const kelvane::Bitmap button(GetResource(picture, nullptr));
    if (!button) return iRect(x, bottom, 0, 0, 0);
    const irect r = iRect(x, bottom - button.height(), button.width(), button.height(), 0);
    button.draw(r.x, r.y);
    write(r, font_name, "#defaultb,18,0", text, ALIGN_CENTER | VALIGN_MIDDLE);
    return r;
}

// At the foot of `r`. Returns their height.
int draw_buttons(const irect &r) {
    const int bottom = r.y + r.h;
    const irect first = draw_button("button_selected", "button.font.active", r.x, bottom, "Open");
    draw_button("button_normal", "button.font.normal", first.x + first.w + 2 * unit(), bottom,
                "Later");
    return first.h;
}

void draw_window(const irect &r, const char *title, const char *text, int flags) {
    irect inside;
    DrawFrame(r.x, r.y, r.w, r.h, nullptr, title, flags, &inside);
    irect room = iRect(r.x + margin(), inside.y, r.w - 2 * margin(), inside.h - 2 * unit(), 0);
    if ((flags & FRAME_BUTTONS) != 0) room.h -= draw_buttons(room) + 2 * unit();
    write(room, "window.font", "default,20,0", text, ALIGN_LEFT | TEXT_DOTS);
}

void draw_windows(const irect &area) {
    struct {
        const char *title, *text;
        int flags;
        int from, to; // of the height, when upright
    } const windows[] = {
        {"Window", "Whatever opens above the page has such a frame.",
         FRAME_BUTTON_CLOSE | FRAME_BUTTON_MOVEUP | FRAME_BUTTON_MOVEDOWN, 0, 40},
        {"A dictionary", "A word and what it means.", FRAME_DICTIONARY | FRAME_HEADER, 40, 64},
        {nullptr, "A frame without a title.", 0, 64, 82},
        {nullptr, "A frame that hangs from another one.", FRAME_OVERLAP, 82, 100},
    };
    for (int i = 0; i < 4; i++) {
        const auto &w = windows[i];
        const irect row = i < 2 ? band(area, 0, 64) : band(area, 64, 100);
        draw_window(is_upright() ? band(area, w.from, w.to) : half(row, i % 2), w.title, w.text,
                    w.flags);
    }
}

// Lines of text. The selected one is filled, and its text is bold.
void draw_lines(const irect &area) {
    constexpr const char *lines[] = {"Contents", "Bookmarks", "Notes", "Text size"};
    const int height = GetThemeInt("context_menu.item.height", 12 * unit());
    for (int i = 0; i < int(std::size(lines)); i++) {
        const irect row = iRect(area.x, area.y + i * height, area.w, height, 0);
        const bool selected = i == 1;
        write(inset(row, margin(), 0), selected ? "taskmgr.task.title.font" : "window.font",
              selected ? "defaultb,20,0" : "default,20,0", lines[i], ALIGN_LEFT | VALIGN_MIDDLE);
        if (selected) DrawPickOutEx(&row, "line");
    }
}

// A book without a picture on its cover.
void draw_cover(const irect &r) {
    const int line = GetThemeInt("separator.size", 1);
    DrawBorder(&r, line, 0, 0, BLACK);
    FillArea(r.x + 3 * unit(), r.y + 4 * unit(), 7 * unit(), unit(), BLACK);
}

void draw_book(const irect &row, const char *title, const char *author, const char *value) {
    const int indent = 18 * unit();
    draw_cover(iRect(row.x, row.y + unit(), 15 * unit(), 20 * unit(), 0));
    const irect text =
        iRect(row.x + indent, row.y + unit(), row.w - indent - 2 * unit(), row.h - 2 * unit(), 0);
    write(band(text, 0, 50), "taskmgr.task.title.font", "defaultb,20,0", title,
          ALIGN_LEFT | VALIGN_BOTTOM);
    write(band(text, 50, 100), "taskmgr.shortcut.font", "default,18,0", author, ALIGN_LEFT);
    write(band(text, 50, 100), "taskmgr.shortcut.font", "default,18,0", value, ALIGN_RIGHT);
}

// Rows of several lines. The selected one has a border outside.
void draw_books(const irect &area) {
    constexpr const char *books[][3] = {{"Moby-Dick", "H. Melville", "42 %"},
                                        {"Walden", "H. Thoreau", "read"},
                                        {"Bleak House", "C. Dickens", "new"}};
    const int height = 22 * unit(), pitch = 27 * unit();
    for (int i = 0; i < int(std::size(books)); i++) {
        const irect row =
            iRect(area.x + margin(), area.y + i * pitch, area.w - 2 * margin(), height, 0);
        if (row.y + row.h + 2 * unit() > area.y + area.h) return;
        draw_book(row, books[i][0], books[i][1], books[i][2]);
        const irect around = inset(row, -2 * unit(), -2 * unit());
        if (i == 1) DrawPickOutEx(&around, "default");
    }
}

void draw_selections(const irect &area) {
    const irect room = iRect(area.x, area.y + 2 * unit(), area.w, area.h - 2 * unit(), 0);
    const int lines = 4 * GetThemeInt("context_menu.item.height", 12 * unit()) + 4 * unit();
    draw_lines(is_upright() ? room : half(room, 0));
    draw_books(is_upright() ? iRect(room.x, room.y + lines, room.w, room.h - lines, 0)
                            : half(room, 1));
}

// Thinner borders would have corners that are thinner still.
void draw_borders(const irect &area) {
    const irect room = inset(area, margin() - unit(), unit());
    constexpr int radii[] = {0, 1, 2, 3, 4}; // in units
    constexpr int sizes[] = {3, 4, 6};       // in quarters of a unit
    constexpr int styles = ROUND_BOTTOM_RIGHT, columns = int(std::size(radii));
    for (int i = 0; i < styles * columns; i++) {
        const irect cell = inset(cell_of(room, columns, styles, i), unit(), unit());
        const int radius = std::min(radii[i % columns] * unit(), cell.h / 2);
        DrawBorder(&cell, (sizes[i / columns % 3] * unit() + 2) / 4, 1 + i / columns, radius,
                   BLACK);
    }
}

// What boxes stand over.
void draw_reading(const irect &area) {
    constexpr const char *text =
        "Call me Ishmael. Some years ago, never mind how long precisely, having little or no money "
        "in my purse, and nothing particular to interest me on shore, I thought I would sail about "
        "a little and see the watery part of the world. It is a way I have of driving off the "
        "spleen and regulating the circulation.\n"
        "Whenever I find myself growing grim about the mouth; whenever it is a damp, drizzly "
        "November in my soul; whenever I find myself involuntarily pausing before coffin "
        "warehouses, and bringing up the rear of every funeral I meet; then, I account it high "
        "time to get to sea as soon as I can.\n"
        "There now is your insular city of the Manhattoes, belted round by wharves as Indian isles "
        "by coral reefs; commerce surrounds it with her surf. Right and left, the streets take you "
        "waterward.";
    write(inset(area, margin(), unit()), "window.font", "default,20,0", text,
          ALIGN_JUSTIFY | TEXT_DOTS);
}

void tell() {
    Message(ICON_INFORMATION, nullptr, "\u201CMoby-Dick\u201D is in the library now.", 5000);
}

void ask() {
    Dialog(ICON_QUESTION, nullptr, "The battery is low. Do you want to go on reading?", "Go on",
           "Switch off", nullptr);
}

void ask_in_german() {
    Dialog3(ICON_WARNING, nullptr,
            "\u201EMoby-Dick\u201C wurde auf einem anderen Ger\u00E4t weitergelesen. Welche "
            "Lesestelle soll behalten werden?",
            "Diese behalten", "Andere \u00FCbernehmen", "Sp\u00E4ter", nullptr);
}

void show_progress() {
    OpenProgressbar(ICON_WIFI, nullptr, "Fetching \u201CMoby-Dick\u201D", 40, [](int) {});
}

void ask_in_arabic() {
    LoadLanguage("ar");
    Dialog3(ICON_ERROR | DEF_BUTTON3, nullptr, "الذاكرة ممتلئة. هل تريد حذف الكتب التي قرأتها؟",
            "حذف الكل", "اختيار", "إلغاء",
            [](int) { LoadLanguage(ReadString(GetGlobalConfig(), "language", "en")); });
}

constexpr void (*boxes[])() = {tell, ask, ask_in_german, show_progress, ask_in_arabic};
int next_box = 0;

void open_next_box() {
    const int box = next_box;
    next_box = (box + 1) % int(std::size(boxes));
    boxes[box]();
}

void nothing_chosen(int) {}

imenu sizes[] = {{ITEM_BULLET, 1, "Small", nullptr},
                 {ITEM_BULLET, 2, "Medium", nullptr},
                 {ITEM_BULLET, 3, "Large", nullptr},
                 {ITEM_BULLET, 4, "Very large", nullptr},
                 {}};
imenu book_menu[] = {
    {ITEM_HEADER, 0, "Moby-Dick", nullptr},       {ITEM_ACTIVE, 1, "Contents", nullptr},
    {ITEM_ACTIVE, 2, "Bookmarks", nullptr},       {ITEM_INACTIVE, 3, "Notes", nullptr},
    {ITEM_SEPARATOR, 0, nullptr, nullptr},        {ITEM_SUBMENU, 0, "Text size", sizes},
    {ITEM_ACTIVE, 4, "Turn the screen", nullptr}, {}};
imenu arabic_sizes[] = {{ITEM_BULLET, 1, "صغير", nullptr}, {ITEM_BULLET, 2, "كبير", nullptr}, {}};
imenu arabic_menu[] = {{ITEM_HEADER, 0, "الكتاب", nullptr},
                       {ITEM_ACTIVE, 1, "المحتويات", nullptr},
                       {ITEM_INACTIVE, 2, "الملاحظات", nullptr},
                       {ITEM_SUBMENU, 0, "حجم النص", arabic_sizes},
                       {}};

void open_menu() {
    OpenMenu(book_menu, 5, margin(), GetCaptionHeight() + 2 * unit(), nothing_chosen);
}

// Beside a word of the text.
void open_context_menu() {
    static imenu items[] = {{ITEM_ACTIVE, 1, "Look it up", nullptr},
                            {ITEM_ACTIVE, 2, "Translate", nullptr},
                            {ITEM_ACTIVE, 3, "Copy", nullptr},
                            {}};
    icontext_menu *context = CreateContextMenu("word");
    if (!context) return;
    context->menu = items;
    context->hproc = nothing_chosen;
    context->pos_selected_item =
        iRect(ScreenWidth() / 2, ScreenHeight() / 4, 14 * unit(), 6 * unit(), 0);
    context->active_element = 0;
    context->enable_aura = 1;
    OpenContextMenu(context);
}

void open_grid() {
    static const char *names[] = {"icon_information", "icon_question", "icon_warning"};
    static kelvane::Bitmap icons[std::size(names)];
    static const ibitmap *pictures[9];
    static const imenu cells[] = {
        {ITEM_ACTIVE, 1, "Library", nullptr},  {ITEM_ACTIVE, 2, "Search in all books", nullptr},
        {ITEM_ACTIVE, 3, "Notes", nullptr},    {ITEM_ACTIVE, 4, "Dictionary", nullptr},
        {ITEM_ACTIVE, 5, "Pictures", nullptr}, {ITEM_INACTIVE, 6, "Network", nullptr},
        {ITEM_ACTIVE, 7, "Settings", nullptr}, {ITEM_ACTIVE, 8, "Help", nullptr},
        {ITEM_ACTIVE, 9, "Off", nullptr},      {}};
    for (size_t i = 0; i < std::size(names); i++) icons[i].reset(GetResource(names[i], nullptr));
    for (size_t i = 0; i < std::size(pictures); i++)
        pictures[i] = icons[i % std::size(names)].get();
    OpenMenu3x3(cells, pictures, 1, nothing_chosen);
}

void open_arabic_menu() {
    LoadLanguage("ar");
    OpenMenu(arabic_menu, 3, ScreenWidth(), GetCaptionHeight() + 2 * unit(),
             [](int) { LoadLanguage(ReadString(GetGlobalConfig(), "language", "en")); });
}

// More than the screen has room for.
void open_long_menu() {
    static char labels[40][16];
    static imenu items[std::size(labels) + 2] = {{ITEM_HEADER, 0, "Chapters", nullptr}};
    for (size_t i = 0; i < std::size(labels); i++) {
        std::snprintf(labels[i], sizeof labels[i], "Chapter %d", int(i) + 1);
        items[i + 1] = {ITEM_ACTIVE, short(i), labels[i], nullptr};
    }
    OpenMenu(items, 20, margin(), 0, nothing_chosen);
}

constexpr void (*menus[])() = {open_menu, open_context_menu, open_grid, open_arabic_menu,
                               open_long_menu};
int next_menu = 0;

void open_next_menu() {
    const int menu = next_menu;
    next_menu = (menu + 1) % int(std::size(menus));
    menus[menu]();
}

// One with letters, one with digits, and one in Arabic with keys of its own.
void open_keyboard() {
    static char text[64] = "time machi";
    OpenKeyboard("Search in this book", text, 20, KBD_NOSELECT, nullptr);
}

void open_clock() {
    static char text[64] = "31.12.26 23:59:00";
    OpenKeyboard("Date and time", text, 20, KBD_DATETIME, nullptr);
}

void open_arabic_keyboard() {
    static char text[64] = "الكتاب";
    LoadLanguage("ar");
    OpenCustomKeyboard("ar", "البحث", text, 20, KBD_NEXT_KEY, [](char *) {
        LoadLanguage(ReadString(GetGlobalConfig(), "language", "en"));
    });
}

constexpr void (*keyboards[])() = {open_keyboard, open_clock, open_arabic_keyboard};
int next_keyboard = 0;

void open_next_keyboard() {
    const int keyboard = next_keyboard;
    next_keyboard = (keyboard + 1) % int(std::size(keyboards));
    keyboards[keyboard]();
}

// The first word on the page.
irect first_word() {
    const auto font = kelvane::Font::of_theme("window.font", "default,20,0");
    const kelvane::FontGuard current(font);
    return iRect(margin(), GetCaptionHeight() + unit(), StringWidth("Call"),
                 font ? font->height : 0, 0);
}

void translate(const char *dictionary) {
    const irect word = first_word();
    OpenDictionary(dictionary);
    OpenFastTranslation("Call", &word);
}

void translate_into_german() {
    translate("English-German");
}

void translate_into_arabic() {
    translate("English-Arabic");
}

void open_dictionary() {
    const irect word = first_word();
    OpenDictionary("English-German");
    OpenDictionaryView("Call", &word);
}

void open_hebrew_dictionary() {
    OpenDictionary("Hebrew-English");
    OpenDictionaryView("מילה", nullptr);
}

void open_arabic_dictionary() {
    LoadLanguage("ar");
    OpenDictionary("English-Arabic");
    OpenDictionaryView("sail", nullptr);
    LoadLanguage(ReadString(GetGlobalConfig(), "language", "en"));
}

constexpr void (*dictionaries[])() = {translate_into_german, open_dictionary, translate_into_arabic,
                                      open_hebrew_dictionary, open_arabic_dictionary};
int next_dictionary = 0;

void open_next_dictionary() {
    const int dictionary = next_dictionary;
    next_dictionary = (dictionary + 1) % int(std::size(dictionaries));
    dictionaries[dictionary]();
}

struct Page {
    const char *title;
    void (*draw)(const irect &area);
    void (*ok)();
};
constexpr Page pages[] = {{"Windows", draw_windows, nullptr},
                          {"Selections", draw_selections, nullptr},
                          {"Borders", draw_borders, nullptr},
                          {"Boxes", draw_reading, open_next_box},
                          {"Menus", draw_reading, open_next_menu},
                          {"Keyboards", draw_reading, open_next_keyboard},
                          {"Dictionaries", draw_reading, open_next_dictionary}};

int ok_pressed(const Page &page) {
    if (!page.ok) return 0;
    page.ok();
    return 1;
}

ipager pager;

void draw() {
    ClearScreen();
    const Page &page = pages[pager.current_page - 1];
    DrawApplicationCaption(page.title, nullptr);
    const int top = GetCaptionHeight();
    page.draw(iRect(0, top, ScreenWidth(),
                    ScreenHeight() - top - GetPagerHeight(&pager) - 2 * unit(), 0));
    DrawPager(&pager);
    FullUpdate();
}

void show_caption() {
    const icaption_properties caption = LoadApplicationCaptionProperties();
    SetApplicationCaptionHeight(caption.height);
    const kelvane::Font font(caption.font); // it is ours
}

// Themes have other sizes for landscape.
void load_pager() {
    const kelvane::Font font(pager.page_font);
    const kelvane::Bitmap left(pager.icon_left), right(pager.icon_right);
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
    case KEY_OK:
        return ok_pressed(pages[pager.current_page - 1]);
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
    return kelvane::run(handler);
}
