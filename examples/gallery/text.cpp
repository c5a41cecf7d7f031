// SPDX-License-Identifier: MIT
// Text: what layout in rectangles does, and prose in eight languages.
#include <algorithm>
#include <iterator>

#include "lettering.h"
#include "page.h"

namespace {

// A font that has a colour.
struct Font : kelvane::Font {
    Font(const char *name, int size, int color = BLACK) : kelvane::Font(name, size) {
        if (*this) get()->color = color;
    }
};

int body_size() {
    return size_of(Type::body);
}

void label(const irect &cell, const char *text) {
    draw_text(cell.x, cell.y, text, {});
}

// The part of a cell below its label, framed.
irect frame(const irect &cell) {
    const irect r = iRect(cell.x, cell.y + 5 * unit(), cell.w, cell.h - 5 * unit(), 0);
    DrawBorder(&r, hairline(), 0, 0, BLACK);
    return r;
}

void draw_rect(irect r, const char *text, int flags) {
    r = iRect(r.x + 2 * unit(), r.y + unit(), r.w - 4 * unit(), r.h - 2 * unit(), flags);
    DrawTextRect2(&r, text);
}

constexpr const char *tale =
    "Alice was beginning to get very tired of sitting by her sister on the bank, and of having "
    "nothing to do: once or twice she had peeped into the book her sister was reading, but it had "
    "no pictures or conversations in it, \"and what is the use of a book,\" thought Alice, "
    "\"without pictures or conversations?\" So she was considering in her own mind.";

void draw_alignments(const irect &cell) {
    label(cell, "Left, centre, right");
    const irect r = frame(cell);
    const int third = r.h / 3;
    draw_rect(iRect(r.x, r.y, r.w, third, 0), "Lines at the left", ALIGN_LEFT);
    draw_rect(iRect(r.x, r.y + third, r.w, third, 0), "lines around the middle",
              ALIGN_CENTER | VALIGN_MIDDLE);
    draw_rect(iRect(r.x, r.y + 2 * third, r.w, third, 0), "lines at the right",
              ALIGN_RIGHT | VALIGN_BOTTOM);
}

void draw_justified(const irect &cell) {
    label(cell, "Justified, with dots");
    const Font font("default", size_of(Type::small));
    font.use();
    draw_rect(frame(cell), tale, ALIGN_JUSTIFY | TEXT_DOTS);
}

void draw_rotated(const irect &cell) {
    label(cell, "Rotated, underlined");
    const irect r = frame(cell);
    draw_rect(iRect(r.x, r.y, r.w / 2, r.h, 0), "Upwards, as on the spine of a book",
              TEXT_ROTATE | ALIGN_CENTER | VALIGN_MIDDLE);
    draw_rect(iRect(r.x + r.w / 2, r.y, r.w / 2, r.h, 0), "A line under every line",
              ALIGN_CENTER | VALIGN_MIDDLE | TEXT_UNDERLINE);
}

void draw_codes(const irect &cell) {
    const Font regular("default", body_size()), bold("defaultb", body_size()),
        italic("defaulti", body_size());
    ifont *list[] = {regular.get(), bold.get(), italic.get()};
    label(cell, "Fonts and symbols within a text");
    RegisterFontList(list, 3);
    draw_rect(frame(cell),
              "A line in \2bold\1 or \3oblique\1.\n"
              "\x11 \x12 \x13 \x14 move, \x15 chooses, \x16 goes back, \x17 opens a menu.",
              ALIGN_LEFT);
    RegisterFontList(nullptr, 0);
}

void draw_sizes(const irect &cell) {
    label(cell, "Sizes");
    const irect r = frame(cell);
    int y = r.y + unit();
    for (const Type type : {Type::title, Type::body, Type::label, Type::small}) {
        const Font font("default", size_of(type));
        font.use();
        DrawString(r.x + 2 * unit(), y, "AV To Wa 1984");
        if (font.get()) y += font.get()->linespacing;
    }
}

void draw_strength(const irect &cell) {
    label(cell, "Smooth, black and white, strong");
    const irect r = frame(cell);
    const irect dark = iRect(r.x, r.y + r.h * 3 / 4, r.w, r.h - r.h * 3 / 4, 0);
    FillAreaRect(&dark, BLACK);
    const kelvane::Font mono("default", body_size(), false);
    for (int i = 0; i < 4; i++) {
        const irect line = iRect(r.x, r.y + r.h * i / 4, r.w, r.h / 4, 0);
        constexpr const char *words[] = {"Smooth edges", "Black and white", "Strong text",
                                         "White on black"};
        const Font smooth("default", body_size(), i == 3 ? WHITE : BLACK);
        if (i == 2) SetTextStrength(24);
        SetFont(i == 1 ? mono.get() : smooth.get(), -1);
        draw_rect(line, words[i], VALIGN_MIDDLE);
        SetTextStrength(0);
    }
}

// A place in a grid, as wide as some of its columns.
struct Slot {
    void (*draw)(const irect &);
    int column, row, span;
};

irect slot_area(const irect &area, int columns, int rows, const Slot &slot) {
    const int first = slot.row * columns + slot.column;
    irect r = grid_cell(area, columns, rows, first, 4 * unit());
    const irect last = grid_cell(area, columns, rows, first + slot.span - 1, 4 * unit());
    r.w = last.x + last.w - r.x;
    return r;
}

void draw_text_page(const irect &area) {
    // Lines are justified where there is room for long ones only.
    constexpr Slot upright[] = {{draw_alignments, 0, 0, 1}, {draw_rotated, 1, 0, 1},
                                {draw_justified, 0, 1, 2},  {draw_sizes, 0, 2, 1},
                                {draw_strength, 1, 2, 1},   {draw_codes, 0, 3, 2}};
    constexpr Slot turned[] = {{draw_alignments, 0, 0, 1}, {draw_rotated, 1, 0, 1},
                               {draw_sizes, 2, 0, 1},      {draw_justified, 0, 1, 3},
                               {draw_strength, 0, 2, 1},   {draw_codes, 1, 2, 2}};
    const bool is_upright = area.h > area.w;
    const int columns = is_upright ? 2 : 3, rows = is_upright ? 4 : 3;
    const Font font("default", body_size());
    for (const Slot &slot : is_upright ? upright : turned) {
        font.use();
        slot.draw(slot_area(area, columns, rows, slot));
    }
}

struct Sample {
    const char *font, *text;
    int flags;
};

// The first article of the Universal Declaration of Human Rights.
constexpr Sample samples[] = {
    {"default",
     "All human beings are born free and equal in dignity and rights. They are endowed with reason "
     "and conscience and should act towards one another in a spirit of brotherhood.",
     ALIGN_JUSTIFY},
    {"default",
     "Tous les êtres humains naissent libres et égaux en dignité et en droits. Ils sont doués de "
     "raison et de conscience et doivent agir les uns envers les autres dans un esprit de "
     "fraternité.",
     ALIGN_JUSTIFY},
    {"default",
     "Wszyscy ludzie rodzą się wolni i równi pod względem swej godności i swych praw. Są oni "
     "obdarzeni rozumem i sumieniem i powinni postępować wobec innych w duchu braterstwa.",
     ALIGN_JUSTIFY},
    {"default",
     "Все люди рождаются свободными и равными в своём достоинстве и правах. Они наделены разумом "
     "и совестью и должны поступать в отношении друг друга в духе братства.",
     ALIGN_JUSTIFY},
    {"default",
     "Όλοι οι άνθρωποι γεννιούνται ελεύθεροι και ίσοι στην αξιοπρέπεια και τα δικαιώματα. Είναι "
     "προικισμένοι με λογική και συνείδηση, και οφείλουν να συμπεριφέρονται μεταξύ τους με πνεύμα "
     "αδελφοσύνης.",
     ALIGN_JUSTIFY},
    {"default",
     "כל בני האדם נולדו בני חורין ושווים בערכם ובזכויותיהם. כולם חוננו בתבונה ובמצפון, לפיכך "
     "חובה עליהם לנהוג איש ברעהו ברוח של אחווה.",
     ALIGN_RIGHT | ALIGN_JUSTIFY},
    {"default",
     "يولد جميع الناس أحراراً متساوين في الكرامة والحقوق. وقد وهبوا عقلاً وضميراً وعليهم أن يعامل "
     "بعضهم بعضاً بروح الإخاء.",
     ALIGN_RIGHT | ALIGN_JUSTIFY},
    {"fireflysung",
     "すべての人間は、生まれながらにして自由であり、かつ、尊厳と権利とについて平等である。人間は、"
     "理性と良心とを授けられており、互いに同胞の精神をもって行動しなければならない。",
     ALIGN_LEFT},
};

int draw_sample(const Sample &sample, const irect &place, Type type) {
    // Words that are not broken leave holes in justified lines of less than some 65 characters.
    const int size = size_of(type), enough = 65 * size * 11 / 20;
    const Font font(sample.font, size);
    font.use();
    int height = 0;
    DrawTextRect3(place.x, place.y, place.w, place.h, sample.text,
                  place.w < enough ? sample.flags & ~ALIGN_JUSTIFY : sample.flags, &height);
    return height;
}

void draw_prose_page(const irect &area) {
    const int columns = area.h > area.w ? 1 : 2, gap = 6 * unit();
    const int width = (area.w - (columns - 1) * gap) / columns;
    const int count = int(std::size(samples)), rows = count / columns;
    const Type type = area.h > 200 * unit() ? Type::body : Type::label;
    for (int column = 0; column < columns; column++) {
        int y = area.y;
        for (int row = 0; row < rows; row++) {
            const irect place =
                iRect(area.x + column * (width + gap), y, width, area.y + area.h - y, 0);
            y += draw_sample(samples[column * rows + row], place, type) + 2 * unit();
        }
    }
}

int no_events(int, int, int, const irect &) {
    return 0;
}

} // namespace

const Page text_page = {"Text", "Fonts, alignment, symbols: all laid out by the library",
                        draw_text_page, no_events, nullptr};
const Page prose_page = {"Prose", "The same words in eight languages", draw_prose_page, no_events,
                         nullptr};
