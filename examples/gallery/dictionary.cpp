// SPDX-License-Identifier: MIT
// A page of a book whose words can be looked up: a long press opens the fast translation; a tap on
// that, or OK on the word that is underlined, opens the dictionary.
#include <cctype>
#include <cstring>
#include <string>
#include <vector>

#include "lettering.h"
#include "page.h"

namespace {

constexpr const char *text =
    "Call me Ishmael. Some years ago \u2014 never mind how long precisely \u2014 having little or "
    "no money in my purse, and nothing particular to interest me on shore, I thought I would sail "
    "about a little and see the watery part of the world. It is a way I have of driving off the "
    "spleen, and regulating the circulation. Whenever I find myself growing grim about the mouth; "
    "whenever it is a damp, drizzly November in my soul; whenever I find myself involuntarily "
    "pausing before coffin warehouses, and bringing up the rear of every funeral I meet; then, I "
    "account it high time to get to sea as soon as I can. There now is your insular city of the "
    "Manhattoes, belted round by wharves as Indian isles by coral reefs; commerce surrounds it "
    "with her surf.";

struct Word {
    std::string text;
    irect place;
};
std::vector<Word> words;
int selected = 0;
irect page; // where the words were laid out

int text_size() {
    return size_of(Type::body) * 6 / 5;
}

void lay_out(const irect &area) {
    const kelvane::Font font("default", text_size());
    font.use(BLACK);
    const int leading = 7 * text_size() / 5, blank = StringWidth(" ");
    page = area;
    words.clear();
    int x = area.x, y = area.y;
    for (const char *at = text; *at;) {
        const size_t length = std::strcspn(at, " ");
        const std::string word(at, length);
        const int w = StringWidth(word.c_str());
        if (x + w > area.x + area.w) {
            x = area.x;
            y += leading;
        }
        words.push_back({word, iRect(x, y, w, leading, 0)});
        x += w + blank;
        at += length;
        if (*at) at++;
    }
}

void draw_word(int index) {
    const Word &word = words[size_t(index)];
    const irect &r = word.place;
    DrawString(r.x, r.y + (r.h - text_size()) / 2, word.text.c_str());
    if (index == selected) FillArea(r.x, r.y + r.h - 2 * hairline(), r.w, 2 * hairline(), BLACK);
}

void draw(const irect &area) {
    lay_out(area);
    const kelvane::Font font("default", text_size());
    font.use(BLACK);
    for (int i = 0; i < int(words.size()); i++) draw_word(i);
}

bool is_sign(char c) {
    return std::ispunct(static_cast<unsigned char>(c)) != 0;
}

// Until the user chooses another one.
void open_dictionary() {
    static bool is_opened = OpenDictionary("English-German") == 1;
    static_cast<void>(is_opened);
}

// What follows the word does not belong to it, nor to its place.
void look_up(int index, void (*open)(const char *, const irect *)) {
    open_dictionary();
    Word word = words[size_t(index)];
    while (!word.text.empty() && is_sign(word.text.back())) word.text.pop_back();
    const kelvane::Font font("default", text_size());
    font.use(BLACK);
    word.place.w = StringWidth(word.text.c_str());
    open(word.text.c_str(), &word.place);
}

void select(int index) {
    selected = (index + int(words.size())) % int(words.size());
    FillAreaRect(&page, WHITE);
    draw(page);
    PartialUpdateBW(page.x, page.y, page.w, page.h);
}

int pressed_long(int x, int y) {
    for (int i = 0; i < int(words.size()); i++) {
        if (!inside(words[size_t(i)].place, x, y)) continue;
        select(i);
        look_up(i, OpenFastTranslation);
        return 1;
    }
    return 0;
}

int handle(int type, int par1, int par2, const irect &) {
    if (type == EVT_POINTERLONG) return pressed_long(par1, par2);
    if (type != EVT_KEYPRESS) return 0;
    switch (par1) {
    case KEY_UP:
        select(selected - 1);
        return 1;
    case KEY_DOWN:
        select(selected + 1);
        return 1;
    case KEY_OK:
        look_up(selected, OpenDictionaryView);
        return 1;
    default:
        return 0;
    }
}

} // namespace

const Page dictionary_page = {"Words", "What a word means: a long press, or UP, DOWN and OK", draw,
                              handle, nullptr};
