// SPDX-License-Identifier: MIT
// The first screen: a shelf of covers.
#ifndef MAGAZINE_SHELF_H
#define MAGAZINE_SHELF_H

#include <algorithm>
#include <string>
#include <utility>

#include "issue.h"
#include "look.h"

class Shelf {
  public:
    Shelf(Issue &issue, const Look &look) : issue_(issue), look_(look) {}

    // Themes have other sizes for landscape.
    void load() {
        const icaption_properties caption = LoadApplicationCaptionProperties();
        SetApplicationCaptionHeight(caption.height);
        const kelvane::Font font(caption.font); // it is ours, and so are those of the pager
        ink_ = caption.background_color == BLACK ? WHITE : BLACK;
        pager_ = LoadPagerProperties();
        pager_font_.reset(pager_.page_font);
        icons_[0].reset(pager_.icon_left);
        icons_[1].reset(pager_.icon_right);
    }

    void draw() {
        draw_caption();
        selected_ = std::clamp(selected_, 0, std::max(count() - 1, 0));
        const int n = per_page(), first = selected_ / n * n;
        pager_.current_page = selected_ / n + 1;
        pager_.total_pages = (count() + n - 1) / n;
        for (int i = first; i < std::min(first + n, count()); i++) draw_item(i);
        if (pager_.total_pages > 1) DrawPager(&pager_);
        if (count() == 0)
            write(area(), look_.small, GetLangText("@MagNone"), ALIGN_CENTER | VALIGN_MIDDLE);
    }

    bool is_for_pager(int type, int x, int y) {
        return pager_.total_pages > 1 && PagerHandler(&pager_, type, x, y);
    }

    // The selection moves within a page, and only what has changed is updated; or the page turns.
    void select(int i) {
        if (i < 0 || i >= count()) return;
        const int n = per_page(), before = std::exchange(selected_, i);
        draw_screen(*this);
        if (before / n != i / n) return PageUpdate(turns_per_flash);
        const irect from = item(before % n), to = item(i % n);
        const int x = std::min(from.x, to.x), y = std::min(from.y, to.y);
        const irect both =
            iRect(x, y, std::max(from.x, to.x) + to.w - x, std::max(from.y, to.y) + to.h - y, 0);
        const irect r = inset(both, -2 * look_.u);
        PartialUpdate(r.x, r.y, r.w, r.h);
    }

    void key_pressed(int key) {
        const int forward = IsRTL() ? -1 : 1, n = per_page(), page = selected_ / n;
        if (key == KEY_LEFT) select(selected_ - forward);
        if (key == KEY_RIGHT) select(selected_ + forward);
        if (key == KEY_UP) select(selected_ - columns());
        if (key == KEY_DOWN) select(selected_ + columns());
        if (key == KEY_PREV) select((page - 1) * n);
        if (key == KEY_NEXT) select((page + 1) * n);
    }

    // Whether an article is there, which is selected then.
    bool tapped(int x, int y) {
        const int n = per_page(), first = selected_ / n * n;
        for (int i = first; i < std::min(first + n, count()); i++)
            if (is_inside(item(i - first), x, y)) {
                selected_ = i;
                return true;
            }
        return false;
    }

    irect menu_button() const {
        const int w = GetCaptionHeight() + 3 * look_.u;
        return mirrored(iRect(ScreenWidth() - w, 0, w, GetCaptionHeight(), 0));
    }

    Article *selected() { return count() > 0 ? &issue_.articles[std::size_t(selected_)] : nullptr; }

  private:
    int count() const { return int(issue_.articles.size()); }

    irect area() const {
        const int u = look_.u, top = GetCaptionHeight() + 5 * u;
        return iRect(6 * u, top, ScreenWidth() - 12 * u,
                     ScreenHeight() - top - PanelHeight() - pager_.height - 3 * u, 0);
    }

    int columns() const { return std::max((ScreenWidth() - 6 * look_.u) * 5 / (48 * look_.em), 1); }

    int rows() const {
        const int pitch = natural_cover() + 3 * look_.em + 5 * look_.u;
        return std::max((area().h + 5 * look_.u + pitch / 5) / pitch, 1);
    }

    // How high covers are: as wide as their column, or lower where that makes room for another row.
    int natural_cover() const {
        const int gap = 6 * look_.u;
        return std::min((area().w + gap) / columns() - gap, 44 * look_.u) * 4 / 3;
    }
    int cover_height() const {
        const int gap = 5 * look_.u, room = (area().h + gap) / rows() - gap;
        return std::min(natural_cover(), room - 3 * look_.em);
    }

    // Item i of a page: a cover with what is written below it.
    irect item(int i) const {
        const irect all = area();
        const int u = look_.u, n = columns(), w = (all.w + 6 * u) / n - 6 * u;
        const int h = cover_height() + 3 * look_.em;
        return mirrored(iRect(all.x + i % n * (w + 6 * u), all.y + i / n * (h + 5 * u), w, h, 0));
    }

    int per_page() const { return columns() * rows(); }

    void draw_caption() {
        const irect r = menu_button();
        const int u = look_.u;
        const irect title = iRect(6 * u, 0, ScreenWidth() - 12 * u, GetCaptionHeight(),
                                  TEXT_RTL_MIRROR | TEXT_DOTS | VALIGN_MIDDLE);
        DrawApplicationCaption(GetLangText("@Magazine"), &title);
        const int x = r.x + (r.w - 6 * u) / 2, y = r.y + r.h / 2 - 2 * u;
        for (int i = 0; i < 3; i++) FillArea(x, y + i * 2 * u, 6 * u, u * 3 / 4, ink_);
    }

    void draw_item(int i) {
        const irect r = item(i % per_page()), around = inset(r, -2 * look_.u);
        Article &article = issue_.articles[std::size_t(i)];
        FillAreaRect(&around, WHITE);
        const int em = look_.em, u = look_.u, h = cover_height();
        const irect cover = mirrored(iRect(mirrored(r).x, r.y, h * 3 / 4, h, 0));
        draw_cover(article, cover);
        if (article.read > 0) {
            const int read = cover.w * article.percent(article.read) / 100, y = r.y + cover.h;
            FillArea(cover.x, y + u * 3 / 2, cover.w, look_.line, BLACK);
            FillArea(IsRTL() ? cover.x + cover.w - read : cover.x, y + u, read, u * 5 / 4, BLACK);
        }
        const int flags = TEXT_RTL_MIRROR | TEXT_DOTS | VALIGN_MIDDLE;
        write(part(r, r.h - em * 5 / 2, r.h - em * 5 / 4), look_.small_bold, article.title, flags);
        write(part(r, r.h - em * 5 / 4, r.h), look_.small, article.author, flags);
        if (i == selected_) DrawPickOutEx(&around, "default");
    }

    // A picture, or the title as on the cover of a book.
    void draw_cover(Article &article, const irect &r) {
        const int u = look_.u;
        if (article.picture.empty()) {
            const irect page = inset(r, r.w / 12);
            const kelvane::Font title("DejaVuSerif-Bold", std::min(look_.em, r.w / 9));
            FillArea(page.x, page.y + 3 * u, 7 * u, u, BLACK);
            write(part(page, 6 * u, page.h - 2 * look_.em), title, article.title, TEXT_DOTS);
            write(page, look_.small, article.author, VALIGN_BOTTOM);
        } else {
            if (article.cover.width() != r.w)
                article.cover = kelvane::Bitmap::load((folder / article.picture).c_str(), r.w, r.h,
                                                      PICTURE_COVER);
            draw_picture(r, article.cover);
        }
        DrawBorder(&r, look_.line, 0, 0, BLACK);
    }

    Issue &issue_;
    const Look &look_;
    int selected_ = 0;
    ipager pager_{};
    kelvane::Font pager_font_;
    kelvane::Bitmap icons_[2];
    int ink_ = BLACK; // on the caption
};

#endif
