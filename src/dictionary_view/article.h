// SPDX-License-Identifier: MIT
// The article that the view shows, on as many pages as it takes.
#pragma once

#include <string_view>
#include <vector>

#include "dictionary_view/look.h"
#include "dictionary_view/paragraphs.h"
#include "kelvane/canvas.h"
#include "kelvane/text.h"

namespace dictionary_view {

// A paragraph, or as much of it as is on one page.
struct Piece {
    size_t paragraph;
    int begin; // the first character
    int y, h;  // below the top of the page
};
using Page = std::vector<Piece>;

class Article {
  public:
    // Becomes the article of a word, on its first page. Throws bad_alloc.
    void set(std::string_view headword, std::string_view translation);
    // Puts it on pages that fit into an area; there is at least one. Throws bad_alloc.
    void lay_out(const Look &look, const irect &area);
    void draw(const Look &look) const;

    int page() const { return page_; }
    int pages() const { return static_cast<int>(pages_.size()); }
    // False when there is no such page.
    bool turn_to(int page);
    const std::vector<Paragraph> &paragraphs() const { return paragraphs_; }
    const std::vector<Page> &all_pages() const { return pages_; }

  private:
    void break_into_pages(const Look &look, int h);
    void draw_piece(const Look &look, const Piece &piece) const;

    std::vector<Paragraph> paragraphs_;
    std::vector<Page> pages_;
    irect area_{};
    int page_ = 0;
};

// Writes a part of speech and a pronunciation on one line, from the side on which the headword
// begins.
void draw_grammar(const Type &type, const irect &line, const Paragraph &p, Sides sides);

// What begins right to left is aligned so.
Sides sides_of(const std::string &text);
constexpr int alignment(Sides sides) {
    return sides == Sides::mirrored ? ALIGN_RIGHT : ALIGN_LEFT;
}

} // namespace dictionary_view
