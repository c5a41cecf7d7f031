// SPDX-License-Identifier: MIT
// A magazine, which docs/guide.md explains: a list of covers, articles in pages with pictures,
// bookmarks, settings, night, and texts in two languages.
//   kelvane-device FOLDER ./magazine /path/to/examples/magazine/issue
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "issue.h"
#include "page.h"

namespace {

fs::path folder; // of the articles, their pictures, and the texts of the magazine

// The screen of settings is made of this table.
const char *size_names[] = {"@MagSmall", "@MagMedium", "@MagLarge", "@MagHuge", nullptr};
constexpr int sizes[] = {4, 5, 6, 8};
const iconfigedit settings_table[] = {
    {CONFIG_POSITION, nullptr, "@MagSize", nullptr, "size", "1", size_names, nullptr, nullptr},
    {CONFIG_SWITCH, nullptr, "@MagNight", nullptr, "night", "0", nullptr, nullptr, nullptr},
    {}};

const ilistrows list_form{0,       LIST_COVER_ROWS, nullptr,       nullptr,          nullptr,
                          nullptr, nullptr,         "@MagNoMarks", "@MagNoMarksHint"};

enum class Screen { shelf, bookmarks, page };
enum { choose_mark = 1, choose_shelf, choose_bookmarks, choose_settings, choose_end };

class Magazine {
  public:
    Magazine() {
        AddLanguageFolder((folder / "language").c_str());
        SetNightMode(settings_.read("night", 0));
    }

    int handle(int type, int par1, int par2) {
        const int gesture = RecogniseGesture(&hand_, type, par1, par2);
        switch (type) {
        case EVT_SHOW:
            draw();
            FullUpdate();
            return 1;
        case EVT_ORIENTATION:
            SetOrientation(par1);
            Repaint();
            return 1;
        case EVT_HIDE:
            issue_.save_places();
            return 1;
        }
        if (screen_ != Screen::page && list_.handle(type, par1, par2)) return 1;
        if (gesture != GESTURE_NONE) return gesture_made(gesture);
        return type == EVT_KEYPRESS && key_pressed(par1);
    }

    // The rows of the list ask for what they show, and tell what is done with them.
    void fill(int index, ilistrow &out) {
        const Row &row = rows_[std::size_t(index)];
        Article &a = *row.article;
        const bool is_shelf = screen_ == Screen::shelf;
        line_ = is_shelf ? a.author : words_at(a.text, std::size_t(row.byte));
        value_ = std::to_string(a.percent(row.byte)) + " %";
        const int h = 2 * GetThemeInt("context_menu.item.height", 12 * look_.u) - 4 * look_.u;
        if (!a.cover && GetPictureSize(a.picture.c_str(), nullptr, nullptr))
            a.cover = kelvane::Bitmap::load(a.picture.c_str(), h * 3 / 4, h, PICTURE_COVER);
        out.title = a.title.c_str();
        out.line = line_.c_str();
        out.picture = a.cover.get();
        if (!is_shelf || row.byte > 0) out.value = value_.c_str();
        if (is_shelf && row.byte > 0) out.progress = a.percent(row.byte);
    }

    void told(int action, int row) {
        const Row &chosen = rows_[std::size_t(std::max(row, 0))];
        if (action == LIST_CHOSEN) open(*chosen.article, chosen.byte);
        if (action == LIST_CONTEXT) open_menu();
    }

  private:
    // The language, the theme, the settings and the size of the screen may be others.
    void draw() {
        issue_.load(folder);
        look_ = Look(sizes[std::clamp(settings_.read("size", 1), 0, 3)]);
        if (screen_ == Screen::page && !page_.find_pages()) screen_ = Screen::shelf;
        SetPanelMode(screen_ == Screen::page ? PANEL_OFF : PANEL_ON);
        if (screen_ == Screen::page) return page_.draw();
        find_rows();
        draw_list();
    }

    void show(Screen screen) {
        issue_.save_places();
        screen_ = screen;
        if (screen == Screen::bookmarks) SelectionList_SetSelected(list_.get(), 0);
        Repaint();
    }

    void open(Article &article, int byte) {
        page_.open(article, byte);
        is_just_opened_ = true;
        show(Screen::page);
    }

    // --- the lists of articles and of bookmarks

    struct Row {
        Article *article;
        int byte;
    };

    void find_rows() {
        rows_.clear();
        for (Article &a : issue_.articles) {
            if (screen_ == Screen::shelf) rows_.push_back({&a, a.top});
            if (screen_ == Screen::bookmarks)
                for (const int byte : a.marks) rows_.push_back({&a, byte});
        }
        SelectionList_SetCount(list_.get(), int(rows_.size()));
    }

    void draw_list() {
        ClearScreen();
        SetNightPictures(nullptr, 0);
        const icaption_properties caption = LoadApplicationCaptionProperties();
        const kelvane::Font font(caption.font); // it is ours
        SetApplicationCaptionHeight(caption.height);
        const irect r = menu_button();
        const irect title = iRect(IsRTL() ? r.w : 6 * look_.u, 0, ScreenWidth() - r.w - 6 * look_.u,
                                  r.h, TEXT_RTL_MIRROR | TEXT_DOTS | VALIGN_MIDDLE);
        const char *key = screen_ == Screen::shelf ? "@Magazine" : "@MagBookmarks";
        DrawApplicationCaption(GetLangText(key), &title);
        const int u = look_.u, ink = caption.background_color == BLACK ? WHITE : BLACK;
        for (int i = -1; i <= 1; i++)
            FillArea(r.x + r.w / 2 - 3 * u, r.h / 2 + i * 2 * u - u / 2, 6 * u, u * 3 / 4, ink);
        const int top = caption.height + look_.u;
        list_.place(iRect(0, top, ScreenWidth(), ScreenHeight() - top - PanelHeight(), 0));
        list_.draw();
    }

    irect menu_button() const {
        const int w = 18 * look_.u;
        return iRect(IsRTL() ? 0 : ScreenWidth() - w, 0, w, GetCaptionHeight(), 0);
    }

    // The first line that has words.
    static std::string words_at(const std::string &text, std::size_t byte) {
        std::size_t first = text.find_first_not_of("\n\017\016\001", byte);
        if (first == text.npos) return "";
        if (text.compare(first, 3, "\u2003") == 0) first += 3;
        return text.substr(first, text.find('\n', first) - first);
    }

    // --- keys and fingers

    bool key_pressed(int key) {
        const bool is_page = screen_ == Screen::page;
        const int next = issue_.is_rtl() ? KEY_LEFT : KEY_RIGHT;
        if (key == KEY_BACK && screen_ == Screen::shelf)
            CloseApp();
        else if (key == KEY_BACK)
            show(Screen::shelf);
        else if (key == KEY_MENU || key == KEY_OK)
            open_menu();
        else if (is_page && (key == KEY_NEXT || key == next))
            turn(1);
        else if (is_page && (key == KEY_PREV || key == KEY_LEFT || key == KEY_RIGHT))
            turn(-1);
        else
            return false;
        return true;
    }

    // A swipe moves the paper: against the way of reading comes the next page.
    bool gesture_made(int gesture) {
        const bool is_second_tap = gesture == GESTURE_DOUBLE_TAP && is_just_opened_;
        is_just_opened_ = false;
        const bool is_tap = gesture == GESTURE_TAP || gesture == GESTURE_DOUBLE_TAP;
        if (screen_ != Screen::page) {
            const irect r = menu_button();
            if (is_tap && hand_.y < r.h && hand_.x >= r.x && hand_.x < r.x + r.w) open_menu();
        } else if (is_tap && !is_second_tap) {
            page_tapped(issue_.is_rtl() ? ScreenWidth() - hand_.x : hand_.x);
        } else if (gesture == GESTURE_SWIPE_LEFT || gesture == GESTURE_SWIPE_RIGHT) {
            turn((gesture == GESTURE_SWIPE_LEFT) != issue_.is_rtl() ? 1 : -1);
        } else if (gesture == GESTURE_LONG_PRESS) {
            open_menu();
        }
        return true;
    }

    // The corner above the end of the lines has the bookmark; the third where lines begin goes
    // back, the one where they end goes on.
    void page_tapped(int x) {
        const int third = ScreenWidth() / 3;
        if (x > 2 * third && hand_.y < 15 * look_.u)
            page_.toggle_mark();
        else if (x < third || x > 2 * third)
            turn(x < third ? -1 : 1);
        else
            open_menu();
    }

    void turn(int by) {
        if (!page_.turn(by)) show(Screen::shelf);
    }

    void open_menu() {
        const bool is_page = screen_ == Screen::page;
        static imenu items[] = {{ITEM_HEADER, 0, "@Magazine", nullptr},
                                {ITEM_ACTIVE, choose_mark, nullptr, nullptr},
                                {ITEM_ACTIVE, choose_shelf, "@MagArticles", nullptr},
                                {ITEM_ACTIVE, choose_bookmarks, "@MagBookmarks", nullptr},
                                {ITEM_ACTIVE, choose_settings, "@MagSettings", nullptr},
                                {ITEM_ACTIVE, choose_end, "@MagClose", nullptr},
                                {}};
        items[1].type = is_page ? ITEM_ACTIVE : ITEM_ACTIVE | ITEM_HIDDEN;
        items[1].text = is_page && page_.has_mark() ? "@MagUnmark" : "@MagMark";
        kelvane::open_menu(items, is_page ? 1 : 2, IsRTL() ? 0 : ScreenWidth(), 0,
                           [this](int choice) { choose(choice); });
    }

    void choose(int choice) {
        if (choice == choose_mark) page_.toggle_mark();
        if (choice == choose_shelf) show(Screen::shelf);
        if (choice == choose_bookmarks) show(Screen::bookmarks);
        if (choice == choose_settings)
            OpenConfigEditor("@MagSettings", settings_.get(), settings_table, changed, this);
        if (choice == choose_end) CloseApp();
    }

    // A setting was changed and saved; or, without a row, the user has left the screen of settings.
    static void changed(const iconfigedit *row, void *self) {
        if (!row) return Repaint();
        if (row->name != std::string("night")) return;
        SetNightMode(static_cast<Magazine *>(self)->settings_.read("night", 0));
        FullUpdate();
    }

    kelvane::Config settings_ = kelvane::Config::of_application("magazine", "settings.cfg");
    Issue issue_;
    Look look_{5};
    Screen screen_ = Screen::shelf;
    Page page_{issue_, look_};
    bool is_just_opened_ = false;
    kelvane::SelectionList list_{kelvane::rows_of(*this, list_form)};
    std::vector<Row> rows_;
    std::string line_, value_; // of the row that is drawn
    kv_gestures hand_{};
};

} // namespace

int main(int argc, char **argv) {
    if (argc > 1) folder = argv[1];
    if (read_articles(folder / "en").empty()) {
        std::fprintf(stderr, "magazine: \"%s\" has no articles\n", folder.c_str());
        return 2;
    }
    return kelvane::run<Magazine>();
}
