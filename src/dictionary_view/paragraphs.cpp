// SPDX-License-Identifier: MIT
// Reads articles line by line.
#include "dictionary_view/paragraphs.h"

#include <algorithm>
#include <array>
#include <utility>

namespace dictionary_view {
namespace {

constexpr size_t most_digits = 2;
constexpr std::array<std::string_view, 8> example_signs = {
    "\"", "\u201C", "\u201E", "\u00AB", "\u2018", "- ", "\u2013 ", "\u2014 "};
constexpr size_t first_dash = 5;

bool is_blank(char c) {
    return c == ' ';
}

std::string_view trimmed(std::string_view s) {
    while (!s.empty() && is_blank(s.front())) s.remove_prefix(1);
    while (!s.empty() && is_blank(s.back())) s.remove_suffix(1);
    return s;
}

// Codes of the text functions are no part of an article.
std::string without_codes(std::string_view text) {
    std::string clean(text);
    for (char &c : clean)
        if (static_cast<unsigned char>(c) < ' ' && c != '\n') c = ' ';
    return clean;
}

// The text between two signs at the beginning, which is taken away; empty when there is none.
std::string_view take_between(std::string_view &s, char first, char last) {
    if (s.empty() || s.front() != first) return {};
    const size_t end = s.find(last, 1);
    if (end == std::string_view::npos || end == 1) return {};
    const std::string_view found = s.substr(1, end - 1);
    s = trimmed(s.substr(end + 1));
    return found;
}

void add_with_blank(std::string &to, std::string_view text) {
    if (!to.empty()) to += ' ';
    to += text;
}

class Article {
  public:
    explicit Article(std::string_view headword) {
        add({Kind::headword, "", std::string(headword), false});
    }
    void add_first_line(std::string_view line) {
        line = without_headword(line);
        Paragraph grammar{Kind::grammar, "", "", false};
        for (bool found = true; found;) {
            const std::string_view part = take_between(line, '<', '>');
            const std::string_view sound = take_between(line, '/', '/');
            if (!part.empty()) add_with_blank(grammar.mark, trimmed(part));
            if (!sound.empty()) add_with_blank(grammar.text, trimmed(sound));
            found = !part.empty() || !sound.empty();
        }
        if (!grammar.mark.empty() || !grammar.text.empty()) add(std::move(grammar));
        if (!line.empty()) add_line(line);
    }
    void add_line(std::string_view line) {
        const bool is_indented = is_blank(line.front());
        line = trimmed(line);
        if (add_sense(line) || add_example(line)) return;
        const bool goes_on = is_indented && in_sense_;
        if (!goes_on) in_sense_ = false;
        add({goes_on ? Kind::sense : Kind::plain, "", std::string(line), goes_on});
    }
    std::vector<Paragraph> take() { return std::move(paragraphs_); }

  private:
    void add(Paragraph p) { paragraphs_.push_back(std::move(p)); }
    std::string_view without_headword(std::string_view line) const {
        const std::string &word = paragraphs_.front().text;
        const std::string_view rest = trimmed(line);
        if (word.empty() || rest.substr(0, word.size()) != word) return line;
        const std::string_view behind = rest.substr(word.size());
        return behind.empty() || is_blank(behind.front()) ? trimmed(behind) : line;
    }
    bool add_sense(std::string_view line) {
        const size_t digits = line.find_first_not_of("0123456789");
        if (digits == 0 || digits > most_digits || digits + 1 >= line.size()) return false;
        if ((line[digits] != '.' && line[digits] != ')') || !is_blank(line[digits + 1]))
            return false;
        in_sense_ = true;
        add({Kind::sense, std::string(line.substr(0, digits)),
             std::string(trimmed(line.substr(digits + 1))), true});
        return true;
    }
    bool add_example(std::string_view line) {
        const auto found =
            std::find_if(example_signs.begin(), example_signs.end(), [&](std::string_view sign) {
                return line.substr(0, sign.size()) == sign;
            });
        if (found == example_signs.end()) return false;
        const bool is_dash = found - example_signs.begin() >= static_cast<int>(first_dash);
        if (is_dash) line = trimmed(line.substr(found->size()));
        add({Kind::example, "", std::string(line), in_sense_});
        return true;
    }

    std::vector<Paragraph> paragraphs_;
    bool in_sense_ = false;
};

} // namespace

std::vector<Paragraph> read_article(std::string_view headword, std::string_view translation) {
    const std::string text = without_codes(translation);
    Article article(trimmed(without_codes(headword)));
    bool is_first = true;
    for (std::string_view rest = text; !rest.empty();) {
        const size_t end = std::min(rest.find('\n'), rest.size());
        const std::string_view line = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        if (trimmed(line).empty()) continue;
        if (std::exchange(is_first, false))
            article.add_first_line(line);
        else
            article.add_line(line);
    }
    return article.take();
}

std::string summary(const std::vector<Paragraph> &article, Senses senses) {
    const char separator = senses == Senses::on_lines ? '\n' : ' ';
    std::string all;
    const auto is_meaning = [](const Paragraph &p) {
        return p.kind == Kind::sense || p.kind == Kind::plain;
    };
    const bool has_several = std::count_if(article.begin(), article.end(), is_meaning) > 1;
    for (const Paragraph &p : article) {
        if (!is_meaning(p)) continue;
        if (!all.empty()) all += separator;
        if (has_several && !p.mark.empty()) all += p.mark + ". ";
        all += p.text;
    }
    return all;
}

} // namespace dictionary_view
