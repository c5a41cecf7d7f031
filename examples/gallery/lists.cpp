// SPDX-License-Identifier: MIT
// Lists: the page itself is one, each row of which opens another one, or a selector, and shows its
// last answer; below it a text that is higher than its place.
#include <cstdarg>
#include <cstdio>
#include <iterator>

#include "lettering.h"
#include "page.h"

namespace {

int open_list = 0;
void show_answer(const char *format, ...) __attribute__((format(printf, 1, 2)));

void told(int action, int row, void *) {
    if (action != LIST_CHOSEN && action != LIST_CONTEXT) return;
    CloseList(open_list);
    show_answer("%s row %d", action == LIST_CHOSEN ? "chosen:" : "what to do with", row + 1);
}

struct Book {
    const char *title, *author;
    int percent;
};
constexpr Book books[] = {{"The Time Machine", "H. G. Wells", 7},
                          {"Moby-Dick", "Herman Melville", 62},
                          {"Pride and Prejudice", "Jane Austen", 100},
                          {"From the Earth to the Moon", "Jules Verne", -1},
                          {"Bleak House", "Charles Dickens", 31},
                          {"Walden", "Henry D. Thoreau", -1},
                          {"Middlemarch, a Study of Provincial Life", "George Eliot", 3}};
constexpr int book_count = int(std::size(books));

const ibitmap *cover() {
    static const kelvane::Bitmap picture(GetResource("broken_image", nullptr));
    return picture.get();
}

void fill_book(int row, ilistrow *out, void *) {
    static char value[16];
    const Book &book = books[row % book_count];
    out->title = book.title;
    out->line = book.author;
    out->progress = book.percent;
    std::snprintf(value, sizeof value, book.percent < 0 ? "new" : "%d %%", book.percent);
    out->value = value;
    if (row % book_count == 1) out->picture = cover();
}

void fill_line(int row, ilistrow *out, void *) {
    static char title[32], value[32];
    std::snprintf(title, sizeof title, "Line %d", row + 1);
    std::snprintf(value, sizeof value, "page %d", row / 10 + 1);
    out->title = title;
    out->value = value;
}

void fill_setting(int row, ilistrow *out, void *) {
    constexpr struct {
        const char *title, *value;
        int flags;
    } settings[] = {{"Reading", nullptr, LIST_ROW_HEADING},
                    {"Font", "DejaVu Serif", LIST_ROW_ARROW},
                    {"Margins", "narrow", LIST_ROW_ARROW},
                    {"Turn the page", nullptr, LIST_ROW_HEADING},
                    {"With a tap", nullptr, LIST_ROW_CHOICE | LIST_ROW_CHOSEN},
                    {"With a swipe", nullptr, LIST_ROW_CHOICE},
                    {"With a smile", "not on this device", LIST_ROW_CHOICE | LIST_ROW_DISABLED}};
    out->title = settings[row].title;
    out->value = settings[row].value;
    out->flags = settings[row].flags;
}

void open(const char *title, int count, int height, kv_listrowproc fill, const irect &place = {}) {
    ilist list{};
    list.title = title;
    list.place = place;
    list.flags = LIST_TURNS;
    list.rows.count = count;
    list.rows.height = height;
    list.rows.fill = fill;
    list.rows.hproc = told;
    list.rows.empty_icon = GetResource("library_book", nullptr);
    list.rows.empty_title = "No books yet";
    list.rows.empty_line = "Copy some to the device, or put a card in.";
    open_list = OpenList(&list);
}

void open_books() {
    open("Library", 64, LIST_COVER_ROWS, fill_book);
}
void open_lines() {
    open("A hundred thousand lines", 100000, LIST_PLAIN_ROWS, fill_line);
}
void open_settings() {
    open("Settings", 7, LIST_PLAIN_ROWS, fill_setting);
}
void open_window() {
    const int w = ScreenWidth(), h = ScreenHeight();
    open("Settings", 7, LIST_PLAIN_ROWS, fill_setting, iRect(w / 8, h / 6, w * 3 / 4, h / 2, 0));
}
void open_empty() {
    open("Library", 0, LIST_COVER_ROWS, nullptr);
}

void number_told(int number, void *) {
    show_answer("%d", number);
}
void path_told(const char *path, void *) {
    show_answer("%s", path ? path : "none");
}
void font_told(const char *name, int size, void *) {
    show_answer("%s, %d", name ? name : "none", size);
}
void moment_told(const imoment *m, void *) {
    if (m)
        show_answer("%d-%02d-%02d %02d:%02d", m->year, m->month, m->day, m->hour, m->minute);
    else
        show_answer("none");
}

constexpr imoment start = {2026, 10, 18, 9, 5};

void open_page() {
    OpenPageSelector(118, 635, number_told, nullptr);
}
void open_folder() {
    OpenDirectorySelector(nullptr, "./system", nullptr, path_told, nullptr);
}
void open_font() {
    OpenFontSelector("default", 24, font_told, nullptr);
}
void open_time() {
    OpenTimeSelector(&start, moment_told, nullptr);
}
void open_date() {
    OpenDateSelector(&start, moment_told, nullptr);
}
void open_rotation() {
    OpenRotationSelector(GetOrientation(), number_told, nullptr);
}

struct Kind {
    const char *name;
    void (*open)();
    char answer[64];
};
Kind kinds[] = {{"Books with covers", open_books, ""},
                {"A hundred thousand lines", open_lines, ""},
                {"Kinds of rows", open_settings, ""},
                {"In a window", open_window, ""},
                {"An empty list", open_empty, ""},
                {"A page", open_page, ""},
                {"A folder", open_folder, ""},
                {"A font", open_font, ""},
                {"A time", open_time, ""},
                {"A date", open_date, ""},
                {"An orientation", open_rotation, ""}};
constexpr int kind_count = int(std::size(kinds));
int opened = 0; // the kind that was opened last

void fill_kind(int row, ilistrow *out, void *) {
    out->title = kinds[row].name;
    out->value = kinds[row].answer;
    out->flags = LIST_ROW_ARROW;
}

void kind_told(int action, int row, void *) {
    if (action != LIST_CHOSEN) return;
    opened = row;
    kinds[row].open();
}

iselectionlist *page_list() {
    static iselectionlist *const list = [] {
        ilistrows rows{};
        rows.count = kind_count;
        rows.fill = fill_kind;
        rows.hproc = kind_told;
        return SelectionList_Create(&rows);
    }();
    return list;
}

void show_answer(const char *format, ...) {
    Kind &kind = kinds[opened];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(kind.answer, sizeof kind.answer, format, arguments);
    va_end(arguments);
    if (&current_page() != &lists_page) return;
    SelectionList_DrawRow(page_list(), opened);
    const irect r = SelectionList_GetRowRect(page_list(), opened);
    PartialUpdate(r.x, r.y, r.w, r.h);
}

constexpr const char *about =
    "The list above asks for its rows when they come into sight, and so does every list that it "
    "opens: a hundred thousand rows open as fast as ten. On e-paper nothing follows a finger. A "
    "swipe over this text shows its next page, in one update, and a tap on the bar beside it "
    "goes to that place. Rows hold a title, a second line, a value, a picture, and how far one "
    "has read; they may have a bullet, an arrow, or be the heading of others.";

kelvane::Font about_font() {
    return kelvane::Font("default", size_of(Type::label));
}

void draw_about(const irect *area, int top, void *) {
    const kelvane::Font font = about_font();
    const kelvane::FontGuard current(font);
    DrawTextRect(area->x, area->y - top, area->w, area->h + top, about, ALIGN_LEFT);
}

iscrollview *page_text() {
    static iscrollview *const view = ScrollView_Create(draw_about, nullptr);
    return view;
}

// A third of the page for the text, if there is room; the list takes the sides of the screen too.
void draw(const irect &area) {
    const int text_h = area.h / 5, list_h = area.h - text_h - 2 * unit();
    const irect list = iRect(0, area.y, ScreenWidth(), list_h, 0);
    SelectionList_SetRect(page_list(), &list);
    SelectionList_Draw(page_list());
    const irect text = iRect(area.x, area.y + area.h - text_h, area.w, text_h, 0);
    ScrollView_SetRect(page_text(), &text);
    const kelvane::Font font = about_font();
    const kelvane::FontGuard current(font);
    const int h = TextRectHeight(ScrollView_GetWidth(page_text()), about, ALIGN_LEFT);
    ScrollView_SetContent(page_text(), h, font->linespacing);
    ScrollView_Draw(page_text());
}

int handle(int type, int par1, int par2, const irect &) {
    const bool turns = par1 == KEY_PREV || par1 == KEY_NEXT || par1 == KEY_LEFT ||
                       par1 == KEY_RIGHT || par1 == KEY_MENU;
    if ((type == EVT_KEYPRESS || type == EVT_KEYREPEAT) && turns) return 0;
    if (SelectionList_HandleEvent(page_list(), type, par1, par2)) return 1;
    const bool is_key = type == EVT_KEYPRESS || type == EVT_KEYREPEAT;
    return is_key ? 0 : ScrollView_HandleEvent(page_text(), type, par1, par2);
}

} // namespace

const Page lists_page = {"Lists", "Lists and selectors: UP and DOWN, OK, or a tap", draw, handle,
                         nullptr};
