// SPDX-License-Identifier: MIT
// Draws and aligns the labels of all pages.
#include "lettering.h"

#include "page.h"

namespace {

int start_of(int x, int width, Align align) {
    switch (align) {
    case Align::centre:
        return x - width / 2;
    case Align::right:
        return x - width;
    default:
        return x;
    }
}

// The default font, current while it lives.
class Selected {
  public:
    explicit Selected(const Ink &ink)
        : before_(GetFont()), font_(OpenFont(ink.bold ? "defaultb" : "default", ink.size, 1)) {
        SetFont(font_, ink.color);
    }
    ~Selected() {
        SetFont(before_, -1);
        CloseFont(font_);
    }
    Selected(const Selected &) = delete;
    Selected &operator=(const Selected &) = delete;
    explicit operator bool() const { return font_ != nullptr; }

  private:
    ifont *before_, *font_;
};

} // namespace

int size_of(Type type) {
    constexpr int quarters[] = {16, 18, 20, 24}; // of a unit
    return (quarters[size_t(type)] * unit() + 2) / 4;
}

// As the default font has it.
int capital_height(int size) {
    return size * 8 / 11;
}

int text_width(const char *text, const Ink &ink) {
    const Selected font(ink);
    return font ? StringWidth(text) : 0;
}

void draw_text(int x, int y, const char *text, const Ink &ink, Align align) {
    const Selected font(ink);
    if (!font) return;
    DrawString(start_of(x, StringWidth(text), align),
               y + capital_height(ink.size) - GetFont()->baseline, text);
}
