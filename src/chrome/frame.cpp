// SPDX-License-Identifier: MIT
// Window frames with a title bar and buttons.
#include <array>
#include <optional>
#include <string>

#include "chrome/chrome.h"
#include "ground/guard.h"
#include "ground/letter_case.h"
#include "kelvane/bitmaps.h"
#include "kelvane/frames.h"
#include "kelvane/theme.h"
#include "kelvane/updates.h"
#include "raster/box.h"
#include "text/font_scope.h"
#include "theme/parameters.h"

namespace {

using namespace raster;
using theme::Picture;

struct TopPieces {
    Picture left, middle, right;
};
struct SidePieces {
    Picture left, right, bottom_left, bottom, bottom_right;
};
struct Margins {
    int left, right;
};
struct Button {
    Picture normal, pressed;
};

// Everything a frame is made of.
struct Pictures {
    TopPieces frame_top{Picture("frame_topleft"), Picture("frame_top"), Picture("frame_topright")};
    Picture overlap_left{"frame_topleft_overlap"}, overlap_right{"frame_topright_overlap"};
    TopPieces header_top{Picture("header_topleft"), Picture("header_top"),
                         Picture("header_topright")};
    SidePieces frame_sides{Picture("frame_left"), Picture("frame_right"),
                           Picture("frame_bottomleft"), Picture("frame_bottom"),
                           Picture("frame_bottomright")};
    TopPieces dictionary_top{Picture::or_else("dictionary_topleft", header_top.left),
                             Picture::or_else("dictionary_top", header_top.middle),
                             Picture::or_else("dictionary_topright", header_top.right)};
    SidePieces dictionary_sides{
        Picture::or_else("dictionary_left", frame_sides.left),
        Picture::or_else("dictionary_right", frame_sides.right),
        Picture::or_else("dictionary_bottomleft", frame_sides.bottom_left),
        Picture::or_else("dictionary_bottom", frame_sides.bottom),
        Picture::or_else("dictionary_bottomright", frame_sides.bottom_right)};
    std::array<Button, 3> buttons{Button{Picture("button_close"), Picture("button_close_a")},
                                  Button{Picture("button_moveup"), Picture("button_moveup_a")},
                                  Button{Picture("button_movedown"), Picture("button_movedown_a")}};
    Margins header_margins{GetThemeInt("header.margin.left", 12),
                           GetThemeInt("header.margin.right", 12)};
    Margins dictionary_margins{GetThemeInt("dictionary.margin.left", header_margins.left),
                               GetThemeInt("dictionary.margin.right", header_margins.right)};
};
std::optional<Pictures> pictures;

// Where the buttons of the frame laid out last are; empty for those it has not.
std::array<irect, 16> button_rects;

// The pieces of one kind of frame.
struct Pieces {
    const Picture &top_left, &top, &top_right;
    const SidePieces &sides;
    Margins margins;
};

Pieces pieces_of(int flags) {
    if (!pictures) pictures.emplace();
    const Pictures &p = *pictures;
    const bool dictionary = (flags & FRAME_DICTIONARY) != 0;
    const bool header = (flags & (FRAME_HEADER | FRAME_BUTTONS)) != 0;
    const TopPieces &top = dictionary ? p.dictionary_top : header ? p.header_top : p.frame_top;
    const bool overlap = (flags & FRAME_OVERLAP) != 0 && !dictionary && !header;
    return {overlap ? p.overlap_left : top.left, top.middle, overlap ? p.overlap_right : top.right,
            dictionary ? p.dictionary_sides : p.frame_sides,
            dictionary ? p.dictionary_margins : p.header_margins};
}

Button no_button;

const Button &button_at(size_t index) {
    return index < pictures->buttons.size() ? pictures->buttons[index] : no_button;
}

// Places the buttons from the right margin leftwards, as long as they stay off the left one.
void lay_out_buttons(const Box &frame, int flags, const Pieces &pieces) {
    button_rects = {};
    int64_t x = frame.x + frame.w - pieces.margins.right;
    for (size_t i = 0; i < button_rects.size(); ++i) {
        if ((flags & (1 << i)) == 0) continue;
        const Picture &button = button_at(i).normal;
        x -= button.width();
        if (x < frame.x + pieces.margins.left) return;
        button_rects[i] = to_rect({x, frame.y + (pieces.top.height() - button.height()) / 2,
                                   button.width(), button.height()});
    }
}

int64_t title_end(const Box &frame, const Pieces &pieces) {
    int64_t end = frame.x + frame.w - pieces.margins.right - 5;
    for (const irect &button : button_rects)
        if (button.w > 0) end = std::min<int64_t>(end, button.x);
    return end;
}

void draw_piece(int64_t x, int64_t y, const Picture &piece) {
    DrawBitmap(saturated(x), saturated(y), piece.get());
}

void tile(const Box &box, const Picture &piece) {
    if (piece.width() < 1 || piece.height() < 1) return;
    const int64_t x = near_start(box.x, piece.width()), y = near_start(box.y, piece.height());
    const irect r = to_rect({x, y, box.x + box.w - x, box.y + box.h - y});
    TileBitmap(r.x, r.y, r.w, r.h, piece.get());
}

void draw_pieces(const Box &f, const Pieces &p) {
    const SidePieces &s = p.sides;
    const int64_t right = f.x + f.w, bottom = f.y + f.h;
    fill({f.x + s.left.width(), f.y + p.top.height(), f.w - s.left.width() - s.right.width(),
          f.h - p.top.height() - s.bottom.height()},
         WHITE);
    tile({f.x + p.top_left.width(), f.y, f.w - p.top_left.width() - p.top_right.width(),
          p.top.height()},
         p.top);
    tile({f.x, f.y + p.top_left.height(), s.left.width(),
          f.h - p.top_left.height() - s.bottom_left.height()},
         s.left);
    tile({right - s.right.width(), f.y + p.top_right.height(), s.right.width(),
          f.h - p.top_right.height() - s.bottom_right.height()},
         s.right);
    tile({f.x + s.bottom_left.width(), bottom - s.bottom.height(),
          f.w - s.bottom_left.width() - s.bottom_right.width(), s.bottom.height()},
         s.bottom);
    draw_piece(f.x, f.y, p.top_left);
    draw_piece(right - p.top_right.width(), f.y, p.top_right);
    draw_piece(f.x, bottom - s.bottom_left.height(), s.bottom_left);
    draw_piece(right - s.bottom_right.width(), bottom - s.bottom_right.height(), s.bottom_right);
}

irect client_area(const Box &f, const Pieces &p, int flags) {
    const bool by_sides = (flags & FRAME_INNER_SIDES) != 0;
    const Picture &left = by_sides ? p.sides.left : p.top_left;
    const Picture &right = by_sides ? p.sides.right : p.top_right;
    const Picture &top = by_sides ? p.top : p.top_left;
    const Picture &bottom = by_sides ? p.sides.bottom : p.sides.bottom_left;
    return {saturated(f.x + left.width()), saturated(f.y + top.height()),
            saturated(f.w - left.width() - right.width()),
            saturated(f.h - top.height() - bottom.height()), 0};
}

void draw_title_text(const Box &box, const char *title) {
    const theme::UiParameters &ui = theme::ui_parameters();
    const text::FontScope font(ui.header_font.get());
    const bool low = ui.title_style == theme::TitleStyle::low;
    const bool capitals = low && GetThemeInt("popup.dialog.caption.to.upper", 0) == 1;
    const std::string text = capitals ? ground::upper_case(title) : title;
    const irect r = to_rect({box.x, box.y, box.w, low ? box.h - 10 : box.h});
    DrawTextRect(r.x, r.y, r.w, r.h, text.c_str(),
                 ALIGN_LEFT | (low ? VALIGN_BOTTOM : VALIGN_MIDDLE));
}

void draw_title(const Box &f, const Pieces &p, const ibitmap *icon, const char *title) {
    int64_t x = f.x + p.margins.left + 5;
    const int64_t height = p.top.height();
    if (icon) {
        DrawBitmap(saturated(x), saturated(f.y + (height - icon->height) / 2), icon);
        x += icon->width + 10;
    }
    if (title) draw_title_text({x, f.y, title_end(f, p) - x, height}, title);
}

bool contains(const irect &r, int x, int y) {
    return x >= r.x && x - int64_t{r.x} < r.w && y >= r.y && y - int64_t{r.y} < r.h;
}

// Draws the buttons as they look with the pointer at a place. Returns the bit of the one hit.
int draw_buttons(int px, int py) {
    int hit = 0;
    for (size_t i = 0; i < button_rects.size(); ++i) {
        const irect &r = button_rects[i];
        const bool pressed = contains(r, px, py);
        if (pressed) hit = 1 << i;
        const Button &button = button_at(i);
        if (r.w > 0)
            DrawBitmap(r.x, r.y,
                       (pressed && button.pressed ? button.pressed : button.normal).get());
    }
    return hit;
}

} // namespace

namespace chrome {

void reset_frames() {
    pictures.reset();
    button_rects = {};
}

} // namespace chrome

void frame_init(int x, int y, int w, int h, int flags) {
    ground::guarded([&] { lay_out_buttons({x, y, w, h}, flags, pieces_of(flags)); });
}

void DrawFrame(int x, int y, int w, int h, const ibitmap *icon, const char *title, int flags,
               irect *clientarea) {
    ground::guarded([&] {
        const Box frame(x, y, w, h);
        const Pieces pieces = pieces_of(flags);
        if (clientarea) *clientarea = client_area(frame, pieces, flags);
        if (frame.empty()) return;
        lay_out_buttons(frame, flags, pieces);
        draw_pieces(frame, pieces);
        draw_title(frame, pieces, icon, title);
        draw_buttons(-1, -1);
    });
}

int CheckFramePointer(int x, int y, int w, int h, int flags, int px, int py) {
    return ground::guarded(0, [&]() -> int {
        const Pieces pieces = pieces_of(flags);
        lay_out_buttons({x, y, w, h}, flags, pieces);
        const int hit = draw_buttons(px, py);
        if ((flags & FRAME_UPDATE) != 0 && (hit != 0 || px < 0 || py < 0))
            PartialUpdate(x, y, w, pieces.top.height());
        return hit;
    });
}
