// SPDX-License-Identifier: MIT
// Reads scripts line by line and says what is wrong with them.
#include "hw_linux/script.h"

#include <algorithm>
#include <charconv>
#include <ctime>
#include <iterator>
#include <limits>
#include <set>
#include <utility>

#include "ground/lines.h"
#include "ground/utf8.h"
#include "hw_linux/input.h"
#include "hw_linux/key_table.h"
#include "hw_linux/menu.h"
#include "hw_seam.h"
#include "kelvane/events.h"

namespace hw {
namespace {

constexpr int any = std::numeric_limits<int>::max();
constexpr int default_press_ms = 50;

struct Name {
    std::string_view name;
    int value;
};

constexpr Name pointer_types[] = {
    {"down", EVT_POINTERDOWN}, {"move", EVT_POINTERMOVE}, {"up", EVT_POINTERUP}};

constexpr Name key_types[] = {{"down", EVT_KEYPRESS}, {"up", EVT_KEYRELEASE}};

template <size_t N>
const Name *find_name(const Name (&table)[N], std::string_view name) {
    const auto *found =
        std::find_if(table, table + N, [&](const Name &entry) { return entry.name == name; });
    return found == table + N ? nullptr : found;
}

// Takes the first word off a trimmed text.
std::string_view take_word(std::string_view &text) {
    const auto *end = std::find_if(text.begin(), text.end(), ground::is_blank);
    const std::string_view word = text.substr(0, static_cast<size_t>(end - text.begin()));
    text = ground::trim(text.substr(word.size()));
    return word;
}

// What is wrong, and what would be right.
std::string mistake(std::string_view what, std::string_view word, std::string_view allowed) {
    std::string text(what);
    if (!word.empty()) text.append(": ").append(word);
    return text.append(" (").append(allowed).append(")");
}

std::string range_text(int least, int most) {
    return "a number from " + std::to_string(least) + " to " + std::to_string(most);
}

// The names of the elements of a table, each once.
template <class Table, class NameOf>
std::string listed(const Table &table, NameOf name_of) {
    std::string all;
    std::set<std::string_view> seen;
    for (const auto &entry : table) {
        const std::string_view name = name_of(entry);
        if (name.empty() || !seen.insert(name).second) continue;
        all.append(all.empty() ? "" : ", ").append(name);
    }
    return all;
}

// What may stand where a path of the menu goes wrong.
std::string allowed_items(std::string_view path) {
    const auto below = [&](std::string_view item) {
        return item.size() > path.size() && item.starts_with(path) && item[path.size()] == '/';
    };
    const auto items = menu_items();
    while (std::none_of(items.begin(), items.end(), [&](auto &item) { return below(item.path); })) {
        const size_t parent = path.rfind('/');
        path = path.substr(0, parent == path.npos ? 0 : parent);
    }
    return listed(items, [&](const MenuItem &item) -> std::string_view {
        const std::string_view text = item.path;
        return below(text) ? text.substr(0, text.find('/', path.size() + 1)) : "";
    });
}

// Reads the words of one line; the first thing wrong is kept and everything after it ignored.
class Line {
  public:
    explicit Line(std::string_view text) : rest_(ground::trim(text)) {}

    std::string_view word() { return take_word(rest_); }
    bool at_end() const { return rest_.empty() || rest_.front() == '#'; }
    std::string_view take_rest() { return std::exchange(rest_, {}); }

    int number(int least, int most) {
        const std::string_view text = word();
        int value = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        const bool whole = end == text.data() + text.size() && error != std::errc::invalid_argument;
        if (whole && error == std::errc() && value >= least && value <= most) return value;
        const char *what = whole ? "out of range" : "not a number";
        fail(mistake(text.empty() ? "a number is missing" : what, text, range_text(least, most)));
        return least;
    }

    template <size_t N>
    int name(const Name (&table)[N]) {
        const std::string_view text = word();
        const Name *found = find_name(table, text);
        if (!found)
            fail(
                mistake("unknown word", text, listed(table, [](const Name &n) { return n.name; })));
        return found ? found->value : 0;
    }

    // A key by name, with or without "KEY_", or by code. Answers its bit of the key table.
    int key() {
        const std::string_view text = word();
        const int named = find_name_bit(text.substr(text.starts_with("KEY_") ? 4 : 0));
        if (named >= 0) return named;
        int code = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), code);
        const bool whole = error == std::errc() && end == text.data() + text.size();
        const int bit = whole ? find_code_bit(code) : -1;
        if (bit < 0)
            fail(mistake(text.empty() ? "a key is missing" : "no such key", text,
                         listed(key_table, [](const KeyRow &row) { return row.name; }) +
                             " or a code"));
        return bit;
    }

    void fail(std::string message) {
        if (error_.empty()) error_ = std::move(message);
    }
    const std::string &error() const { return error_; }

  private:
    std::string_view rest_;
    std::string error_;
};

class Parser {
  public:
    Script script;

    void parse(int number, std::string_view text) {
        Line line(text);
        if (line.at_end()) return;
        const size_t before = script.actions.size();
        number_ = number;
        read(line);
        if (!line.at_end()) line.fail("more words than expected: " + std::string(line.word()));
        if (line.error().empty()) return;
        script.actions.resize(before);
        script.errors.push_back({number, line.error()});
    }

  private:
    using Reader = void (Parser::*)(Line &);
    struct Rule {
        std::string_view verb;
        Reader read;
    };
    static const Rule rules[];

    void read(Line &line);

    int number_ = 0; // of the line

    void add(Action action) {
        action.delay_ms = std::exchange(script.final_delay_ms, 0);
        action.line = number_;
        script.actions.push_back(std::move(action));
    }
    void add_delay(int ms) { script.final_delay_ms += ms; }
    void add_key(int type, int bit) { add({.verb = Verb::key, .type = type, .par1 = bit}); }
    void add_pointer(int type, int x, int y) {
        add({.verb = Verb::pointer, .type = type, .par1 = x, .par2 = y});
    }
    void add_command(int command) { add({.verb = Verb::command, .par1 = command}); }
    static int coordinate(Line &line) { return line.number(-any - 1, any); }

    void wait(Line &line) { add_delay(line.number(0, any)); }
    void key(Line &line) {
        const int type = line.name(key_types);
        add_key(type, line.key());
    }
    void press(Line &line) {
        const int bit = line.key();
        add_key(EVT_KEYPRESS, bit);
        add_delay(line.at_end() ? default_press_ms : line.number(0, any));
        add_key(EVT_KEYRELEASE, bit);
    }
    void point(Line &line, int type) {
        const int x = coordinate(line);
        add_pointer(type, x, coordinate(line));
    }
    void down(Line &line) { point(line, EVT_POINTERDOWN); }
    void move(Line &line) { point(line, EVT_POINTERMOVE); }
    void up(Line &line) { point(line, EVT_POINTERUP); }
    void tap(Line &line) {
        const int x = coordinate(line), y = coordinate(line);
        add_pointer(EVT_POINTERDOWN, x, y);
        add_delay(default_press_ms);
        add_pointer(EVT_POINTERUP, x, y);
    }
    void touch(Line &line) {
        Action action{.verb = Verb::raw};
        action.mod = line.number(0, any);
        action.type = line.name(pointer_types);
        action.par1 = coordinate(line);
        action.par2 = coordinate(line);
        add(action);
    }
    void sync(Line &line) {
        add({.verb = Verb::raw, .type = EVT_MTSYNC, .par2 = line.number(0, any)});
    }
    void raw(Line &line) {
        Action action{.verb = Verb::raw};
        for (int *word : {&action.type, &action.mod, &action.par1, &action.par2})
            *word = coordinate(line);
        add(action);
    }
    void menu(Line &line) {
        const std::string_view path = line.take_rest();
        const auto items = menu_items();
        const auto item = std::find_if(items.begin(), items.end(),
                                       [&](const MenuItem &it) { return it.path == path; });
        if (item == items.end())
            return line.fail(mistake("no such menu item", path, allowed_items(path)));
        add_command(item->command);
    }
    void command(Line &line) {
        const int number = line.number(0, any);
        if (!find_menu_item(number))
            line.fail(mistake("no such command", std::to_string(number), "the menu's numbers"));
        add_command(number);
    }
    void orientation(Line &line) { add_command(command_orientation + line.number(0, 3)); }
    void frame(Line &line) {
        Action action{.verb = Verb::frame};
        action.file = line.take_rest();
        if (action.file.empty()) line.fail("a file name is missing");
        add(std::move(action));
    }
    void await(Line &line) {
        Action action{.verb = Verb::await};
        action.file = line.take_rest();
        if (action.file.empty()) line.fail("the name of a task is missing");
        add(std::move(action));
    }
    // A character each.
    void type(Line &line) {
        const std::string_view text = line.take_rest();
        if (text.empty()) line.fail("a text is missing");
        for (const char *at = text.data(), *end = at + text.size(); at < end;)
            add({.verb = Verb::raw, .type = typed_character, .par1 = utf8::next(at, end)});
    }
    // Local time.
    void clock(Line &line) {
        std::string moment(line.word());
        moment.append(" ").append(line.word());
        tm parts{};
        const char *end = strptime(moment.c_str(), "%Y-%m-%d %H:%M", &parts);
        parts.tm_isdst = -1;
        if (!end || *end) line.fail("a date and a time are meant, such as 2025-03-21 09:41");
        add({.verb = Verb::clock, .time_s = std::mktime(&parts)});
    }
    void close(Line &) { add({.verb = Verb::close}); }
    void quit(Line &) { add_command(command_quit); }
};

const Parser::Rule Parser::rules[] = {
    {"wait", &Parser::wait},   {"key", &Parser::key},
    {"press", &Parser::press}, {"down", &Parser::down},
    {"move", &Parser::move},   {"up", &Parser::up},
    {"tap", &Parser::tap},     {"touch", &Parser::touch},
    {"sync", &Parser::sync},   {"raw", &Parser::raw},
    {"menu", &Parser::menu},   {"command", &Parser::command},
    {"frame", &Parser::frame}, {"orientation", &Parser::orientation},
    {"type", &Parser::type},   {"await", &Parser::await},
    {"clock", &Parser::clock}, {"close", &Parser::close},
    {"quit", &Parser::quit},
};

void Parser::read(Line &line) {
    const std::string_view verb = line.word();
    for (const Rule &rule : rules)
        if (rule.verb == verb) return (this->*rule.read)(line);
    line.fail(mistake("unknown verb", verb, listed(rules, [](const Rule &r) { return r.verb; })));
}

} // namespace

Script parse_script(std::string_view text) {
    Parser parser;
    for (int number = 1; !text.empty(); ++number) parser.parse(number, ground::take_line(text));
    return std::move(parser.script);
}

} // namespace hw
