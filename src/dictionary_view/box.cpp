// SPDX-License-Identifier: MIT
// Opens the box of a fast translation, draws it, and closes it at the first answer.
#include "dictionary_view/box.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "dictionary_view/article.h"
#include "dictionary_view/look.h"
#include "dictionary_view/mark.h"
#include "dictionary_view/open.h"
#include "ground/guard.h"
#include "kelvane/dictionary.h"
#include "kelvane/dictionary_view.h"
#include "kelvane/frames.h"
#include "kelvane/languages.h"
#include "kelvane/text.h"
#include "kelvane/updates.h"
#include "menus/draw.h"
#include "menus/place.h"
#include "modal/input.h"
#include "modal/takeover.h"
#include "raster/rects.h"
#include "raster/screen_scope.h"
#include "runtime/queue.h"
#include "text/font_scope.h"

namespace dictionary_view {
namespace {

constexpr int padding = 4, narrowest = 40; // in units
constexpr int widest = 20;                 // in sizes of its text
constexpr int most_lines = 4;

struct FastBox {
    modal::Takeover taken;
    Mark mark;
    Look look;
    PointerPictures pointer_pictures;
    std::string asked; // the word, as it was given
    Paragraph head, grammar;
    std::string body;
    irect rect{}, pointer{};
    irect covered{}; // with the rim and the pointer
    bool is_down = false, is_down_inside = false;

    int radius() const { return look.radius * 2 / 3; }
    // From an edge to the text.
    int inset() const { return look.border + padding * look.unit; }
};

std::unique_ptr<FastBox> open_box;
int unheard = 0; // events that were queued for a box that is gone

int box_handler(int type, int par1, int par2);

// Only the word itself, or a form of it, is what the reader wants to know.
std::vector<Paragraph> find(FastBox &box, const char *word) {
    char *headword = nullptr, *translation = nullptr;
    box.asked = word ? word : ""; // it may lie in a container
    const int found = box.asked.empty() ? LookupCurrent(&headword, &translation)
                                        : LookupWord(box.asked.c_str(), &headword, &translation);
    if (box.asked.empty()) box.asked = headword;
    if (found == DICT_EXACT) return read_article(headword, translation);
    return {{Kind::headword, "", box.asked, false},
            {Kind::plain, "", GetLangText("@DicNotFound"), false}};
}

// The width of the first line, or what its parts ask for on one.
int head_w(const FastBox &box) {
    const Type &type = box.look.type;
    const text::FontScope font(type.number.get());
    int w = StringWidth(box.head.text.c_str());
    if (box.grammar.mark.empty() && box.grammar.text.empty()) return w;
    SetFont(type.oblique_for(box.grammar.mark), -1);
    w += 2 * box.look.unit + StringWidth(box.grammar.mark.c_str()) + StringWidth("  ");
    SetFont(type.grammar.get(), -1);
    return w + StringWidth(box.grammar.text.c_str());
}

// As many lines as the text has, in the current font; more than there may be count as one more.
int line_count(const FastBox &box, const std::string &text, int w) {
    const int leading = box.look.type.leading;
    return TextRectHeightEx(w, (most_lines + 1) * leading, text.c_str(), ALIGN_LEFT) / leading;
}

// Writes what the word means, on lines of their own where there is room. Returns how wide and how
// high the box is.
irect fill(FastBox &box, const std::vector<Paragraph> &article, const irect &area) {
    const Look &look = box.look;
    const ifont *body = look.type.body.get();
    const int inset = box.inset();
    const int most = std::max(std::min(widest * look.type.body_size, area.w) - 2 * inset, 1);
    const int least = std::clamp(narrowest * look.unit - 2 * inset, 1, most);
    const text::FontScope font(body);
    box.head = article.front();
    if (article.size() > 1 && article[1].kind == Kind::grammar) box.grammar = article[1];
    box.body = summary(article, Senses::on_lines);
    if (line_count(box, box.body, most) > most_lines) box.body = summary(article, Senses::in_a_row);
    const int body_w = GetMultilineStringWidth(box.body.c_str(), most, body, 0);
    const int w = std::clamp(std::max(head_w(box), body_w), least, most);
    const int lines = std::min(line_count(box, box.body, w), most_lines);
    return {0, 0, w + 2 * inset, (1 + lines) * look.type.leading + 2 * inset, 0};
}

void place_beside_word(FastBox &box, const irect &size, const irect &area) {
    const Look &look = box.look;
    const theme::Picture &up = box.pointer_pictures.up;
    menus::Anchor anchor;
    anchor.by = menus::PlacedBy::item;
    anchor.item = *box.mark.where();
    const int pointer_h = box.pointer_pictures.down ? up.height() - look.border - 1 : 0;
    anchor.overlap = -(look.unit + std::max(pointer_h, look.unit));
    box.rect = menus::place(anchor, size.w, size.h, area);
    if (pointer_h > 0)
        box.pointer = menus::place_pointer(
            box.rect, anchor.item,
            {.w = up.width(), .h = up.height(), .border = look.border, .radius = box.radius()});
}

void place(FastBox &box, const std::vector<Paragraph> &article) {
    const irect area = menus::menu_area();
    const irect size = fill(box, article, area);
    if (box.mark.where())
        place_beside_word(box, size, area);
    else
        box.rect = {area.x + (area.w - size.w) / 2, area.y + (area.h - size.h) / 2, size.w, size.h,
                    0};
    box.covered = raster::joined(raster::widened(box.rect, box.look.rim()), box.pointer);
}

// The word and what it is, on one baseline.
void draw_head(const FastBox &box, const irect &line) {
    const Type &type = box.look.type;
    const Sides sides = sides_of(box.head.text);
    const text::FontScope font(type.number.get());
    const int gap = StringWidth(box.head.text.c_str()) + 2 * box.look.unit;
    DrawTextRect(line.x, line.y, line.w, 1, box.head.text.c_str(), TEXT_DOTS | alignment(sides));
    if (gap >= line.w || !type.number || !type.grammar) return;
    const int lower = type.number->baseline - type.grammar->baseline;
    const int x = sides == Sides::mirrored ? line.x : line.x + gap;
    draw_grammar(type, {x, line.y + lower, line.w - gap, line.h, 0}, box.grammar, sides);
}

// The border comes before the pointer, which opens it.
void draw(const FastBox &box) {
    const raster::ScreenScope screen;
    const Look &look = box.look;
    const int rim = look.rim(), inset = box.inset();
    menus::fill_rounded(raster::widened(box.rect, rim), box.radius() + rim);
    DrawBorder(&box.rect, look.border, ROUND_ALL, box.radius(), BLACK);
    if (box.pointer.w > 0) {
        const bool is_above = box.pointer.y < box.rect.y;
        DrawBitmap(box.pointer.x, box.pointer.y,
                   is_above ? box.pointer_pictures.up.get() : box.pointer_pictures.down.get());
    }
    const irect text{box.rect.x + inset, box.rect.y + inset, box.rect.w - 2 * inset,
                     look.type.leading, 0};
    draw_head(box, text);
    const text::FontScope font(look.type.body.get());
    DrawTextRect(text.x, text.y + text.h, text.w, most_lines * look.type.leading, box.body.c_str(),
                 TEXT_DOTS | alignment(sides_of(box.body)));
}

void update(const FastBox &box) {
    modal::update(raster::Box(raster::joined(box.covered, box.mark.area())));
}

void show(std::unique_ptr<FastBox> made) {
    open_box = std::move(made);
    FastBox &box = *open_box;
    unheard = queue_count(box_handler);
    box.mark.show();
    box.taken.under.save(box.covered);
    box.taken.take_input(box_handler, 0, [] { close_box(); });
    draw(box);
    update(box);
}

void open(const char *word, const irect *where) {
    ground::guarded([&] {
        if (!make_room() || !has_dictionary()) return;
        auto box = std::make_unique<FastBox>();
        box->mark = Mark(where);
        box->look = load_look();
        box->pointer_pictures = load_pointer();
        place(*box, find(*box, word));
        show(std::move(box));
    });
}

void close() {
    const std::unique_ptr<FastBox> box = std::move(open_box);
    const bool is_page_back = box->taken.under.restore();
    const bool is_word_back = box->mark.hide();
    update(*box);
    if (!is_page_back || !is_word_back) SendEvent(box->taken.previous(), EVT_SHOW, 0, 0);
    box->taken.give_input_back();
}

// The same word in the view, where the dictionary goes on.
void open_whole_view() {
    const std::string word = open_box->asked;
    const irect where = open_box->mark.area();
    close();
    OpenDictionaryView(word.c_str(), &where);
}

void pointer(FastBox &box, int type, int x, int y) {
    const bool is_inside = raster::contains(raster::Box(box.rect), x, y);
    if (type == EVT_POINTERDOWN) {
        box.is_down = true;
        box.is_down_inside = is_inside;
    }
    if (type != EVT_POINTERUP || !box.is_down) return;
    box.is_down = false;
    if (!is_inside && !box.is_down_inside) return close();
    if (is_inside && box.is_down_inside) open_whole_view();
}

int handle(FastBox &box, int type, int x, int y) {
    if (modal::is_pointer_event(type)) {
        pointer(box, type, x, y);
        return 1;
    }
    if (type == EVT_SHOW) {
        draw(box);
        update(box);
        return 1;
    }
    if (type != EVT_KEYPRESS) return modal::is_system_event(type) ? 1 : 0;
    close();
    return 1;
}

int box_handler(int type, int par1, int par2) {
    if (!open_box) return 1;
    if (unheard > 0) {
        unheard--;
        return 1;
    }
    return ground::guarded(1, [&] { return handle(*open_box, type, par1, par2); });
}

} // namespace

bool close_box() {
    if (!open_box) return true;
    if (GetEventHandler() != box_handler) return false;
    close();
    return true;
}

void reset_box() {
    open_box.reset();
    unheard = 0;
}

} // namespace dictionary_view

void OpenFastTranslation(const char *word, const irect *where) {
    dictionary_view::open(word, where);
}
