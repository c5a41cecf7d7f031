// SPDX-License-Identifier: MIT
// Editing beside a plain model, and over templates.
#include <gtest/gtest.h>
#include <random>

#include "kelvane/keyboard.h"
#include "keyboard/entry.h"
#include "support/encode.h"

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

std::u16string random_text(std::mt19937 &random, size_t most) {
    constexpr char16_t letters[] = u"ab \u00E9\u0416\u05D0\u4E2D\uFFFD";
    std::u16string text(random() % (most + 1), u' ');
    for (char16_t &c : text) c = letters[random() % (std::size(letters) - 1)];
    return text;
}

TEST(KeyboardEntry, RandomCommandsEndAsInAPlainModel) {
    std::mt19937 random(14);
    for (int commands = 0; commands < 200'000;) {
        const std::u16string text = random_text(random, 12);
        const size_t capacity = random() % 14;
        const bool selects = random() % 2 != 0;
        Entry e = entry(encode(text).c_str(), capacity, KBD_NORMAL,
                        selects ? Selection::all : Selection::none);
        Model m{text.substr(0, capacity), u"", capacity, false};
        m.selected = selects && !m.before.empty();
        for (size_t i = random() % 60; i > 0; --i, ++commands) {
            const char16_t c = random_text(random, 1).empty() ? u'x' : u'\u0416';
            const size_t at = random() % 16;
            switch (random() % 8) {
            case 0:
                e.backspace(), m.backspace();
                break;
            case 1:
                e.move_to(at), m.move_to(std::min(at, m.before.size() + m.behind.size()));
                break;
            case 2:
                e.move_left(), m.move_to(m.before.empty() ? 0 : m.before.size() - 1);
                break;
            case 3:
                e.move_right(),
                    m.move_to(std::min(m.before.size() + 1, m.before.size() + m.behind.size()));
                break;
            case 4:
                if (random() % 8 == 0) e.clear(), m.clear();
                break;
            default:
                e.insert(c), m.insert(c);
            }
            ASSERT_EQ(shown(e), m.shown());
            ASSERT_EQ(e.utf8(), encode((m.before + m.behind).substr(0, capacity)));
        }
    }
}

// Over a template the places that are not typed over never change, and fields stay in range.
TEST(KeyboardEntry, RandomKeysLeaveATemplateWhole) {
    std::mt19937 random(8);
    const std::string form = "22.11.26 09:30:15";
    for (int i = 0; i < 100'000; ++i) {
        static Entry e = entry(form.c_str(), 40, KBD_DATETIME);
        switch (random() % 8) {
        case 0:
            e.backspace();
            break;
        case 1:
            e.move_to(random() % 20);
            break;
        case 2:
            if (random() % 16 == 0) e.clear();
            break;
        default:
            e.insert(static_cast<uint16_t>('.' + random() % 14));
        }
        const std::string text = e.utf8();
        if (text.empty()) continue;
        ASSERT_EQ(text.size(), form.size());
        for (size_t at = 0; at < form.size(); ++at)
            ASSERT_EQ(text[at] >= '0' && text[at] <= '9', form[at] >= '0' && form[at] <= '9');
        const struct {
            size_t at;
            int least, most;
        } fields[] = {{0, 1, 31}, {3, 1, 12}, {9, 0, 23}, {12, 0, 59}, {15, 0, 59}};
        for (const auto &field : fields) {
            ASSERT_GE(std::stoi(text.substr(field.at, 2)), field.least) << text;
            ASSERT_LE(std::stoi(text.substr(field.at, 2)), field.most) << text;
        }
    }
}

} // namespace
