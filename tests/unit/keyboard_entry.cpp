// SPDX-License-Identifier: MIT
// Editing beside a plain model, and over templates.
#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "kelvane/keyboard.h"
#include "keyboard/entry.h"
#include "support/encode.h"
#include "support/repeats.h"

using namespace keyboard;

namespace {

Entry entry(const char *text, size_t capacity, int kind = KBD_NORMAL,
            Selection selection = Selection::all) {
    return {text, capacity, selection, kind_of(kind)};
}

std::string shown(const Entry &e) {
    const std::string text = e.utf8(0, e.text().size());
    return e.all_selected() ? "[" + text + "]"
                            : e.utf8(0, e.cursor()) + "|" + e.utf8(e.cursor(), e.text().size());
}

// Keys as characters: "<" backspace, "^" clear, "{" "}" the cursor left and right.
std::string after(Entry e, const char *keys) {
    for (; *keys; ++keys) {
        switch (*keys) {
        case '<':
            e.backspace();
            break;
        case '^':
            e.clear();
            break;
        case '{':
            e.move_left();
            break;
        case '}':
            e.move_right();
            break;
        default:
            e.insert(static_cast<uint16_t>(*keys));
        }
    }
    return shown(e);
}

TEST(KeyboardEntry, TheFirstKeyReplacesWhatIsSelected) {
    EXPECT_EQ(after(entry("abc", 9), ""), "[abc]");
    EXPECT_EQ(after(entry("abc", 9), "x"), "x|");
    EXPECT_EQ(after(entry("abc", 9), "<"), "|");
    EXPECT_EQ(after(entry("abc", 9), "{x"), "abx|c") << "the cursor drops the selection";
    EXPECT_EQ(after(entry("abc", 9), "^"), "|");
    EXPECT_EQ(after(entry("abc", 9, 0, Selection::none), "x{{<y"), "ay|cx");
    EXPECT_EQ(after(entry("", 9), "<<{x"), "x|");
}

TEST(KeyboardEntry, OneCharacterMoreThanIsWrittenBack) {
    Entry e = entry("\u0416abcdef", 3, 0, Selection::none);
    EXPECT_EQ(shown(e), "\u0416ab|");
    EXPECT_TRUE(e.insert('x'));
    EXPECT_FALSE(e.insert('y'));
    EXPECT_EQ(shown(e), "\u0416abx|");
    EXPECT_EQ(e.utf8(), "\u0416ab");
    EXPECT_EQ(after(entry("abc", 0), "xy"), "x|");
    EXPECT_EQ(entry("abc", 0).utf8(), "");
}

TEST(KeyboardEntry, TemplatesAreTypedOver) {
    const struct {
        const char *text;
        int kind;
        const char *keys, *expected;
    } cases[] = {{"01.02.26", KBD_DATE, "", "|01.02.26"},
                 {"01.02.26", KBD_DATE, "9912", "99.12.|26"},
                 {"01.02.26", KBD_DATE, "x.9-", "9|1.02.26"},
                 {"01.02.26", KBD_DATE, "998877665", "99.88.77|"},
                 {"01.02.26", KBD_DATE, "99<", "9|1.02.26"},
                 {"01.02.26", KBD_DATE, "998<<<<", "|01.02.26"},
                 {"01.02.26", KBD_DATE, "^", "|"},
                 {"01.02.26", KBD_DATE, "^9", "9|1.02.26"},
                 {"01.02.26", KBD_DATE, "}}}}}}}}}", "01.02.2|6"},
                 {"01.02.26", KBD_DATE, "}}}{", "01.|02.26"},
                 {"01.02.26", KBD_DATE, "998877}", "99.88.77|"},
                 {"at 7:05", KBD_TIME, "8", "at 8:|05"},
                 {"", KBD_TIME, "12<", "|"},
                 {"none", KBD_TIME, "12<{}", "none|"},
                 {"22.11.26 09:30:15", KBD_DATETIME, "45", "31.|11.26 09:30:15"},
                 {"22.11.26 09:30:15", KBD_DATETIME, "00", "01.|11.26 09:30:15"},
                 {"22.11.26 09:30:15", KBD_DATETIME, "311399296178", "31.12.99 23:51:58|"},
                 {"22.11", KBD_DATETIME, "9999", "31.12|"},
                 {"2x.11", KBD_DATETIME, "9", "9x.|11"},
                 {"09:30", KBD_HOURS, "29", "23:|30"},
                 {"09:30", KBD_HOURS, "0599", "05:99|"},
                 {"7", KBD_HOURS, "9", "9|"}};
    for (const auto &c : cases)
        EXPECT_EQ(after(entry(c.text, 20, c.kind), c.keys), c.expected)
            << c.text << " " << c.kind << " " << c.keys;
}

TEST(KeyboardEntry, ATemplateThatComesBackIsAChange) {
    Entry e = entry("01.02.26", 9, KBD_DATE);
    e.clear();
    EXPECT_TRUE(e.insert('x'));
    EXPECT_EQ(shown(e), "|01.02.26");
    EXPECT_FALSE(e.insert('x'));
    e.clear();
    EXPECT_TRUE(e.backspace());
    EXPECT_EQ(shown(e), "|01.02.26");
    EXPECT_FALSE(e.backspace());
}

TEST(KeyboardEntry, AnEntryIsNewOnceNothingInitialIsLeft) {
    Entry e = entry("old", 9, KBD_PASSWORD, Selection::none);
    e.insert('x');
    EXPECT_FALSE(e.is_new());
    for (int i = 0; i < 4; ++i) e.backspace();
    EXPECT_FALSE(e.is_new());
    e.insert('x');
    EXPECT_TRUE(e.is_new());
    EXPECT_TRUE(entry("", 9).is_new());
    Entry replaced = entry("old", 9);
    replaced.insert('x');
    EXPECT_TRUE(replaced.is_new());
}

// The same in the plainest way: a string with a bar where the cursor is.
struct Model {
    std::u16string before, behind;
    size_t capacity;
    bool selected;
    void insert(char16_t c) {
        empty();
        if (before.size() + behind.size() <= capacity) before += c;
    }
    void backspace() {
        if (empty() || before.empty()) return;
        before.pop_back();
    }
    bool empty() {
        if (!selected) return false;
        clear();
        return true;
    }
    void clear() {
        before.clear();
        behind.clear();
        selected = false;
    }
    void move_left() { move_to(before.empty() ? 0 : before.size() - 1); }
    void move_right() { move_to(before.size() + 1); }
    void move_to(size_t at) {
        const std::u16string all = before + behind;
        before = all.substr(0, at);
        behind = at < all.size() ? all.substr(at) : u"";
        selected = false;
    }
    std::string shown() const {
        return selected ? "[" + encode(before) + "]" : encode(before) + "|" + encode(behind);
    }
};

// Over a template: its places that are typed over, in turn, and how many of them lie behind.
struct TemplateModel {
    std::u16string form, all;
    std::vector<size_t> places;
    const Kind &kind;
    size_t next = 0;

    TemplateModel(const std::u16string &text, const Kind &of) : form(text), all(text), kind(of) {
        for (size_t i = 0; i < form.size(); ++i)
            if (is_digit(form[i])) places.push_back(i);
    }
    static bool is_digit(char16_t c) { return c >= u'0' && c <= u'9'; }
    void start() {
        if (all.empty()) next = 0, all = form;
    }
    void insert(char16_t c) {
        start();
        if (!is_digit(c) || next == places.size()) return;
        put(c, next++);
    }
    void backspace() {
        start();
        if (next > 0) --next, put(form[places[next]], next);
    }
    void put(char16_t c, size_t place) {
        all[places[place]] = c;
        for (const Field &field : kind.fields) {
            const std::string value = encode(all.substr(std::min(field.at, all.size()), 2));
            if (value.size() != 2 || !is_digit(static_cast<char16_t>(value[0])) ||
                !is_digit(static_cast<char16_t>(value[1])))
                continue;
            const int kept = std::min(std::max(std::stoi(value), field.least), field.most);
            all.replace(field.at, 2, {char16_t(u'0' + kept / 10), char16_t(u'0' + kept % 10)});
        }
    }
    void clear() { all.clear(); }
    void move_to(size_t at) {
        if (all.empty() || places.empty()) return;
        for (next = 0; next + 1 < places.size() && places[next] < at;) ++next;
    }
    void move_left() {
        if (!all.empty() && next > 0) --next;
    }
    void move_right() {
        if (!all.empty() && next + 1 < places.size()) ++next;
    }
    std::string shown() const {
        const size_t at = all.empty() ? 0 : next < places.size() ? places[next] : all.size();
        return encode(all.substr(0, at)) + "|" + encode(all.substr(at));
    }
};

std::u16string random_text(std::mt19937 &random, size_t most) {
    constexpr char16_t letters[] = u"ab \u00E9\u0416\u05D0\u4E2D\uFFFD";
    std::u16string text(random() % (most + 1), u' ');
    for (char16_t &c : text) c = letters[random() % (std::size(letters) - 1)];
    return text;
}

int random_commands() {
    return times(repeats(100'000, 30'000), 1'000'000);
}

// One command for both.
template <class Model>
void random_command(std::mt19937 &random, Entry &e, Model &m, char16_t c) {
    const size_t at = random() % 24;
    switch (random() % 8) {
    case 0:
        e.backspace(), m.backspace();
        break;
    case 1:
        e.move_to(at), m.move_to(at);
        break;
    case 2:
        e.move_left(), m.move_left();
        break;
    case 3:
        e.move_right(), m.move_right();
        break;
    case 4:
        if (at == 0) e.clear(), m.clear();
        break;
    default:
        e.insert(c), m.insert(c);
    }
}

TEST(KeyboardEntry, RandomCommandsEndAsInAPlainModel) {
    std::mt19937 random(14);
    for (int commands = 0; commands < random_commands();) {
        const std::u16string text = random_text(random, 12);
        const size_t capacity = random() % 14;
        const bool selects = random() % 2 != 0;
        Entry e = entry(encode(text).c_str(), capacity, KBD_NORMAL,
                        selects ? Selection::all : Selection::none);
        Model m{text.substr(0, capacity), u"", capacity, false};
        m.selected = selects && !m.before.empty();
        for (size_t i = random() % 60; i > 0; --i, ++commands) {
            random_command(random, e, m, random_text(random, 1).empty() ? u'x' : u'\u0416');
            ASSERT_EQ(shown(e), m.shown());
            ASSERT_EQ(e.utf8(), encode((m.before + m.behind).substr(0, capacity)));
        }
    }
}

// Whole templates, cut ones, and any text for one.
std::u16string random_template(std::mt19937 &random) {
    constexpr const char16_t *forms[] = {u"22.11.26 09:30:15", u"09:30", u"\u0416 7:05 \u4E2D",
                                         u"2026-11-22"};
    std::u16string form = forms[random() % std::size(forms)];
    if (random() % 4 == 0) form = random_text(random, 12);
    if (random() % 3 == 0 && !form.empty()) form[random() % form.size()] = u'9';
    return form;
}

TEST(KeyboardEntry, RandomCommandsOverATemplateEndAsInAPlainModel) {
    constexpr int kinds[] = {KBD_DATE, KBD_TIME, KBD_DATETIME, KBD_HOURS};
    std::mt19937 random(8);
    for (int commands = 0; commands < random_commands();) {
        const std::u16string form = random_template(random);
        const size_t capacity = random() % 24;
        const int kind = kinds[random() % std::size(kinds)];
        Entry e = entry(encode(form).c_str(), capacity, kind);
        TemplateModel m(form.substr(0, capacity), kind_of(kind));
        for (size_t i = random() % 60; i > 0; --i, ++commands) {
            random_command(random, e, m, static_cast<char16_t>(u'.' + random() % 14));
            ASSERT_EQ(shown(e), m.shown()) << encode(form) << " " << kind;
            ASSERT_EQ(e.utf8(), encode(m.all));
        }
    }
}

} // namespace
