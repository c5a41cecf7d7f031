// SPDX-License-Identifier: MIT
// An article, page by page; and what everything is measured, written and drawn with.
#ifndef MAGAZINE_PAGE_H
#define MAGAZINE_PAGE_H

#include <algorithm>
#include <cstdio>
#include <set>
#include <string>
#include <vector>

#include "issue.h"

inline int size_of_body() {
    const kelvane::Font font = kelvane::Font::of_theme("window.font", "default,20,0");
    return font ? font->size : 20;
}

// Everything is measured in the theme's unit, which is as large to the eye on each panel, and in
// its size of text.
struct Look {
    // `size` of the articles, in fifths of the theme's.
    explicit Look(int size)
        : text("DejaVuSerif", em * size / 5), heading("DejaVuSerif-Bold", em * size / 5) {
        for (const kelvane::Font *font : {&text, &heading})
            if (*font) (*font)->linespacing = (*font)->size * 7 / 5;
        ifont *fonts[] = {heading.get()};
        RegisterFontList(fonts, 1);
    }

    int u = GetThemeInt("unit.size", std::min(ScreenWidth(), ScreenHeight()) / 150);
    int em = size_of_body();
    int line = std::max(GetThemeInt("separator.size", 1), 1);
    kelvane::Font small{"default", em * 4 / 5}, headline{"DejaVuSerif-Bold", em + 3 * u};
    kelvane::Font text, heading;
};

// The part of `r` from one row of pixels to another one.
inline irect part(const irect &r, int from, int to) {
    return iRect(r.x, r.y + from, r.w, to - from, 0);
}

inline void write(const irect &r, const kelvane::Font &font, const std::string &text, int flags) {
    const kelvane::FontGuard current(font, BLACK);
    DrawTextRect(r.x, r.y, r.w, r.h, text.c_str(), flags | TEXT_DOTS);
}

constexpr int turns_per_flash = 6, bytes_per_minute = 1200; // of somebody who reads

class Page {
  public:
    Page(Issue &issue, const Look &look) : issue_(issue), look_(look) {}

    void open(const Article &article, int byte) {
        stem_ = article.stem();
        name_ = article.name;
        top_ = byte;
        CleanNextPage(); // the first turn wipes away what was before
    }

    // Finds where each page begins, and the one with the byte that was at the top. False when the
    // language, which may be another one now, has no such article.
    bool find_pages() {
        article_ = issue_.find(stem_);
        if (!article_) return false;
        if (article_->name != name_)
            open(*article_, article_->top > 0 ? article_->top : int(share_ * article_->size()));
        const irect area = text_area();
        const kelvane::FontGuard current(look_.text);
        starts_ = kelvane::paginate(article_->text, area.w, area.h - head().h, area.h, area.flags);
        if (starts_.empty()) starts_.push_back(0); // an empty article has an empty page
        const auto behind = std::upper_bound(starts_.begin(), starts_.end(), top_);
        page_ = std::max(int(behind - starts_.begin()) - 1, 0);
        return true;
    }

    void draw() {
        irect area = text_area();
        const int flags = area.flags, u = look_.u;
        SetNightPictures(nullptr, 0);
        ClearScreen();
        if (page_ == 0) {
            draw_head();
            area = part(area, head().h, area.h);
        } else {
            const int x = issue_.is_rtl() ? area.x + 8 * u : area.x; // beside the ribbon
            write(iRect(x, 4 * u, area.w - 8 * u, 8 * u, 0), look_.small, article_->title,
                  mirror() | VALIGN_MIDDLE);
        }
        look_.text.use(BLACK);
        DrawTextPage(area.x, area.y, area.w, area.h, article_->text.c_str(), start(), flags);
        draw_foot();
        if (has_mark()) draw_ribbon();
        share_ = double(top_) / std::max(article_->size(), 1);
        issue_.set_place(*article_, top_);
    }

    // Shows the next page, or the one before; false when the article has come to its end.
    bool turn(int by) {
        const int page = std::max(page_ + by, 0);
        if (page >= int(starts_.size())) issue_.set_place(*article_, article_->size());
        if (page >= int(starts_.size())) return false;
        if (page == page_) return true;
        if (page_ == 0 || page == 0) CleanNextPage(); // pictures leave ghosts
        page_ = page;
        top_ = start();
        draw();
        PageUpdate(turns_per_flash);
        return true;
    }

    bool has_mark() const { return mark() != article_->marks.end(); }

    void toggle_mark() {
        issue_.toggle_mark(*article_, has_mark() ? *mark() : start());
        draw();
        const irect r = ribbon();
        PartialUpdate(r.x, r.y, r.w, r.h);
    }

  private:
    int start() const { return starts_[std::size_t(page_)]; }
    int end() const {
        const auto next = std::size_t(page_) + 1;
        return next < starts_.size() ? starts_[next] : article_->size() + 1;
    }

    // The bookmark on this page: pages change with the size of the text, bytes do not.
    std::set<int>::iterator mark() const {
        const auto found = article_->marks.lower_bound(start());
        return found != article_->marks.end() && *found < end() ? found : article_->marks.end();
    }

    int mirror() const { return issue_.is_rtl() ? TEXT_RTL_MIRROR : 0; }

    // Lines have at most 65 letters, and are justified when there are enough of them to fill.
    irect text_area() const {
        const kelvane::FontGuard current(look_.text);
        const int u = look_.u, letters = StringWidth("abcdefghijklmnopqrstuvwxyz");
        const int w = std::min(ScreenWidth() - 18 * u, letters * 65 / 26);
        const int flags = TEXT_MARKS | TEXT_NO_WIDOWS | TEXT_NO_EMPTY_TOP | TEXT_WHOLE_WORDS |
                          mirror() | (w >= letters * 55 / 26 ? ALIGN_JUSTIFY : ALIGN_LEFT);
        return iRect((ScreenWidth() - w) / 2, 15 * u, w, ScreenHeight() - 33 * u, flags);
    }

    // What stands above the text on the first page: a picture where there is room for it.
    struct Head {
        irect title, author, picture;
        int h;
    };
    Head head() const {
        const irect all = text_area();
        const kelvane::FontGuard current(look_.headline);
        const int u = look_.u, em = look_.em;
        const int title_h = TextRectHeightEx(all.w, all.h / 2, article_->title.c_str(), TEXT_DOTS);
        const int h = title_h + em * 3 / 2 + 5 * u;
        Head head{part(all, 0, title_h), part(all, title_h + u, h - 4 * u), {}, h};
        const int picture_h = std::min(all.w * 9 / 16, all.h - h - 12 * em);
        if (picture_h < all.w * 2 / 5) return head;
        if (!GetPictureSize(article_->picture.c_str(), nullptr, nullptr)) return head;
        head.picture = part(all, h, h + picture_h);
        head.h += picture_h + 5 * u;
        return head;
    }

    void draw_head() {
        const Head h = head();
        const irect &r = h.picture;
        write(h.title, look_.headline, article_->title, mirror());
        write(h.author, look_.small, article_->author, mirror() | VALIGN_MIDDLE);
        if (r.h == 0) return;
        const auto picture =
            kelvane::Bitmap::load(article_->picture.c_str(), r.w, r.h, PICTURE_COVER);
        picture.draw(r.x, r.y);
        if (picture) SetNightPictures(&r, 1);
    }

    void draw_foot() {
        const irect area = text_area();
        const int u = look_.u, line = ScreenHeight() - 12 * u, pages = int(starts_.size());
        const int read = area.w * (page_ + 1) / pages, thick = look_.line + u;
        FillArea(area.x, line, area.w, look_.line, BLACK);
        FillArea(issue_.is_rtl() ? area.x + area.w - read : area.x, line - u / 2, read, thick,
                 BLACK);
        const irect foot = iRect(area.x, ScreenHeight() - 9 * u, area.w, 8 * u, 0);
        char text[100];
        std::snprintf(text, sizeof text, GetLangText("@MagPage"), page_ + 1, pages);
        write(foot, look_.small, text, mirror() | VALIGN_MIDDLE);
        const int rest = (article_->size() - end() + bytes_per_minute - 1) / bytes_per_minute;
        if (page_ + 1 == pages) return;
        std::snprintf(text, sizeof text, GetLangText("@MagMinutes"), rest);
        write(foot, look_.small, text, mirror() | ALIGN_RIGHT | VALIGN_MIDDLE);
    }

    irect ribbon() const {
        const irect area = text_area();
        const int w = 6 * look_.u, x = issue_.is_rtl() ? area.x : area.x + area.w - w;
        return iRect(x, 0, w, 11 * look_.u, 0);
    }

    void draw_ribbon() const {
        const irect r = ribbon();
        FillAreaRect(&r, BLACK);
        for (int i = 0; i < r.w; i++) { // the notch
            const int cut = std::min(i, r.w - 1 - i);
            FillArea(r.x + i, r.h - cut, 1, cut, WHITE);
        }
    }

    Issue &issue_;
    const Look &look_;
    Article *article_ = nullptr;
    std::string stem_, name_;
    int top_ = 0, page_ = 0;
    double share_ = 0; // of the article, before the top
    std::vector<int> starts_;
};

#endif
