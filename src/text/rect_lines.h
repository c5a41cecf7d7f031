// SPDX-License-Identifier: MIT
// Breaks a text into the lines of a rectangle where the language allows it.
#pragma once

#include <array>
#include <cstdint>

#include "text/layout.h"
#include "text/walker.h"

namespace text {

// What follows a line that ends before its text does.
inline constexpr std::array<uint16_t, 3> dots = {'.', '.', '.'};

enum class LineEnd { line_feed, text_end, overflow };

struct Line {
    int begin, end;    // of what is drawn
    int next;          // where the next line begins
    int64_t width = 0; // for the alignment
    LineEnd ended_by = LineEnd::text_end;
    bool is_last = false, has_dots = false;
    bool is_heading = false;
    Marks marks = {}, marks_after = {}; // at its beginning, and where the next line begins
};

// A place between two characters, and the width of the line up to it.
struct Cut {
    int at = -1;
    int64_t width = 0;
};

class RectLines {
  public:
    RectLines(int w, int h, Reader &text, int begin, int flags, Marks marks);

    // The next line, when `used` pixels of the height are used.
    Line next_line(int begin, int64_t used);
    // The line that would come next page; for looking ahead only.
    Line line_after(const Line &line) { return next_line(line.next, 0); }
    // The end of what is laid out at once ends none.
    bool ends_paragraph(const Line &line) {
        return is_text_end(line.next) || text_.data()[line.next - 1] == newline;
    }
    // Whether nothing is seen of a line.
    bool is_empty(const Line &line) const;
    // Behind the empty lines from the beginning of one on.
    int skip_empty_lines(int at);
    // Whether there is a character to be laid out.
    bool has(int at) { return at < end_ && text_.has(at); }
    int64_t linespacing() const { return linespacing_; }

  private:
    // Where the search for a line's end is, and the step to the character there once it is known.
    struct Scan {
        Pace pace;
        int at, step = 0;
        int64_t width = 0;
    };
    enum class Stop { end, unknown, overflow };

    Line break_line(int begin, bool is_last);
    LineEnd find_end(int begin, Scan &scan);
    Stop run(Scan &scan);
    Line cut_line(int begin, const Cut &overflow, bool is_last);
    Cut go_back(int begin, const Cut &overflow);
    Cut keep_number(int begin, const Cut &cut);
    Cut cut_at(int begin, int at, const Cut &overflow);
    int last_break(int begin, int at) const;
    bool is_number_broken(int begin, int at);
    int64_t width_of(int begin, int end);
    Pace start_line();
    int careful_step(Pace &pace, uint16_t &c);
    int skip_to_next_line(int at);
    bool is_blank(uint16_t c) const;
    bool is_text_end(int at) { return !text_.has(at) && text_.is_whole(); }
    void trim(Line &line) const;
    void append_dots(Line &line);
    void follow_marks(Line &line);

    Reader &text_;
    const int begin_;
    const int64_t end_; // no character from here on is laid out
    const int flags_;
    const int w_;
    const int64_t h_, linespacing_, dots_width_;
    Marks marks_; // where the next line begins
    Walker walker_;
    std::array<int64_t, 256> widths_; // of the line up to and with each of its last characters
};

} // namespace text
