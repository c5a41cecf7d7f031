// SPDX-License-Identifier: MIT
// A magazine, which docs/guide.md builds up step by step: a shelf of covers, articles in pages with
// pictures, bookmarks, settings, night, and texts in two languages.
//   kelvane-device FOLDER ./magazine /path/to/examples/magazine/issue
#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "issue.h"
#include "look.h"
#include "page.h"
#include "shelf.h"

namespace {

// What the menu answers.
enum { choose_shelf = 1, choose_bookmarks, choose_mark, choose_settings };

// The screen of settings is made of this table.
constexpr const char *languages[] = {"en", "de"};
const char *size_names[] = {"@MagSmall", "@MagMedium", "@MagLarge", "@MagHuge", nullptr};
const char *face_names[] = {"@MagSerif", "@MagSans", nullptr};
const char *language_names[] = {"English", "Deutsch", nullptr};
iconfigedit settings_table[] = {
    {CONFIG_POSITION, nullptr, "@MagSize", nullptr, "size", "1", size_names, nullptr, nullptr},
    {CONFIG_POSITION, nullptr, "@MagFace", nullptr, "face", "0", face_names, nullptr, nullptr},
    {CONFIG_POSITION, nullptr, "@MagLanguage", nullptr, "language", "0", language_names, nullptr,
     nullptr},
    {CONFIG_SWITCH, nullptr, "@MagNight", nullptr, "night", "0", nullptr, nullptr, nullptr},
    {}};

class Magazine {
  public:
    Magazine() {
        AddLanguageFolder((folder / "language").c_str());
        settings_table[2].deflt = GetLanguage() == std::string("de") ? "1" : "0";
        if (issue_.settings.read("language", -1) >= 0) load_language();
        SetNightMode(issue_.settings.read("night", 0));
    }

    int handle(int type, int par1, int par2) {
        if (!is_page_ && shelf_.is_for_pager(type, par1, par2)) return 1;
        if (gesture_made(RecogniseGesture(&hand_, type, par1, par2))) return 1;
        switch (type) {
        case EVT_SHOW:
            draw();
            FullUpdate();
            return 1;
        case EVT_ORIENTATION:
            SetOrientation(par1);
            Repaint();
            return 1;
        case EVT_KEYPRESS:
            key_pressed(par1);
            return 1;
        }
        return 0;
    }

  private:
    // The language, the theme or the settings may be others.
    void draw() {
        issue_.load();
        look_ = Look(issue_.settings);
        is_page_ = is_page_ && !issue_.articles.empty();
        SetPanelMode(is_page_ ? PANEL_OFF : PANEL_ON);
        shelf_.load();
        if (!is_page_) return draw_screen(shelf_);
        page_.find_pages();
        draw_screen(page_);
    }

    void show_shelf() {
        is_page_ = false;
        Repaint();
    }

    void open(Article *article, int byte) {
        if (!article) return;
        page_.open(article, byte);
        is_page_ = true;
        Repaint();
    }

    void open_selected() {
        if (Article *article = shelf_.selected()) open(article, article->top);
    }

    void turn(int by) {
        if (!page_.turn(by)) show_shelf(); // it is behind the last page
    }

    void key_pressed(int key) {
        if (key == KEY_MENU) return open_menu();
        if (is_page_) {
            if (key == KEY_PREV || key == KEY_LEFT) turn(-1);
            if (key == KEY_NEXT || key == KEY_RIGHT) turn(1);
            if (key == KEY_OK) page_.toggle_mark();
            if (key == KEY_BACK) show_shelf();
        } else {
            shelf_.key_pressed(key);
            if (key == KEY_OK) open_selected();
            if (key == KEY_BACK) CloseApp();
        }
    }

    // Fingers do what keys do.
    bool gesture_made(int gesture) {
        if (gesture == GESTURE_TAP || gesture == GESTURE_DOUBLE_TAP) tapped(hand_.x, hand_.y);
        if (gesture == GESTURE_SWIPE_LEFT) key_pressed(KEY_NEXT);
        if (gesture == GESTURE_SWIPE_RIGHT) key_pressed(KEY_PREV);
        if (gesture == GESTURE_LONG_PRESS) open_menu();
        return gesture != GESTURE_NONE;
    }

    // On a page the upper right corner has the bookmark, the left third goes back, the right one
    // on.
    void tapped(int x, int y) {
        const int third = ScreenWidth() / 3;
        if (!is_page_) {
            if (is_inside(shelf_.menu_button(), x, y)) return open_menu();
            if (shelf_.tapped(x, y)) open_selected();
        } else if (y < 15 * look_.u && x > 2 * third) {
            page_.toggle_mark();
        } else if (x >= third && x < 2 * third) {
            open_menu();
        } else {
            turn(x < third ? -1 : 1);
        }
    }

    void open_menu() {
        static imenu items[] = {{ITEM_HEADER, 0, "@Magazine", nullptr},
                                {ITEM_ACTIVE, choose_shelf, "@MagArticles", nullptr},
                                {ITEM_ACTIVE, choose_bookmarks, "@MagBookmarks", nullptr},
                                {ITEM_ACTIVE, choose_mark, nullptr, nullptr},
                                {ITEM_ACTIVE, choose_settings, "@MagSettings", nullptr},
                                {}};
        items[3].type = is_page_ ? ITEM_ACTIVE : ITEM_ACTIVE | ITEM_HIDDEN;
        items[3].text = is_page_ && page_.has_mark() ? "@MagUnmark" : "@MagMark";
        menu_of = this;
        OpenMenu(items, 1, IsRTL() ? 0 : ScreenWidth(), 0, [](int i) { menu_of->choose(i); });
    }

    void choose(int index) {
        if (index == choose_shelf) show_shelf();
        if (index == choose_bookmarks) open_bookmarks();
        if (index == choose_mark) page_.toggle_mark();
        if (index == choose_settings) open_settings();
    }

    void open_settings() {
        OpenConfigEditor("@MagSettings", issue_.settings.get(), settings_table, changed, this);
    }

    // A setting was changed and saved; or, without a row, the user has left the screen of settings.
    static void changed(const iconfigedit *row, void *context) {
        auto *self = static_cast<Magazine *>(context);
        if (!row) return Repaint();
        const std::string name = row->name;
        if (name == "language") {
            self->load_language();
            self->open_settings(); // in that language
        }
        if (name == "night") {
            SetNightMode(self->issue_.settings.read("night", 0));
            FullUpdate();
        }
    }

    void load_language() {
        LoadLanguage(languages[std::clamp(issue_.settings.read("language", 0), 0, 1)]);
    }

    // The bookmarks are a list that is a screen of its own.
    void open_bookmarks() {
        ilist list{};
        list.title = "@MagBookmarks";
        list.flags = LIST_TURNS;
        list.rows.count = int(issue_.marks.size());
        list.rows.height = LIST_COVER_ROWS;
        list.rows.context = this;
        list.rows.fill = fill_bookmark;
        list.rows.hproc = bookmark_told;
        list.rows.empty_title = "@MagNoMarks";
        list.rows.empty_line = "@MagNoMarksHint";
        list_ = OpenList(&list);
    }

    std::pair<Article *, int> bookmark(int row) {
        const auto mark = std::next(issue_.marks.begin(), row);
        for (Article &article : issue_.articles)
            if (article.name == mark->first) return {&article, mark->second};
        return {nullptr, 0};
    }

    // The first line that has words.
    static std::string words_at(const std::string &text, std::size_t byte) {
        std::size_t first = text.find_first_not_of("\n\017\016\001", byte);
        if (first == text.npos) return "";
        if (text.compare(first, 3, "\u2003") == 0) first += 3;
        return text.substr(first, text.find('\n', first) - first);
    }

    static void fill_bookmark(int row, ilistrow *out, void *context) {
        auto *self = static_cast<Magazine *>(context);
        const auto [article, byte] = self->bookmark(row);
        if (!article) return;
        self->row_line_ = words_at(article->text, std::size_t(byte));
        self->row_value_ = text_of("%d %%", article->percent(byte));
        out->title = article->title.c_str();
        out->line = self->row_line_.c_str();
        out->value = self->row_value_.c_str();
        out->picture = article->cover.get();
    }

    static void bookmark_told(int action, int row, void *context) {
        auto *self = static_cast<Magazine *>(context);
        if (action != LIST_CHOSEN) return;
        CloseList(self->list_);
        const auto [article, byte] = self->bookmark(row);
        self->open(article, byte);
    }

    static inline Magazine *menu_of; // who opened it

    Issue issue_;
    Look look_{issue_.settings};
    Shelf shelf_{issue_, look_};
    Page page_{issue_, look_};
    bool is_page_ = false;
    kv_gestures hand_{};
    int list_ = 0;
    std::string row_line_, row_value_; // of the row that is drawn
};

} // namespace

int main(int argc, char **argv) {
    if (argc > 1) folder = argv[1];
    return kelvane::run<Magazine>();
}
