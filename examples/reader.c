/* SPDX-License-Identifier: MIT */
/* A small reader, which docs/guide.md builds up step by step: pages of a text file, turned by keys
 * and taps, a list of places to go to, a box of settings, night mode, and the minutes read.
 *   kelvane-device FOLDER ./reader /path/to/book.txt */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <kelvane.h>

enum { max_pages = 10000, turns_per_flash = 6, minute_ms = 60000, most_places = 10 };
enum { smallest_text = 4, largest_text = 12 }; /* units */

static const char *path; /* of the book */
static char *book;       /* its text */
static int starts[max_pages], pages, page;

static iconfig *settings;
static int text_size, night;
static ifont *text_font, *small_font, *label_font;
static int minutes;
static kv_gestures hand;

static int page_handler(int type, int par1, int par2);

/* Every length is a multiple of this: as large to the eye on each panel. */
static int unit(void) {
    const int shorter = ScreenWidth() < ScreenHeight() ? ScreenWidth() : ScreenHeight();
    return GetThemeInt("unit.size", shorter / 150);
}

static irect foot_area(void) {
    const int u = unit();
    return iRect(6 * u, ScreenHeight() - 10 * u, ScreenWidth() - 12 * u, 8 * u, 0);
}

static irect page_area(void) {
    const int u = unit();
    return iRect(6 * u, 6 * u, ScreenWidth() - 12 * u, ScreenHeight() - 18 * u,
                 ALIGN_JUSTIFY | TEXT_NO_EMPTY_TOP);
}

static int inside(irect r, int x, int y) {
    return x >= r.x && x < r.x + r.w && y >= r.y && y < r.y + r.h;
}

static char *read_all(FILE *file) {
    kv_fseek(file, 0, SEEK_END);
    const long size = kv_ftell(file);
    kv_fseek(file, 0, SEEK_SET);
    char *text = size < 0 ? NULL : calloc(1, (size_t)size + 1);
    if (text) kv_fread(text, 1, (size_t)size, file);
    return text;
}

static void load_book(void) {
    FILE *file = path ? kv_fopen(path, "r") : NULL;
    if (file) {
        book = read_all(file);
        kv_fclose_no_sync(file);
    }
    if (!book) book = strdup("There is no such book.\n\nusage: reader /path/to/book.txt");
}

static int limited(int n, int least, int most) {
    return n < least ? least : n > most ? most : n;
}

static void read_settings(void) {
    settings = OpenConfig("./system/config/reader.cfg", NULL);
    text_size = limited(ReadInt(settings, "text.size", 5), smallest_text, largest_text);
    night = ReadInt(settings, "night", 0) != 0;
    starts[0] = limited(ReadInt(settings, "position", 0), 0, (int)strlen(book));
}

static void save_settings(void) {
    WriteInt(settings, "text.size", text_size);
    WriteInt(settings, "night", night);
    WriteInt(settings, "position", starts[page]);
    CloseConfig(settings); /* saves first */
}

static void open_fonts(void) {
    CloseFont(text_font);
    CloseFont(small_font);
    CloseFont(label_font);
    text_font = OpenFont("default", text_size * unit(), 1);
    small_font = OpenFont("default", 4 * unit(), 1);
    label_font = OpenFont("defaultb", (9 * unit() + 1) / 2, 1);
}

static void draw_text(void) {
    const irect area = page_area();
    SetFont(text_font, BLACK);
    DrawTextPage(area.x, area.y, area.w, area.h, book, starts[page], area.flags);
}

/* Finds where each page begins, and the page that has what was at the top of the present one. */
static void find_pages(void) {
    const irect area = page_area();
    const int top = starts[page];
    open_fonts();
    SetFont(text_font, BLACK);
    pages = Paginate(book, area.w, area.h, area.h, area.flags, starts, max_pages);
    if (pages == 0) starts[pages++] = 0; /* an empty book has an empty page */
    page = pages - 1;
    while (starts[page] > top) page--;
}

static void draw_foot(void) {
    const irect foot = foot_area();
    char text[32];
    FillAreaRect(&foot, WHITE);
    SetFont(small_font, BLACK);
    snprintf(text, sizeof text, "%d / %d", page + 1, pages);
    DrawTextRect(foot.x, foot.y, foot.w, foot.h, text, ALIGN_CENTER | VALIGN_MIDDLE);
    snprintf(text, sizeof text, "%d min", minutes);
    DrawTextRect(foot.x, foot.y, foot.w, foot.h, text, ALIGN_RIGHT | VALIGN_MIDDLE);
}

static void draw_page(void) {
    ClearScreen();
    draw_text();
    draw_foot();
}

static void turn_to(int number) {
    if (number < 0 || number >= pages) return;
    page = number;
    draw_page();
    PageUpdate(turns_per_flash);
}

static void show_foot(void) {
    const irect foot = foot_area();
    draw_foot();
    PartialUpdate(foot.x, foot.y, foot.w, foot.h);
}

static void minute_passed(void *context) {
    (void)context;
    minutes++;
    if (GetEventHandler() == page_handler) show_foot();
    SetHardTimer("minute", minute_passed, minute_ms);
}

static void turn_screen(int orientation) {
    SetOrientation(orientation);
    find_pages();
    Repaint();
}

/* The second screen: places in the book, the same distance apart. */

static int chosen;

static int places(void) {
    return pages < most_places ? pages : most_places;
}

static int page_of_place(int i) {
    return pages * i / places();
}

static irect place_area(int i) {
    const int u = unit(), height = (ScreenHeight() - 12 * u) / most_places;
    return iRect(6 * u, 6 * u + i * height, ScreenWidth() - 12 * u, height, 0);
}

static void draw_place(int i) {
    const irect row = place_area(i);
    const int u = unit(), flags = VALIGN_MIDDLE | TEXT_DOTS;
    char number[16];
    FillAreaRect(&row, i == chosen ? BLACK : WHITE);
    SetFont(small_font, i == chosen ? WHITE : BLACK);
    snprintf(number, sizeof number, "%d", page_of_place(i) + 1);
    DrawTextRect(row.x + 2 * u, row.y, 10 * u, row.h, number, flags);
    DrawTextRect(row.x + 12 * u, row.y + row.h / 2 - 3 * u, row.w - 14 * u, 6 * u,
                 book + starts[page_of_place(i)], flags);
}

static void draw_places(void) {
    if (chosen >= places()) chosen = 0;
    ClearScreen();
    for (int i = 0; i < places(); i++) draw_place(i);
}

static void choose_place(int i) {
    const irect from = place_area(chosen), to = place_area(i);
    const int before = chosen, upper = from.y < to.y ? from.y : to.y;
    chosen = i;
    draw_place(before);
    draw_place(i);
    PartialUpdateBW(to.x, upper, to.w, abs(to.y - from.y) + to.h);
}

static void go_to_place(int i) {
    page = page_of_place(i);
    SetEventHandler(page_handler);
}

static int place_at(int x, int y) {
    for (int i = 0; i < places(); i++)
        if (inside(place_area(i), x, y)) return i;
    return -1;
}

static int places_handler(int type, int par1, int par2) {
    switch (type) {
    case EVT_SHOW:
        draw_places();
        FullUpdate();
        return 1;
    case EVT_ORIENTATION:
        turn_screen(par1);
        return 1;
    case EVT_KEYPRESS:
        if (par1 == KEY_UP) choose_place((chosen + places() - 1) % places());
        if (par1 == KEY_DOWN) choose_place((chosen + 1) % places());
        if (par1 == KEY_OK) go_to_place(chosen);
        if (par1 == KEY_BACK) SetEventHandler(page_handler);
        return 1;
    case EVT_POINTERUP:
        if (place_at(par1, par2) >= 0) go_to_place(place_at(par1, par2));
        return 1;
    }
    return 0;
}

/* The box of settings: modal, over the page. */

enum { button_smaller, button_larger, button_night, buttons };
static kv_handler under_box;

static irect box_area(void) {
    const int u = unit();
    return iRect(ScreenWidth() / 2 - 50 * u, ScreenHeight() - 40 * u, 100 * u, 20 * u, 0);
}

static irect button_area(int i) {
    const irect box = box_area();
    const int u = unit();
    return iRect(box.x + (4 + 32 * i) * u, box.y + 4 * u, 28 * u, 12 * u, 0);
}

static void draw_box(void) {
    static const char *const labels[] = {"A -", "A +", "Night"};
    const irect box = box_area();
    FillAreaRect(&box, WHITE);
    DrawSelection(box.x, box.y, box.w, box.h, BLACK);
    SetFont(label_font, BLACK);
    for (int i = 0; i < buttons; i++) {
        const irect r = button_area(i);
        DrawRect(r.x, r.y, r.w, r.h, BLACK);
        DrawTextRect(r.x, r.y, r.w, r.h, labels[i], ALIGN_CENTER | VALIGN_MIDDLE);
    }
}

static void draw_page_and_box(void) {
    draw_page();
    draw_box();
}

static void resize_text(int by) {
    text_size = limited(text_size + by, smallest_text, largest_text);
    find_pages();
    draw_page_and_box();
    SoftUpdate();
}

static void change_night(void) {
    night = !night;
    SetNightMode(night);
    FullUpdate();
}

static void close_box(void) {
    kv_restoreeventhandler(under_box, 0, 0);
}

static void box_tapped(int x, int y) {
    if (inside(button_area(button_smaller), x, y)) {
        resize_text(-1);
    } else if (inside(button_area(button_larger), x, y)) {
        resize_text(1);
    } else if (inside(button_area(button_night), x, y)) {
        change_night();
    } else if (!inside(box_area(), x, y)) {
        close_box();
    }
}

static int box_handler(int type, int par1, int par2) {
    const irect box = box_area();
    switch (type) {
    case EVT_RESTORE:
        draw_box();
        PartialUpdate(box.x, box.y, box.w, box.h);
        return 1;
    case EVT_SHOW:
        draw_page_and_box();
        FullUpdate();
        return 1;
    case EVT_ORIENTATION:
        turn_screen(par1);
        return 1;
    case EVT_KEYPRESS:
        if (par1 == KEY_LEFT) resize_text(-1);
        if (par1 == KEY_RIGHT) resize_text(1);
        if (par1 == KEY_OK) change_night();
        if (par1 == KEY_BACK) close_box();
        return 1;
    case EVT_POINTERUP:
        box_tapped(par1, par2);
        return 1;
    }
    return 0;
}

static void open_box(void) {
    under_box = kv_seteventhandler(box_handler);
}

/* The page itself. */

static void start(void) {
    load_book();
    read_settings();
    SetNightMode(night);
    find_pages();
    SetHardTimer("minute", minute_passed, minute_ms);
}

static int key_pressed(int key) {
    switch (key) {
    case KEY_PREV:
    case KEY_LEFT:
        turn_to(page - 1);
        return 1;
    case KEY_NEXT:
    case KEY_RIGHT:
        turn_to(page + 1);
        return 1;
    case KEY_MENU:
        SetEventHandler(places_handler);
        return 1;
    case KEY_OK:
        open_box();
        return 1;
    case KEY_BACK:
        CloseApp();
        return 1;
    }
    return 0;
}

/* The left third goes back, the right third goes on, the middle opens the box. */
static void tapped(int x) {
    const int third = ScreenWidth() / 3;
    if (x < third) {
        turn_to(page - 1);
    } else if (x >= ScreenWidth() - third) {
        turn_to(page + 1);
    } else {
        open_box();
    }
}

static int finger_moved(int gesture) {
    switch (gesture) {
    case GESTURE_TAP:
    case GESTURE_DOUBLE_TAP: /* two taps are two turns */
        tapped(hand.x);
        return 1;
    case GESTURE_SWIPE_LEFT:
        turn_to(page + 1);
        return 1;
    case GESTURE_SWIPE_RIGHT:
        turn_to(page - 1);
        return 1;
    case GESTURE_LONG_PRESS:
        SetEventHandler(places_handler);
        return 1;
    }
    return 0;
}

static int page_handler(int type, int par1, int par2) {
    if (finger_moved(RecogniseGesture(&hand, type, par1, par2))) return 1;
    switch (type) {
    case EVT_INIT:
        start();
        return 1;
    case EVT_SHOW:
        draw_page();
        FullUpdate();
        return 1;
    case EVT_RESTORE:
        draw_page();
        SoftUpdate();
        return 1;
    case EVT_ORIENTATION:
        turn_screen(par1);
        return 1;
    case EVT_KEYPRESS:
        return key_pressed(par1);
    case EVT_EXIT:
        save_settings();
        return 1;
    }
    return 0;
}

int main(int argc, char **argv) {
    if (argc > 1) path = argv[1];
    KelvaneMain(page_handler);
    return 1; /* only reached when the screen could not be opened */
}
