// SPDX-License-Identifier: MIT
// Breaks articles into pages, and draws one. Each paragraph is laid out as text is anywhere, from
// the character on at which its page begins.
#include "dictionary_view/article.h"

#include <algorithm>
#include <cstdio>

#include "kelvane/text.h"
#include "text/font_scope.h"
#include "text/layout.h"

namespace dictionary_view {
namespace {

constexpr int side_tenths = 55, top_tenths = 30, counter_tenths = 80; // of a unit

const ifont *font_of(const Type &type, const Paragraph &p) {
    switch (p.kind) {
    case Kind::headword:
        return type.headword.get();
    case Kind::grammar:
        return type.grammar.get();
    case Kind::example:
        return type.oblique_for(p.text);
    case Kind::sense:
    case Kind::plain:
        break;
    }
    return type.body.get();
}

// From the paragraph before: senses stand apart, and all of it from the head.
int gap_above(const Look &look, const std::vector<Paragraph> &all, size_t index) {
    const Paragraph &p = all[index];
    if (index == 0 || p.kind == Kind::grammar) return 0;
    const bool is_behind_head = all[index - 1].kind <= Kind::grammar;
    return is_behind_head || !p.mark.empty() ? look.units(20) : 0;
}

int line_h(const ifont *font) {
    return font ? std::max(font->linespacing, 1) : 1;
}

// Fills pages from the top.
class Pages {
  public:
    Pages(std::vector<Page> &pages, int h) : pages_(pages), h_(h) { pages_.assign(1, {}); }
    // Goes on with a gap, or on a new page when a line does not fit below it.
    void make_room(int gap, int line) {
        if (pages_.back().empty()) return;
        y_ += gap;
        if (y_ + line > h_) begin_page();
    }
    void begin_page() {
        pages_.emplace_back();
        y_ = 0;
    }
    int room() const { return std::max(h_ - y_, 1); }
    void add(size_t paragraph, int begin, int h) {
        pages_.back().push_back({paragraph, begin, y_, h});
        y_ += h;
    }

  private:
    std::vector<Page> &pages_;
    int h_, y_ = 0;
};

// Puts a text of lines of that width, in the current font, on as many pages as it takes.
void add_text(Pages &pages, size_t index, const std::string &utf8, int w) {
    text::Reader text(utf8.c_str(), text::most_characters);
    for (int begin = 0; text.has(begin);) {
        if (begin > 0) pages.begin_page();
        const text::Layout fits = text::kv_textrect(0, 0, w, pages.room(), text, begin,
                                                    ALIGN_LEFT | TEXT_WHOLE_WORDS, text::Draw::no);
        pages.add(index, begin, static_cast<int>(std::min<int64_t>(fits.height, pages.room())));
        begin = std::max(fits.end, begin + 1);
    }
}

// The area without the strip of the counter.
int text_h(const Look &look, int h, bool has_counter) {
    return has_counter ? std::max(h - look.units(counter_tenths), 1) : h;
}

} // namespace

Sides sides_of(const std::string &text) {
    text::Reader reader(text.c_str(), text::most_characters);
    const bool is_rtl = reader.direction() == text::Direction::right_to_left;
    return is_rtl ? Sides::mirrored : Sides::as_written;
}

void Article::set(std::string_view headword, std::string_view translation) {
    paragraphs_ = read_article(headword, translation);
    pages_.clear();
    page_ = 0;
}

bool Article::turn_to(int page) {
    if (page < 0 || page >= pages()) return false;
    page_ = page;
    return true;
}

void Article::lay_out(const Look &look, const irect &area) {
    const int side = look.units(side_tenths), top = look.units(top_tenths);
    area_ = {area.x + side, area.y + top, std::max(area.w - 2 * side, 1),
             std::max(area.h - top - look.unit, 1), 0};
    break_into_pages(look, text_h(look, area_.h, false));
    if (pages() > 1) break_into_pages(look, text_h(look, area_.h, true));
    page_ = std::min(page_, pages() - 1);
}

void Article::break_into_pages(const Look &look, int h) {
    Pages pages(pages_, h);
    for (size_t i = 0; i < paragraphs_.size(); ++i) {
        const Paragraph &p = paragraphs_[i];
        const text::FontScope font(font_of(look.type, p));
        const int line = line_h(GetFont());
        pages.make_room(gap_above(look, paragraphs_, i), line);
        if (p.kind == Kind::grammar)
            pages.add(i, 0, line);
        else
            add_text(pages, i, p.text, std::max(area_.w - (p.hangs ? look.hang() : 0), 1));
    }
}

void Article::draw_piece(const Look &look, const Piece &piece) const {
    const Paragraph &p = paragraphs_[piece.paragraph];
    const irect line{area_.x, area_.y + piece.y, area_.w, piece.h, 0};
    if (p.kind == Kind::grammar)
        return draw_grammar(look.type, line, p, sides_of(paragraphs_.front().text));
    const Sides sides = sides_of(p.text);
    const int flags = alignment(sides) | TEXT_WHOLE_WORDS;
    const int hang = p.hangs ? std::min(look.hang(), line.w - 1) : 0;
    if (piece.begin == 0 && !p.mark.empty()) {
        const text::FontScope font(look.type.number.get());
        DrawTextRect(line.x, line.y, line.w, 1, p.mark.c_str(), flags);
    }
    const text::FontScope font(font_of(look.type, p));
    text::Reader text(p.text.c_str(), text::most_characters);
    text::kv_textrect(sides == Sides::mirrored ? line.x : line.x + hang, line.y, line.w - hang,
                      line.h, text, piece.begin, flags, text::Draw::yes);
}

void Article::draw(const Look &look) const {
    for (const Piece &piece : pages_[static_cast<size_t>(page_)]) draw_piece(look, piece);
    if (pages() == 1) return;
    char counter[32];
    std::snprintf(counter, sizeof counter, "%d / %d", page_ + 1, pages());
    const text::FontScope font(look.type.small.get());
    const int h = look.units(counter_tenths);
    DrawTextRect(area_.x, area_.y + area_.h - h, area_.w, h, counter,
                 ALIGN_RIGHT | VALIGN_BOTTOM | TEXT_RTL_MIRROR);
}

void draw_grammar(const Type &type, const irect &line, const Paragraph &p, Sides sides) {
    const text::FontScope font(type.oblique_for(p.mark));
    const int flags = TEXT_DOTS | alignment(sides);
    const int gap = p.mark.empty() ? 0 : StringWidth(p.mark.c_str()) + StringWidth("  ");
    DrawTextRect(line.x, line.y, line.w, 1, p.mark.c_str(), flags);
    const int w = line.w - gap;
    if (w < 1 || p.text.empty()) return;
    SetFont(type.grammar.get(), -1);
    DrawTextRect(sides == Sides::mirrored ? line.x : line.x + gap, line.y, w, 1, p.text.c_str(),
                 flags);
}

} // namespace dictionary_view
