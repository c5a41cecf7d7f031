// SPDX-License-Identifier: MIT
// Reads descriptions of pictures: statements, a line each or between semicolons.
//
//     stroke 3 round                  lines of what follows: their width in a glyph, round or
//     square glyph NAME                      a drawing in a square of 32, for icon picture NAME
//     WIDTH HEIGHT GROUND        in pixels, on none, black, white or a colour picture NAME like
//     OTHER mirrored        or flipped
#include "drawing.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>

#include "resources.h"
#include "text.h"

namespace tool {

namespace {

constexpr double longest_side = 512, farthest = 4096;

struct Form {
    std::string_view name;
    Verb verb;
    size_t least, most; // numbers
    std::string_view shape;
};
constexpr size_t many = 200;
constexpr Form forms[] = {
    {"line", Verb::line, 4, many, "line X Y X Y..."},
    {"area", Verb::area, 6, many, "area X Y X Y X Y..."},
    {"ring", Verb::ring, 3, 3, "ring X Y RADIUS"},
    {"arc", Verb::arc, 5, 5, "arc X Y RADIUS FROM TO, in degrees"},
    {"disc", Verb::disc, 3, 3, "disc X Y RADIUS"},
    {"box", Verb::box, 4, 5, "box X Y WIDTH HEIGHT [RADIUS]"},
    {"frame", Verb::frame, 5, 6, "frame X Y WIDTH HEIGHT BORDER [RADIUS]"},
    {"tile", Verb::tile, 0, 1, "tile [RADIUS]"},
    {"icon", Verb::icon, 0, 3, "icon GLYPH [SIZE [X Y]] [inverse]"},
    {"color", Verb::color, 0, 0, "color ink, paper, black, white or 0xDDDDDD"},
    {"stroke", Verb::stroke, 1, 1, "stroke WIDTH"},
    {"weight", Verb::weight, 1, 1, "weight FACTOR"},
};

std::vector<std::string> words_of(std::string_view text) {
    std::vector<std::string> words;
    constexpr std::string_view blanks = " \t";
    for (size_t at; (at = text.find_first_not_of(blanks)) != text.npos;) {
        text.remove_prefix(at);
        const size_t end = std::min(text.find_first_of(blanks), text.size());
        words.emplace_back(text.substr(0, end));
        text.remove_prefix(end);
    }
    return words;
}

std::optional<double> number(const std::string &word) {
    double value = 0;
    const char *end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, value);
    const bool is_right = error == std::errc() && stop == end && std::abs(value) <= farthest;
    return is_right ? std::optional(value) : std::nullopt;
}

std::optional<double> side(const std::string &word) {
    const auto value = number(word);
    return value && *value >= 1 && *value <= longest_side ? value : std::nullopt;
}

bool is_color(const std::string &word) {
    return word == "ink" || word == "paper" || grey_of(word) >= 0;
}

} // namespace

// Follows the statements of one file.
class DrawingReader {
  public:
    DrawingReader(Drawings &drawings, Mistakes &mistakes)
        : drawings_(drawings), mistakes_(mistakes) {}

    void read(const Place &place, std::string_view statement) {
        const std::vector<std::string> words = words_of(statement);
        if (words.empty()) return;
        if (words[0] == "glyph")
            begin_glyph(place, words);
        else if (words[0] == "picture")
            begin_picture(place, words);
        else if (words[0] == "stroke" && words.size() == 3)
            set_stroke(place, words);
        else
            add_step(place, words);
    }

  private:
    void refuse(const Place &place, std::string_view shape) {
        mistakes_.add(place, "is no statement of a drawing; write " + std::string(shape));
    }

    void set_stroke(const Place &place, const std::vector<std::string> &words) {
        const auto width = number(words[1]);
        if (!width || *width <= 0 || (words[2] != "round" && words[2] != "square"))
            return refuse(place, "stroke WIDTH round, or square");
        stroke_ = *width;
        has_round_ends_ = words[2] == "round";
    }

    void begin_glyph(const Place &place, const std::vector<std::string> &words) {
        steps_ = nullptr;
        in_glyph_ = true;
        if (words.size() != 2) return refuse(place, "glyph NAME");
        const auto [glyph, is_new] = drawings_.glyphs_.try_emplace(words[1]);
        if (!is_new) return mistakes_.add(place, "the glyph " + words[1] + " is there already");
        steps_ = &glyph->second;
    }

    void begin_picture(const Place &place, const std::vector<std::string> &words) {
        steps_ = nullptr;
        in_glyph_ = false;
        if (words.size() != 5) return refuse(place, "picture NAME WIDTH HEIGHT GROUND");
        Drawing drawing{};
        drawing.name = words[1];
        drawing.stroke = stroke_;
        drawing.has_round_ends = has_round_ends_;
        drawing.place = place;
        if (words[2] == "like" ? !repeat(drawing, words) : !measure(drawing, words))
            return refuse(place, "picture NAME WIDTH HEIGHT GROUND, of 1 to 512 pixels on none, "
                                 "white or black, or picture NAME like OTHER mirrored, or flipped");
        drawings_.pictures_.push_back(std::move(drawing));
        steps_ = &drawings_.pictures_.back().steps;
    }
    static bool repeat(Drawing &drawing, const std::vector<std::string> &words) {
        drawing.like = words[3];
        drawing.turn = words[4] == "mirrored"  ? Turn::mirrored
                       : words[4] == "flipped" ? Turn::flipped
                                               : Turn::none;
        return drawing.turn != Turn::none;
    }
    static bool measure(Drawing &drawing, const std::vector<std::string> &words) {
        const auto width = side(words[2]), height = side(words[3]);
        drawing.width = width.value_or(0), drawing.height = height.value_or(0);
        drawing.ground = words[4];
        return width && height && (words[4] == "none" || grey_of(words[4]) >= 0);
    }

    void add_step(const Place &place, std::vector<std::string> words) {
        const auto form = std::ranges::find(forms, words[0], &Form::name);
        if (form == std::end(forms))
            return refuse(place,
                          "glyph, picture, line, area, ring, arc, disc, box, frame, tile, icon, "
                          "color, stroke or weight");
        Step step{form->verb, {}, {}, false, place};
        words.erase(words.begin());
        take_words(step, words);
        for (const std::string &word : words)
            if (const auto value = number(word)) step.numbers.push_back(*value);
        if (step.numbers.size() != words.size() || !is_whole(step, *form))
            return refuse(place, form->shape);
        if (steps_) steps_->push_back(std::move(step));
    }
    static void take_words(Step &step, std::vector<std::string> &words) {
        const bool has_word = step.verb == Verb::icon || step.verb == Verb::color;
        if (!has_word || words.empty()) return;
        step.word = words[0];
        words.erase(words.begin());
        if (step.verb != Verb::icon || words.empty() || words.back() != "inverse") return;
        step.is_inverse = true;
        words.pop_back();
    }
    // Glyphs stand in pictures only, so that none can draw itself.
    bool is_whole(const Step &step, const Form &form) const {
        const size_t count = step.numbers.size();
        if (count < form.least || count > form.most) return false;
        switch (step.verb) {
        case Verb::line:
        case Verb::area:
            return count % 2 == 0;
        case Verb::icon:
            return !in_glyph_ && !step.word.empty() && count != 2;
        case Verb::color:
            return is_color(step.word);
        default:
            return true;
        }
    }

    Drawings &drawings_;
    Mistakes &mistakes_;
    std::vector<Step> *steps_ = nullptr; // none behind a wrong beginning
    bool in_glyph_ = false, has_round_ends_ = true;
    double stroke_ = 3;
};

int grey_of(std::string_view color) {
    if (color == "black") return 0;
    if (color == "white") return 255;
    if (!color.starts_with("0x") || color.size() != 8) return -1;
    int value = 0;
    const auto [end, error] = std::from_chars(color.data() + 2, color.data() + 8, value, 16);
    if (error != std::errc() || end != color.data() + 8 || value < 0) return -1;
    return ((value >> 16) * 77 + (value >> 8 & 255) * 151 + (value & 255) * 28) >> 8;
}

void Drawings::read(const std::filesystem::path &file, std::string_view text, Mistakes &mistakes) {
    DrawingReader reader(*this, mistakes);
    for (const Line &line : lines_of(text)) {
        std::string_view rest = line.text;
        for (size_t end = 0; end != rest.npos;) {
            end = rest.find(';');
            reader.read({file, line.number}, rest.substr(0, end));
            if (end != rest.npos) rest.remove_prefix(end + 1);
        }
    }
}

void Drawings::check(Mistakes &mistakes) const {
    for (const Drawing &picture : pictures_) {
        const Drawing *other = picture.like.empty() ? &picture : find_picture(picture.like);
        if (!other || (other != &picture && !other->like.empty()))
            mistakes.add(picture.place, "no picture " + picture.like + " is drawn for " +
                                            picture.name + "; name one that is like no other");
        for (const Step &step : picture.steps)
            if (step.verb == Verb::icon && !glyphs_.contains(step.word))
                mistakes.add(step.place, "there is no glyph " + step.word + "; describe it");
    }
}

const Drawing *Drawings::find_picture(const std::string &name) const {
    const auto found = std::ranges::find(pictures_, name, &Drawing::name);
    return found != pictures_.end() ? &*found : nullptr;
}

} // namespace tool
