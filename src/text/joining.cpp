// SPDX-License-Identifier: MIT
// Joins letters with FriBidi. Two letters join when nothing between them parts them and they are
// equally deep in embedded text. Without marks of embedding the second holds of all neighbours;
// with them it is a matter of the marks before and, of a few, of the letters behind.
#include "text/joining.h"

#include <algorithm>
#include <iterator>

#include "ground/guard.h"
#include "kelvane/text.h"
#include "text/paragraph.h"
#include "text/walker.h"

namespace text {
namespace {

constexpr int most_waiting = 4096;      // characters that wait for what is to come
constexpr size_t most_open_marks = 256; // more than FriBidi's levels

constexpr uint16_t first_embedding = 0x202A, pop_embedding = 0x202C, last_embedding = 0x202E,
                   left_to_right_isolate = 0x2066, right_to_left_isolate = 0x2067,
                   first_strong_isolate = 0x2068, pop_isolate = 0x2069;

bool is_isolate(uint16_t c) {
    return c >= left_to_right_isolate && c <= first_strong_isolate;
}

bool is_bidi_mark(uint16_t c) {
    return (c >= first_embedding && c <= last_embedding) || is_isolate(c) || c == pop_isolate;
}

// Neutral signs among which letters join; how deep they are is said by the next letter.
bool is_joining_sign(uint16_t c) {
    return c == 0x1807 || c == 0x180A || (c >= 0xFFF9 && c <= 0xFFFB);
}

bool is_far_reaching(uint16_t c) {
    return is_bidi_mark(c) || is_joining_sign(c);
}

// Whether a letter before and one after it never join, whatever else there is.
bool parts_letters(uint16_t c) {
    return fribidi_get_joining_type(c) == FRIBIDI_JOINING_TYPE_U;
}

Direction letter_direction(uint16_t c) {
    const FriBidiCharType type = fribidi_get_bidi_type(c);
    if (!FRIBIDI_IS_LETTER(type)) return Direction::none;
    return FRIBIDI_IS_RTL(type) ? Direction::right_to_left : Direction::left_to_right;
}

// That of the paragraph up to `end`, in which there are no isolates.
Direction direction_before(const uint16_t *text, int end) {
    int at = end;
    while (at > 0 && text[at - 1] != newline) --at;
    Direction found = Direction::none;
    for (; at < end && found == Direction::none; ++at) found = letter_direction(text[at]);
    return found;
}

// Replaces isolates that run as their first letter does by those that say how. Those whose letter
// is to come stay. Returns the direction of the first letter outside of isolates.
Direction resolve_isolates(std::vector<uint16_t> &text) {
    Direction outside = Direction::none;
    std::vector<size_t> open;
    for (size_t at = 0; at < text.size(); ++at) {
        const uint16_t c = text[at];
        if (is_isolate(c)) {
            open.push_back(at);
        } else if (c == pop_isolate && !open.empty()) {
            uint16_t &isolate = text[open.back()];
            if (isolate == first_strong_isolate) isolate = left_to_right_isolate;
            open.pop_back();
        } else if (open.empty() && outside == Direction::none) {
            outside = letter_direction(c);
        } else if (!open.empty() && text[open.back()] == first_strong_isolate) {
            const Direction found = letter_direction(c);
            if (found == Direction::left_to_right) text[open.back()] = left_to_right_isolate;
            if (found == Direction::right_to_left) text[open.back()] = right_to_left_isolate;
        }
    }
    return outside;
}

// Replaces the letters by what they are between their neighbours.
void shape(uint16_t *text, int len, Paragraph &paragraph) {
    if (paragraph.highest == 0) return;
    const int all = paragraph.size();
    std::vector<FriBidiArabicProp> joining(paragraph.text.size());
    fribidi_get_joining_types(paragraph.text.data(), all, joining.data());
    fribidi_join_arabic(paragraph.types.data(), all, paragraph.levels.data(), joining.data());
    fribidi_shape_arabic(FRIBIDI_FLAGS_ARABIC, paragraph.levels.data(), all, joining.data(),
                         paragraph.text.data());
    const FriBidiChar *shaped = paragraph.text.data() + (all - len);
    for (int i = 0; i < len; ++i)
        if (!is_isolate(text[i])) text[i] = static_cast<uint16_t>(shaped[i]);
}

void shape_without_marks(uint16_t *text, int len) {
    if (!may_have_right_to_left(text, len)) return;
    Paragraph paragraph(text, len, FRIBIDI_PAR_ON);
    shape(text, len, paragraph);
}

int find_newline(const uint16_t *text, int begin, int len) {
    return static_cast<int>(std::find(text + begin, text + len, newline) - text);
}

} // namespace

// Characters of one paragraph, behind the marks that are open where they begin.
struct Joining::Part {
    uint16_t *text;            // of which these are
    int begin, end, known_end; // known: up to where there is something of the paragraph
    std::vector<uint16_t> units = {};
};

// Makes the units and finds the direction. False when some of it is said by what is to come.
bool Joining::find_levels(Part &part) {
    if (direction_ == Direction::none) direction_ = direction_before(part.text, part.begin);
    part.units = open_marks_;
    part.units.insert(part.units.end(), part.text + part.begin, part.text + part.known_end);
    const Direction found = resolve_isolates(part.units);
    if (direction_ == Direction::none) direction_ = found;
    part.units.resize(open_marks_.size() + static_cast<size_t>(part.end - part.begin));
    const auto is_open = [](uint16_t c) { return c == first_strong_isolate || is_joining_sign(c); };
    return direction_ != Direction::none &&
           std::none_of(part.units.begin(), part.units.end(), is_open);
}

// Where nothing is said, text runs left to right.
void Joining::shape_by_levels(Part &part) {
    if (direction_ == Direction::none) direction_ = Direction::left_to_right;
    std::replace(part.units.begin(), part.units.end(), first_strong_isolate, left_to_right_isolate);
    Paragraph paragraph(part.units.data(), static_cast<int>(part.units.size()),
                        paragraph_type(direction_));
    shape(part.text + part.begin, part.end - part.begin, paragraph);
    pass_marks(part.units);
}

// What is open behind them.
void Joining::pass_marks(const std::vector<uint16_t> &units) {
    std::vector<uint16_t> open;
    for (const uint16_t c : units) {
        if (c == pop_isolate) {
            const auto isolate = std::find_if(open.rbegin(), open.rend(), is_isolate);
            if (isolate != open.rend()) open.erase(std::prev(isolate.base()), open.end());
        } else if (c == pop_embedding) {
            if (!open.empty() && !is_isolate(open.back())) open.pop_back();
        } else if (is_bidi_mark(c) && open.size() < most_open_marks) {
            open.push_back(c);
        }
    }
    open_marks_ = std::move(open);
}

int Joining::join(uint16_t *text, int begin, int len, More more) {
    // Letters that are not joined can be read, too.
    return ground::guarded(len, [&]() -> int {
        const bool may_wait = more == More::yes && len - begin < most_waiting;
        int end = len;
        while (may_wait && end > begin && !parts_letters(text[end - 1])) --end;
        const bool is_plain = direction_ == Direction::none && open_marks_.empty();
        if (is_plain && !may_have_right_to_left(text + begin, end - begin)) return end;
        while (begin < end) {
            const int paragraph_end = find_newline(text, begin, len);
            const bool is_whole = paragraph_end < len || more == More::no;
            const int stop = std::min(end, paragraph_end);
            if (open_marks_.empty() && std::none_of(text + begin, text + stop, is_far_reaching)) {
                shape_without_marks(text + begin, stop - begin);
            } else {
                Part part{text, begin, stop, paragraph_end};
                if (!find_levels(part) && may_wait && !is_whole) return begin;
                shape_by_levels(part);
            }
            begin = stop;
            if (stop == paragraph_end && paragraph_end < len) {
                ++begin;
                direction_ = Direction::none;
                open_marks_.clear();
            }
        }
        return begin;
    });
}

Direction join_letters(uint16_t *text, int len) {
    const Direction direction = direction_of(text, len);
    if (direction != Direction::none) Joining().join(text, 0, len, More::no);
    return direction;
}

} // namespace text

void arabic_shape(unsigned short *text, int len) {
    if (text && len > 0) text::Joining().join(text, 0, len, text::More::no);
}
