// SPDX-License-Identifier: MIT
// Lists: each row opens one, or a selector, and the last answer stands below.
#include <array>
#include <cstdio>

#include "rows.h"

namespace {

int open_list = 0;
char answer[96];
extern Rows rows;

void told(int action, int row, void *) {
    if (action != LIST_CHOSEN && action != LIST_CONTEXT) return;
    CloseList(open_list);
    const char *what = action == LIST_CHOSEN ? "Chosen:" : "What can be done with";
    std::snprintf(answer, sizeof answer, "%s row %d", what, row + 1);
    rows.answer(answer);
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

void open(const char *title, int count, int height, kv_listrowproc fill) {
    ilist list{};
    list.title = title;
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
void open_empty() {
    open("Library", 0, LIST_COVER_ROWS, nullptr);
}

void number_told(int number, void *what) {
    std::snprintf(answer, sizeof answer, "%s %d", static_cast<const char *>(what), number);
    rows.answer(answer);
}
void path_told(const char *path, void *) {
    std::snprintf(answer, sizeof answer, "Folder: %s", path ? path : "none");
    rows.answer(answer);
}
void font_told(const char *name, int size, void *) {
    std::snprintf(answer, sizeof answer, "Font: %s, %d pixels", name ? name : "none", size);
    rows.answer(answer);
}
void moment_told(const imoment *m, void *) {
    if (m)
        std::snprintf(answer, sizeof answer, "%d-%02d-%02d %02d:%02d", m->year, m->month, m->day,
                      m->hour, m->minute);
    else
        std::snprintf(answer, sizeof answer, "No other time");
    rows.answer(answer);
}

constexpr imoment start = {2026, 10, 18, 9, 5};

void open_page() {
    static char what[] = "Page";
    OpenPageSelector(118, 635, number_told, what);
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
    static char what[] = "Orientation";
    OpenRotationSelector(GetOrientation(), number_told, what);
}

const Row kinds[] = {{"Books with covers", open_books},
                     {"A hundred thousand lines", open_lines},
                     {"Kinds of rows", open_settings},
                     {"An empty list", open_empty},
                     {"A page", open_page},
                     {"A folder", open_folder},
                     {"A font", open_font},
                     {"A time", open_time},
                     {"A date", open_date},
                     {"An orientation", open_rotation}};
Rows rows(lists_page, kinds, answer);

void draw(const irect &area) {
    rows.draw(area);
}

int handle(int type, int par1, int par2, const irect &) {
    return rows.handle(type, par1, par2);
}

} // namespace

const Page lists_page = {"Lists", "Lists and selectors: UP and DOWN, OK, or a tap", draw, handle,
                         nullptr};
