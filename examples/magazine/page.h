// SPDX-License-Identifier: MIT
// The second screen: an article, page by page.
#ifndef MAGAZINE_PAGE_H
#define MAGAZINE_PAGE_H

#include <algorithm>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "issue.h"
#include "look.h"

constexpr int bytes_per_minute = 1200; // of somebody who reads

class Page {
  public:
    Page(Issue &issue, const Look &look) : issue_(issue), look_(look) {}

    void open(Article *article, int byte) {
        name_ = article->name;
        top_ = byte;
        CleanNextPage(); // the first turn wipes the shelf away
    }

    // Finds where each page begins, and the one with the byte that was at the top. The articles may
    // be those of another language now.
    void find_pages() {
        article_ = &issue_.articles.front();
        for (Article &one : issue_.articles)
            if (one.name.substr(one.name.find('/')) == name_.substr(name_.find('/')))
                article_ = &one;
        if (article_->name != name_) open(article_, article_->top);
        const irect area = text_area();
        const kelvane::FontGuard current(look_.text);
        starts_ = kelvane::paginate(article_->text, area.w, area.h - head().h, area.h, area.flags);
        if (starts_.empty()) starts_.push_back(0); // an empty article has an empty page
        const auto behind = std::upper_bound(starts_.begin(), starts_.end(), top_);
        page_ = std::max(int(behind - starts_.begin()) - 1, 0);
    }

    void draw() {
        irect area = text_area();
        const int flags = area.flags;
        if (page_ == 0) {
            draw_head();
            area = part(area, head().h, area.h);
        } else {
            write(iRect(area.x, 4 * look_.u, area.w, 8 * look_.u, 0), look_.small, article_->title,
                  VALIGN_MIDDLE | TEXT_DOTS);
        }
        look_.text.use(BLACK);
        DrawTextPage(area.x, area.y, area.w, area.h, article_->text.c_str(), start(), flags);
        draw_foot();
        if (mark() != issue_.marks.end()) draw_ribbon();
        issue_.remember(*article_, top_, end());
    }

    // Whether there is a page in that direction, which is shown then.
    bool turn(int by) {
        const int page = page_ + by;
        if (page < 0 || page >= int(starts_.size())) return page < 0;
        if (!night_pictures.empty()) CleanNextPage(); // pictures leave ghosts
        page_ = page;
        top_ = start();
        draw_screen(*this);
        PageUpdate(turns_per_flash);
        return true;
    }

    bool has_mark() const { return mark() != issue_.marks.end(); }

    void toggle_mark() {
        issue_.toggle_mark(article_->name, has_mark() ? mark()->second : start());
        draw_screen(*this);
        const irect r = ribbon();
        PartialUpdate(r.x, r.y, r.w, r.h);
    }

  private:
    int start() const { return starts_[std::size_t(page_)]; }
    int end() const {
        const auto next = std::size_t(page_) + 1;
        return next < starts_.size() ? starts_[next] : article_->size();
    }

    // The bookmark on this page: pages change with the size of the text, bytes do not.
    std::set<std::pair<std::string, int>>::iterator mark() const {
        const auto found = issue_.marks.lower_bound({article_->name, start()});
        const bool is_here = found != issue_.marks.end() && found->first == article_->name &&
                             found->second < std::max(end(), 1);
        return is_here ? found : issue_.marks.end();
    }

    // Lines have at most 65 letters, and are justified when there are enough of them to fill.
    irect text_area() const {
        const kelvane::FontGuard current(look_.text);
        const int u = look_.u, letters = StringWidth("abcdefghijklmnopqrstuvwxyz");
        const int w = std::min(ScreenWidth() - 18 * u, letters * 65 / 26);
        const int flags = TEXT_MARKS | TEXT_NO_WIDOWS | TEXT_NO_EMPTY_TOP | TEXT_WHOLE_WORDS;
        return iRect((ScreenWidth() - w) / 2, 15 * u, w, ScreenHeight() - 33 * u,
                     flags | (w >= letters * 55 / 26 ? ALIGN_JUSTIFY : ALIGN_LEFT));
    }

    // What stands above the text on the first page: a picture where there is room for it.
    struct Head {
        irect title, author, picture;
        int h;
    };
    Head head() const {
        const irect all = text_area();
        const kelvane::FontGuard current(look_.headline);
        const int u = look_.u, title_h = TextRectHeight(all.w, article_->title.c_str(), ALIGN_LEFT);
        Head head{part(all, 0, title_h),
                  part(all, title_h + u, title_h + u + look_.em * 3 / 2),
                  {},
                  title_h + look_.em * 3 / 2 + 5 * u};
        const int picture_h = std::min(all.w * 9 / 16, all.h - head.h - 12 * look_.em);
        if (article_->picture.empty() || picture_h < all.w * 2 / 5) return head;
        head.picture = part(all, head.h, head.h + picture_h);
        head.h += picture_h + 5 * u;
        return head;
    }

    void draw_head() {
        const Head h = head();
        const irect &r = h.picture;
        write(h.title, look_.headline, article_->title, ALIGN_LEFT);
        write(h.author, look_.small, article_->author, VALIGN_MIDDLE);
        if (r.h > 0)
            draw_picture(r, kelvane::Bitmap::load((folder / article_->picture).c_str(), r.w, r.h,
                                                  PICTURE_COVER));
    }

    void draw_foot() {
        const irect area = text_area();
        const int u = look_.u, line = ScreenHeight() - 21 * u / 2, pages = int(starts_.size());
        const irect foot = iRect(area.x, ScreenHeight() - 9 * u, area.w, 8 * u, 0);
        FillArea(area.x, line, area.w, look_.line, BLACK);
        FillArea(area.x, line - u / 2, area.w * (page_ + 1) / pages, u * 5 / 4, BLACK);
        write(foot, look_.small, text_of(GetLangText("@MagPage"), page_ + 1, pages), VALIGN_MIDDLE);
        const int rest = (article_->size() - end() + bytes_per_minute - 1) / bytes_per_minute;
        if (rest > 0)
            write(foot, look_.small, text_of(GetLangText("@MagMinutes"), rest),
                  ALIGN_RIGHT | VALIGN_MIDDLE);
    }

    irect ribbon() const {
        const irect area = text_area();
        return iRect(area.x + area.w - 6 * look_.u, 0, 6 * look_.u, 11 * look_.u, 0);
    }

    void draw_ribbon() {
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
    std::string name_;
    int top_ = 0, page_ = 0;
    std::vector<int> starts_;
};

#endif
