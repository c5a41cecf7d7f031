// SPDX-License-Identifier: MIT
// Joins the letters of Arabic and its kin, in a text that may come in pieces.
#pragma once

#include <cstdint>
#include <vector>

#include "text/bidi.h"

namespace text {

enum class More { no, yes };

class Joining {
  public:
    // Joins the letters of a text of which `len` characters are there, and those before `begin`
    // joined. Returns up to where they are joined now, as they would be in the whole text: perhaps
    // `begin`, when the next ones join with what is to come. What no real text has is not waited
    // for: words and marks that depend on what comes thousands of characters later.
    int join(uint16_t *text, int begin, int len, More more);

  private:
    struct Part;
    bool find_levels(Part &part);
    void shape_by_levels(Part &part);
    void pass_marks(const std::vector<uint16_t> &units);

    // Of the paragraph that `begin` is in: its direction, if that was asked for, and the marks
    // behind which it is that nothing has closed yet, from the outermost on.
    Direction direction_ = Direction::none;
    std::vector<uint16_t> open_marks_;
};

// Joins the letters of a text in which something runs right to left. To be done once: joined
// letters may join otherwise the next time. Returns the direction of the text.
Direction join_letters(uint16_t *text, int len);

} // namespace text
