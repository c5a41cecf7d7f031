// SPDX-License-Identifier: MIT
// The word on the page, inverted while something tells what it means.
#pragma once

#include "kelvane/canvas.h"
#include "modal/saved_area.h"

namespace dictionary_view {

class Mark {
  public:
    Mark() = default;
    // `where` may be null.
    explicit Mark(const irect *where);
    // Null when the word is on no page.
    const irect *where() const { return where_.w > 0 && where_.h > 0 ? &where_ : nullptr; }
    const irect &area() const { return where_; }

    void show();
    // Inverts it once more on a page that was drawn anew.
    void draw() const;
    // Draws the page back; false when that cannot be.
    bool hide();

  private:
    irect where_{};
    modal::SavedArea under_;
};

} // namespace dictionary_view
