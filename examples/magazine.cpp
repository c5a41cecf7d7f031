// SPDX-License-Identifier: MIT
// A magazine, which docs/guide.md builds up step by step: a shelf of covers, articles in pages with
// pictures, bookmarks, settings, night, and texts in two languages.
//   kelvane-device FOLDER ./magazine /path/to/examples/magazine
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <kelvane.hpp>

namespace {

using kelvane::Bitmap;
using kelvane::Config;
using kelvane::Font;
namespace fs = std::filesystem;

constexpr int turns_per_flash = 6;
constexpr int bytes_per_minute = 1200; // of somebody who reads

// --- articles

struct Article {
    std::string name; // "en/2-tides", by which settings and bookmarks know it
    std::string title, author, picture;
    std::string text;
    int top = 0, read = 0; // bytes: where its page begins, and how far it was read
    Bitmap cover;
};

// A paragraph is a line. Its first line is indented; headings are bold and stay with their text.
void add_paragraph(std::string &text, const std::string &line) {
    const bool is_heading = line.compare(0, 2, "# ") == 0;
    if (is_heading)
        text += "\n\017\016\001" + line.substr(2); // TEXT_HEADING, TEXT_HOLD, font 1
    else
        text += text.empty() ? line : "\u2003" + line;
    text += '\n';
}

// A file has the title, the author and the picture's name, or nothing, in three lines.
Article read_article(const fs::path &path) {
    std::ifstream file(path);
    const std::string language = path.parent_path().filename();
    Article article;
    article.name = language + "/" + path.stem().string();
    std::getline(file, article.title);
    std::getline(file, article.author);
    std::getline(file, article.picture);
    for (std::string line; std::getline(file, line);) add_paragraph(article.text, line);
    return article;
}

std::vector<Article> read_articles(const fs::path &folder) {
    std::vector<fs::path> paths;
    std::error_code error; // a folder that cannot be read has no articles
    for (const auto &entry : fs::directory_iterator(folder, error)) paths.push_back(entry.path());
    std::sort(paths.begin(), paths.end());
    std::vector<Article> articles;
    for (const fs::path &path : paths) articles.push_back(read_article(path));
    return articles;
}

// --- sizes and fonts

int text_size(const char *parameter, const char *deflt) {
    const Font font = Font::of_theme(parameter, deflt);
    return font ? font->size : GetThemeInt("unit.size", 4) * 5;
}

// What everything is measured and written in. The theme has a unit, which is as large to the eye on
// each panel, and a size of text.
struct Look {
    Look(const std::string &face, int size);

    int u = GetThemeInt("unit.size", std::min(ScreenWidth(), ScreenHeight()) / 150);
    int em = text_size("window.font", "default,20,0");
    int line = std::max(GetThemeInt("separator.size", 1), 1);
    Font label{"defaultb", em * 9 / 10}, plain_label{"default", em * 9 / 10};
    Font small{"default", em * 4 / 5}, small_bold{"defaultb", em * 4 / 5};
    Font title{"DejaVuSerif-Bold", em}, headline{"DejaVuSerif-Bold", em * 8 / 5};
    Font text, heading;
};

Look::Look(const std::string &face, int size)
    : text(face.c_str(), em * size / 5), heading((face + "-Bold").c_str(), em * size / 5) {
    for (const Font *font : {&text, &heading})
        if (*font) (*font)->linespacing = (*font)->size * 7 / 5;
    ifont *fonts[] = {heading.get()};
    RegisterFontList(fonts, 1);
}

// Where it is when the interface runs from right to left.
irect mirrored(irect r) {
    if (IsRTL()) r.x = ScreenWidth() - r.x - r.w;
    return r;
}

irect inset(const irect &r, int by) {
    return iRect(r.x + by, r.y + by, r.w - 2 * by, r.h - 2 * by, 0);
}

// The rows of `r` from one to another one.
irect rows(const irect &r, int from, int to) {
    return iRect(r.x, r.y + from, r.w, to - from, 0);
}

bool inside(const irect &r, int x, int y) {
    return x >= r.x && x < r.x + r.w && y >= r.y && y < r.y + r.h;
}

void write(const irect &r, const Font &font, const std::string &text, int flags) {
    const kelvane::FontGuard current(font, BLACK);
    DrawTextRect(r.x, r.y, r.w, r.h, text.c_str(), flags);
}

std::string text_of(const char *format, int a, int b = 0) {
    char text[100];
    std::snprintf(text, sizeof text, format, a, b);
    return text;
}

// --- the application

enum class Screen { covers, bookmarks, page };

// What the menu answers; sizes, faces and languages are counted from theirs.
enum { choose_covers = 1, choose_bookmarks, choose_mark, choose_night };
enum { choose_size = 100, choose_face = 200, choose_language = 300 };

constexpr const char *faces[] = {"DejaVuSerif", "DejaVuSans"};
constexpr const char *languages[] = {"en", "de"};

const char *folder_of_articles = "";

class Magazine {
  public:
    Magazine();
    int handle(int type, int par1, int par2);
    void choose(int index);

  private:
    // the whole
    void load_articles();
    void load_look();
    void show(Screen screen);
    void draw();
    int key_pressed(int key);
    int gesture_made(int gesture);
    void tapped(int x, int y);
    void open_menu();

    // the shelf: covers, or bookmarks in a list
    irect menu_button() const;
    irect tab(int i) const;
    int count() const;
    int columns() const;
    int items_per_page() const;
    irect shelf() const;
    irect item(int i) const;
    void load_pager();
    void draw_shelf();
    void draw_caption();
    void draw_empty();
    void draw_item(int i);
    void draw_cover(Article &article, const irect &r);
    void draw_bookmark(int i, const irect &r);
    void select(int i);
    void turn_shelf(int by);
    void open_selected();
    int shelf_key(int key);
    void shelf_tapped(int x, int y);

    // an article
    struct Head {
        irect title, author, picture;
        int h;
    };
    irect text_area() const;
    Head head() const;
    void open(int article, int byte);
    void find_pages();
    void draw_page();
    void draw_head();
    void draw_foot();
    void remember_place();
    int end_of_page() const;
    std::set<std::pair<std::string, int>>::iterator mark_on_page() const;
    void turn_to(int page);
    void toggle_mark();
    int page_key(int key);
    void page_tapped(int x, int y);

    Article &article() { return articles_[static_cast<std::size_t>(article_)]; }
    const Article &article() const { return articles_[static_cast<std::size_t>(article_)]; }

    const fs::path folder_{folder_of_articles};
    Config settings_{"./system/config/magazine.cfg"}, marks_file_;
    Look look_{faces[0], 5};
    std::string language_;
    std::vector<Article> articles_;
    std::set<std::pair<std::string, int>> marks_; // article and byte

    Screen screen_ = Screen::covers;
    kv_gestures hand_{};
    ipager pager_{};
    Font pager_font_;
    Bitmap pager_icons_[2];
    int selected_ = 0;
    int article_ = 0, page_ = 0;
    std::vector<int> starts_; // of its pages
    std::vector<irect> night_pictures_;
};

Magazine *magazine; // for the answer of the menu

Magazine::Magazine() {
    magazine = this;
    char path[1024];
    AppDataPath("magazine", "bookmarks.cfg", path, sizeof path);
    marks_file_ = Config(path);
    AddLanguageFolder((folder_ / "language").c_str());
    const std::string language = settings_.read("language", "");
    if (!language.empty()) LoadLanguage(language.c_str());
    SetNightMode(settings_.read("night", 0));
}

// The articles of the language that is loaded, or of English.
void Magazine::load_articles() {
    if (!articles_.empty() && language_ == GetLanguage()) return;
    language_ = GetLanguage();
    articles_ = read_articles(folder_ / language_);
    if (articles_.empty()) articles_ = read_articles(folder_ / "en");
    if (articles_.empty()) screen_ = Screen::covers;
    article_ = std::min(article_, std::max(int(articles_.size()) - 1, 0));
    for (Article &a : articles_) {
        const int size = int(a.text.size());
        a.top = std::clamp(settings_.read((a.name + ".top").c_str(), 0), 0, size);
        a.read = std::clamp(settings_.read((a.name + ".read").c_str(), 0), 0, size);
        for (const auto &[name, value] : marks_file_.values())
            if (name.compare(0, a.name.size() + 1, a.name + "@") == 0)
                marks_.emplace(a.name, std::clamp(std::atoi(value.c_str()), 0, size));
    }
}

void Magazine::load_look() {
    const int size = std::clamp(settings_.read("size", 5), 3, 12);
    look_ = Look(settings_.read("face", faces[0]), size);
    const icaption_properties caption = LoadApplicationCaptionProperties();
    SetApplicationCaptionHeight(caption.height);
    const Font font(caption.font); // it is ours
    load_pager();
}

void Magazine::show(Screen screen) {
    screen_ = screen;
    selected_ = 0;
    Repaint();
}

void Magazine::draw() {
    ClearScreen();
    night_pictures_.clear();
    if (screen_ == Screen::page)
        draw_page();
    else
        draw_shelf();
    SetNightPictures(night_pictures_.data(), int(night_pictures_.size()));
}

int Magazine::key_pressed(int key) {
    if (key == KEY_MENU) {
        open_menu();
        return 1;
    }
    return screen_ == Screen::page ? page_key(key) : shelf_key(key);
}

void Magazine::tapped(int x, int y) {
    if (screen_ == Screen::page)
        page_tapped(x, y);
    else
        shelf_tapped(x, y);
}

// Fingers do what keys do.
int Magazine::gesture_made(int gesture) {
    switch (gesture) {
    case GESTURE_TAP:
    case GESTURE_DOUBLE_TAP: // two taps are two turns
        tapped(hand_.x, hand_.y);
        return 1;
    case GESTURE_SWIPE_LEFT:
        return key_pressed(KEY_NEXT);
    case GESTURE_SWIPE_RIGHT:
        return key_pressed(KEY_PREV);
    case GESTURE_LONG_PRESS:
        return key_pressed(KEY_MENU);
    }
    return 0;
}

int Magazine::handle(int type, int par1, int par2) {
    const bool has_pager = screen_ != Screen::page && pager_.total_pages > 1;
    if (has_pager && PagerHandler(&pager_, type, par1, par2)) return 1;
    if (gesture_made(RecogniseGesture(&hand_, type, par1, par2))) return 1;
    switch (type) {
    case EVT_SHOW:
        load_look();
        load_articles();
        if (screen_ == Screen::page) find_pages();
        draw();
        FullUpdate();
        return 1;
    case EVT_ORIENTATION:
        SetOrientation(par1);
        Repaint();
        return 1;
    case EVT_KEYPRESS:
        return key_pressed(par1);
    }
    return 0;
}

// --- the menu

void Magazine::open_menu() {
    static imenu sizes[] = {{ITEM_BULLET, choose_size + 4, "@MagSmall", nullptr},
                            {ITEM_BULLET, choose_size + 5, "@MagMedium", nullptr},
                            {ITEM_BULLET, choose_size + 6, "@MagLarge", nullptr},
                            {ITEM_BULLET, choose_size + 8, "@MagHuge", nullptr},
                            {}};
    static imenu typefaces[] = {{ITEM_BULLET, choose_face, "@MagSerif", nullptr},
                                {ITEM_BULLET, choose_face + 1, "@MagSans", nullptr},
                                {}};
    static imenu tongues[] = {{ITEM_BULLET, choose_language, "English", nullptr},
                              {ITEM_BULLET, choose_language + 1, "Deutsch", nullptr},
                              {}};
    static imenu items[] = {{ITEM_HEADER, 0, "@Magazine", nullptr},
                            {ITEM_ACTIVE, choose_covers, "@MagArticles", nullptr},
                            {ITEM_ACTIVE, choose_bookmarks, "@MagBookmarks", nullptr},
                            {ITEM_ACTIVE, choose_mark, "@MagMark", nullptr},
                            {ITEM_SEPARATOR, 0, nullptr, nullptr},
                            {ITEM_SUBMENU, 0, "@MagSize", sizes},
                            {ITEM_SUBMENU, 0, "@MagFace", typefaces},
                            {ITEM_SUBMENU, 0, "@MagLanguage", tongues},
                            {ITEM_ACTIVE, choose_night, "@MagNight", nullptr},
                            {}};
    const bool is_page = screen_ == Screen::page;
    items[3].type = is_page ? ITEM_ACTIVE : ITEM_ACTIVE | ITEM_HIDDEN;
    items[3].text = is_page && mark_on_page() != marks_.end() ? "@MagUnmark" : "@MagMark";
    items[8].text = GetNightMode() ? "@MagDay" : "@MagNight";
    const auto mark = [](imenu *choices, int index) { // a bullet is at the present choice
        for (; choices->type != 0; choices++)
            choices->type = choices->index == index ? ITEM_BULLET : ITEM_ACTIVE;
    };
    mark(sizes, choose_size + settings_.read("size", 5));
    mark(typefaces, choose_face + (settings_.read("face", faces[0]) == faces[1]));
    mark(tongues, choose_language + (language_ == languages[1]));
    OpenMenu(items, 1, IsRTL() ? 0 : ScreenWidth(), 0, [](int index) { magazine->choose(index); });
}

void Magazine::choose(int index) {
    if (index >= choose_language) {
        settings_.write("language", languages[index - choose_language]);
        LoadLanguage(languages[index - choose_language]);
    } else if (index >= choose_face) {
        settings_.write("face", faces[index - choose_face]);
    } else if (index >= choose_size) {
        settings_.write("size", index - choose_size);
    } else if (index == choose_night) {
        settings_.write("night", GetNightMode() ? 0 : 1);
        SetNightMode(settings_.read("night", 0));
    } else if (index == choose_mark) {
        return toggle_mark();
    } else if (index == choose_covers || index == choose_bookmarks) {
        screen_ = index == choose_covers ? Screen::covers : Screen::bookmarks;
        selected_ = 0;
    }
    if (index > 0) Repaint();
}

// --- the shelf

irect Magazine::menu_button() const {
    const int h = GetCaptionHeight();
    return mirrored(iRect(ScreenWidth() - h - 3 * look_.u, 0, h + 3 * look_.u, h, 0));
}

irect Magazine::tab(int i) const {
    const kelvane::FontGuard current(look_.label);
    const int w = StringWidth(GetLangText("@MagArticles")), gap = 8 * look_.u;
    const int x = 6 * look_.u + i * (w + gap);
    const int own = i == 0 ? w : StringWidth(GetLangText("@MagBookmarks"));
    return mirrored(iRect(x, GetCaptionHeight(), own, look_.em * 12 / 5, 0));
}

int Magazine::count() const {
    return int(screen_ == Screen::covers ? articles_.size() : marks_.size());
}

irect Magazine::shelf() const {
    const int u = look_.u, top = GetCaptionHeight() + look_.em * 12 / 5 + 5 * u;
    return iRect(6 * u, top, ScreenWidth() - 12 * u,
                 ScreenHeight() - top - std::max(pager_.height, 2 * u), 0);
}

int Magazine::columns() const {
    if (screen_ == Screen::bookmarks) return 1;
    return std::max((ScreenWidth() - 6 * look_.u) * 5 / (48 * look_.em), 1);
}

// Item i of a page: a cover with what is written below it, or a line of the list.
irect Magazine::item(int i) const {
    const irect all = shelf();
    const int n = columns(), gap = 6 * look_.u, w = (all.w + gap) / n - gap;
    const int h = n == 1 && screen_ == Screen::bookmarks
                      ? 22 * look_.em / 5
                      : std::min(w, 44 * look_.u) * 4 / 3 + 3 * look_.em;
    const int pitch = h + (screen_ == Screen::bookmarks ? 2 : 5) * look_.u;
    return mirrored(iRect(all.x + i % n * (w + gap), all.y + i / n * pitch, w, h, 0));
}

int Magazine::items_per_page() const {
    const irect all = shelf();
    const int n = columns(), pitch = item(n).y - item(0).y;
    return n * std::max((all.h + pitch - item(0).h) / pitch, 1);
}

// Themes have other sizes for landscape.
void Magazine::load_pager() {
    pager_ = LoadPagerProperties();
    pager_font_.reset(pager_.page_font); // they are ours
    pager_icons_[0].reset(pager_.icon_left);
    pager_icons_[1].reset(pager_.icon_right);
}

void Magazine::draw_caption() {
    DrawApplicationCaption(GetLangText("@Magazine"), nullptr);
    const irect r = menu_button();
    const int u = look_.u, x = r.x + (r.w - 6 * u) / 2, y = r.y + r.h / 2 - 2 * u;
    const int color = LoadApplicationCaptionProperties().background_color == BLACK ? WHITE : BLACK;
    for (int i = 0; i < 3; i++) FillArea(x, y + i * 2 * u, 6 * u, std::max(u * 3 / 4, 2), color);
}

void Magazine::draw_shelf() {
    draw_caption();
    const char *names[] = {"@MagArticles", "@MagBookmarks"};
    for (int i = 0; i < 2; i++) {
        const irect r = tab(i);
        const bool is_open = i == (screen_ == Screen::covers ? 0 : 1);
        write(r, is_open ? look_.label : look_.plain_label, GetLangText(names[i]),
              TEXT_RTL_MIRROR | VALIGN_MIDDLE);
        if (is_open) FillArea(r.x, r.y + r.h - look_.u, r.w, look_.u, BLACK);
    }
    if (count() == 0) return draw_empty();
    const int n = items_per_page();
    selected_ = std::clamp(selected_, 0, count() - 1);
    pager_.current_page = selected_ / n + 1;
    pager_.total_pages = (count() + n - 1) / n;
    const int first = selected_ / n * n;
    for (int i = first; i < std::min(first + n, count()); i++) draw_item(i);
    if (pager_.total_pages > 1) DrawPager(&pager_);
}

void Magazine::draw_empty() {
    pager_.total_pages = 0;
    const bool is_bookmarks = screen_ == Screen::bookmarks;
    const int y = ScreenHeight() * 2 / 5, em = look_.em, margin = 9 * look_.u;
    const irect r = iRect(margin, y, ScreenWidth() - 2 * margin, 10 * em, 0);
    write(rows(r, 0, 2 * em), look_.label, GetLangText(is_bookmarks ? "@MagNoMarks" : "@MagNone"),
          ALIGN_CENTER | VALIGN_MIDDLE);
    write(rows(r, 2 * em, 6 * em), look_.small,
          GetLangText(is_bookmarks ? "@MagNoMarksHint" : "@MagNoneHint"), ALIGN_CENTER);
}

void Magazine::draw_item(int i) {
    const irect r = item(i % items_per_page()), around = inset(r, -2 * look_.u);
    FillAreaRect(&around, WHITE);
    if (screen_ == Screen::bookmarks) {
        draw_bookmark(i, r);
    } else {
        Article &article = articles_[std::size_t(i)];
        const int start = TEXT_RTL_MIRROR | TEXT_DOTS, w = std::min(r.w, 44 * look_.u);
        const int h = w * 4 / 3, em = look_.em, u = look_.u;
        const irect cover = mirrored(iRect(mirrored(r).x, r.y, w, h, 0));
        draw_cover(article, cover);
        if (article.read > 0) {
            const int part =
                int(1LL * cover.w * article.read / std::max<long long>(article.text.size(), 1));
            FillArea(cover.x, cover.y + h + u * 3 / 2, cover.w, look_.line, BLACK);
            FillArea(IsRTL() ? cover.x + cover.w - part : cover.x, cover.y + h + u, part, u * 5 / 4,
                     BLACK);
        }
        write(rows(r, r.h - em * 5 / 2, r.h - em * 5 / 4), look_.small_bold, article.title,
              start | VALIGN_MIDDLE);
        write(rows(r, r.h - em * 5 / 4, r.h), look_.small, article.author, start | VALIGN_MIDDLE);
    }
    if (i == selected_) DrawPickOutEx(&around, "default");
}

// A picture, or the title as on the cover of a book.
void Magazine::draw_cover(Article &article, const irect &r) {
    const int u = look_.u;
    if (article.picture.empty()) {
        const irect page = inset(r, r.w / 12);
        FillArea(page.x, page.y + 3 * u, std::max(r.w / 6, 1), u, BLACK);
        write(rows(page, 6 * u, page.h - 2 * look_.em), look_.title, article.title, TEXT_DOTS);
        write(page, look_.small, article.author, VALIGN_BOTTOM);
    } else {
        if (article.cover.width() != r.w)
            article.cover =
                Bitmap::load((folder_ / article.picture).c_str(), r.w, r.h, PICTURE_COVER);
        article.cover.draw(r.x, r.y);
        night_pictures_.push_back(r);
    }
    DrawBorder(&r, look_.line, 0, 0, BLACK);
}

// A line of the list: a small cover, the title, the words at the bookmark, and how far it is.
void Magazine::draw_bookmark(int i, const irect &r) {
    const auto &[name, byte] = *std::next(marks_.begin(), i);
    const auto found = std::find_if(articles_.begin(), articles_.end(),
                                    [&name = name](const Article &a) { return a.name == name; });
    if (found == articles_.end()) return;
    const int u = look_.u, em = look_.em, w = (r.h - 2 * u) * 3 / 4;
    draw_cover(*found, mirrored(iRect(mirrored(r).x + u, r.y + u, w, r.h - 2 * u, 0)));
    const int left = w + 4 * u, value = 4 * em;
    const auto line = [&](int from, int width, int y) {
        return mirrored(iRect(mirrored(r).x + from, r.y + r.h / 2 + y, width, em * 3 / 2, 0));
    };
    const int start = TEXT_RTL_MIRROR | TEXT_DOTS | VALIGN_MIDDLE;
    write(line(left, r.w - left - u, -em * 3 / 2), look_.label, found->title, start);
    write(line(left, r.w - left - value, 0), look_.small,
          found->text.substr(std::size_t(byte), 200), start);
    write(line(r.w - value - u, value, 0), look_.small,
          text_of("%d %%", int(100LL * byte / std::max<long long>(found->text.size(), 1))),
          TEXT_RTL_MIRROR | ALIGN_RIGHT | VALIGN_MIDDLE);
}

// The selection moves within a page; only the two items are updated.
void Magazine::select(int i) {
    if (i < 0 || i >= count()) return;
    const int n = items_per_page(), before = selected_;
    selected_ = i;
    draw();
    if (before / n != i / n) return PageUpdate(turns_per_flash);
    for (const int one : {before, i}) {
        const irect r = inset(item(one % n), -2 * look_.u);
        PartialUpdate(r.x, r.y, r.w, r.h);
    }
}

void Magazine::turn_shelf(int by) {
    const int n = items_per_page(), first = (selected_ / n + by) * n;
    select(first);
}

void Magazine::open_selected() {
    if (screen_ == Screen::covers && selected_ < count())
        return open(selected_, articles_[std::size_t(selected_)].top);
    if (selected_ >= count()) return show(Screen::covers);
    const auto [name, byte] = *std::next(marks_.begin(), selected_);
    for (std::size_t i = 0; i < articles_.size(); i++)
        if (articles_[i].name == name) open(int(i), byte);
}

int Magazine::shelf_key(int key) {
    const int forward = IsRTL() ? -1 : 1;
    switch (key) {
    case KEY_LEFT:
        select(selected_ - forward);
        return 1;
    case KEY_RIGHT:
        select(selected_ + forward);
        return 1;
    case KEY_UP:
        select(selected_ - columns());
        return 1;
    case KEY_DOWN:
        select(selected_ + columns());
        return 1;
    case KEY_PREV:
        turn_shelf(-1);
        return 1;
    case KEY_NEXT:
        turn_shelf(1);
        return 1;
    case KEY_OK:
        open_selected();
        return 1;
    case KEY_BACK:
        CloseApp();
        return 1;
    }
    return 0;
}

void Magazine::shelf_tapped(int x, int y) {
    if (inside(menu_button(), x, y)) return open_menu();
    if (inside(inset(tab(0), -2 * look_.u), x, y)) return show(Screen::covers);
    if (inside(inset(tab(1), -2 * look_.u), x, y)) return show(Screen::bookmarks);
    const int n = items_per_page(), first = selected_ / n * n;
    for (int i = first; i < std::min(first + n, count()); i++)
        if (inside(item(i - first), x, y)) {
            selected_ = i;
            return open_selected();
        }
}

// --- an article

// Lines have at most 65 letters, and are justified when there are enough of them to fill.
irect Magazine::text_area() const {
    const kelvane::FontGuard current(look_.text);
    const int u = look_.u, letters = StringWidth("abcdefghijklmnopqrstuvwxyz");
    const int w = std::min(ScreenWidth() - 18 * u, letters * 65 / 26);
    const int flags = TEXT_MARKS | TEXT_NO_WIDOWS | TEXT_NO_EMPTY_TOP | TEXT_WHOLE_WORDS;
    return iRect((ScreenWidth() - w) / 2, 15 * u, w, ScreenHeight() - 33 * u,
                 flags | (w >= letters * 55 / 26 ? ALIGN_JUSTIFY : ALIGN_LEFT));
}

// What stands above the text on the first page.
Magazine::Head Magazine::head() const {
    const irect all = text_area();
    const int u = look_.u;
    const kelvane::FontGuard current(look_.headline);
    Head head{};
    const int title_h = TextRectHeight(all.w, article().title.c_str(), ALIGN_LEFT);
    head.title = rows(all, 0, title_h);
    head.author = rows(all, title_h + u, title_h + u + look_.em * 3 / 2);
    head.h = head.author.y + head.author.h + 4 * u - all.y;
    const int picture_h = std::min(all.w * 9 / 16, all.h - head.h - 16 * look_.em);
    if (article().picture.empty() || picture_h < 20 * u) return head;
    head.picture = rows(all, head.h, head.h + picture_h);
    head.h += picture_h + 5 * u;
    return head;
}

void Magazine::open(int index, int byte) {
    article_ = index;
    article().top = byte;
    CleanNextPage();
    show(Screen::page);
}

// Finds where each page begins, and the one with the byte that was at the top.
void Magazine::find_pages() {
    const irect area = text_area();
    const kelvane::FontGuard current(look_.text);
    starts_ = kelvane::paginate(article().text, area.w, area.h - head().h, area.h, area.flags);
    if (starts_.empty()) starts_.push_back(0); // an empty article has an empty page
    const auto behind = std::upper_bound(starts_.begin(), starts_.end(), article().top);
    page_ = std::max(int(behind - starts_.begin()) - 1, 0);
}

int Magazine::end_of_page() const {
    const auto next = std::size_t(page_) + 1;
    return next < starts_.size() ? starts_[next] : int(article().text.size());
}

void Magazine::draw_page() {
    irect area = text_area();
    if (page_ == 0) {
        draw_head();
        area = rows(area, head().h, area.h);
    } else {
        write(iRect(area.x, 4 * look_.u, area.w, 8 * look_.u, 0), look_.small, article().title,
              VALIGN_MIDDLE | TEXT_DOTS);
    }
    look_.text.use(BLACK);
    DrawTextPage(area.x, area.y, area.w, area.h, article().text.c_str(),
                 starts_[std::size_t(page_)], text_area().flags);
    draw_foot();
    remember_place();
}

// Saved when the settings are closed.
void Magazine::remember_place() {
    article().read = end_of_page();
    settings_.write((article().name + ".top").c_str(), article().top);
    settings_.write((article().name + ".read").c_str(), article().read);
}

void Magazine::draw_head() {
    const Head h = head();
    write(h.title, look_.headline, article().title, ALIGN_LEFT);
    write(h.author, look_.small, article().author, VALIGN_MIDDLE);
    if (h.picture.h == 0) return;
    const irect &r = h.picture;
    Bitmap::load((folder_ / article().picture).c_str(), r.w, r.h, PICTURE_COVER).draw(r.x, r.y);
    night_pictures_.push_back(r);
}

void Magazine::draw_foot() {
    const irect area = text_area();
    const int u = look_.u, line = ScreenHeight() - 21 * u / 2, pages = int(starts_.size());
    const irect foot = iRect(area.x, ScreenHeight() - 9 * u, area.w, 8 * u, 0);
    FillArea(area.x, line, area.w, look_.line, BLACK);
    FillArea(area.x, line - u / 2, area.w * (page_ + 1) / pages, u * 5 / 4, BLACK);
    const int rest = int(article().text.size()) - end_of_page();
    const int minutes = (rest + bytes_per_minute - 1) / bytes_per_minute;
    write(foot, look_.small, text_of(GetLangText("@MagPage"), page_ + 1, pages), VALIGN_MIDDLE);
    if (minutes > 0)
        write(foot, look_.small, text_of(GetLangTextPlural("@MagMinutes", minutes), minutes),
              ALIGN_RIGHT | VALIGN_MIDDLE);
    if (mark_on_page() == marks_.end()) return;
    const int x = area.x + area.w - 6 * u; // a ribbon with a notch
    FillArea(x, 0, 6 * u, 11 * u, BLACK);
    for (int i = 0; i < 6 * u; i++) {
        const int cut = std::min(i, 6 * u - 1 - i);
        FillArea(x + i, 11 * u - cut, 1, cut, WHITE);
    }
}

// The bookmark on this page: pages change with the size of the text, bytes do not.
std::set<std::pair<std::string, int>>::iterator Magazine::mark_on_page() const {
    const auto mark = marks_.lower_bound({article().name, starts_[std::size_t(page_)]});
    const bool is_here = mark != marks_.end() && mark->first == article().name &&
                         mark->second < std::max(end_of_page(), 1);
    return is_here ? mark : marks_.end();
}

void Magazine::toggle_mark() {
    const auto mark = mark_on_page();
    const int byte = mark == marks_.end() ? starts_[std::size_t(page_)] : mark->second;
    const std::string name = article().name + "@" + std::to_string(byte);
    if (mark == marks_.end()) {
        marks_.emplace(article().name, byte);
        marks_file_.write(name.c_str(), byte);
    } else {
        marks_.erase(mark);
        marks_file_.erase(name.c_str());
    }
    draw();
    PartialUpdate(0, 0, ScreenWidth(), 12 * look_.u);
}

// Behind the last page is the shelf.
void Magazine::turn_to(int page) {
    if (page < 0) return;
    if (page >= int(starts_.size())) return show(Screen::covers);
    if (!night_pictures_.empty()) CleanNextPage(); // pictures leave ghosts
    page_ = page;
    article().top = starts_[std::size_t(page_)];
    draw();
    PageUpdate(turns_per_flash);
}

int Magazine::page_key(int key) {
    switch (key) {
    case KEY_PREV:
    case KEY_LEFT:
        turn_to(page_ - 1);
        return 1;
    case KEY_NEXT:
    case KEY_RIGHT:
        turn_to(page_ + 1);
        return 1;
    case KEY_OK:
        toggle_mark();
        return 1;
    case KEY_BACK:
        show(Screen::covers);
        return 1;
    }
    return 0;
}

// The upper right corner has the bookmark, the left third goes back, the right one on.
void Magazine::page_tapped(int x, int y) {
    const int third = ScreenWidth() / 3;
    if (y < 15 * look_.u && x > ScreenWidth() - third) return toggle_mark();
    if (x >= third && x < ScreenWidth() - third) return open_menu();
    turn_to(page_ + (x < third ? -1 : 1));
}

} // namespace

int main(int argc, char **argv) {
    if (argc > 1) folder_of_articles = argv[1];
    return kelvane::run<Magazine>();
}
