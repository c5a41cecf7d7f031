// SPDX-License-Identifier: MIT
// Draws boxes in the theme's window frame.
#include "dialogs/draw.h"

#include <algorithm>
#include <cstdio>

#include "dialogs/bar.h"
#include "dialogs/input.h"
#include "dialogs/look.h"
#include "kelvane/frames.h"
#include "kelvane/theme.h"
#include "kelvane/updates.h"
#include "modal/input.h"
#include "raster/screen_scope.h"
#include "text/font_scope.h"

namespace dialogs {
namespace {

constexpr int hatch_step = 4;
constexpr int foot_margin = 12; // of the hatch in a box without buttons
constexpr int hatch_slant = 8;  // rows in which the hatch gets a pixel narrower
constexpr int body_flags = ALIGN_LEFT | VALIGN_MIDDLE | TEXT_DOTS | TEXT_RTL_MIRROR;
constexpr int label_flags = ALIGN_CENTER | VALIGN_MIDDLE | TEXT_DOTS | TEXT_RTL_MIRROR;

int right_of(const irect &r) {
    return r.x + r.w;
}

int bottom_of(const irect &r) {
    return r.y + r.h;
}

irect between(int left, int top, int right, int bottom) {
    return {left, top, right - left, bottom - top, 0};
}

const irect &place_of(const OpenBox &box, int button) {
    return box.layout.buttons[static_cast<size_t>(button - 1)];
}

// The client area that DrawFrame() tells. A frame without size is not drawn.
irect frame_inside(const irect &r, int flags) {
    irect sizeless;
    DrawFrame(0, 0, 0, 0, nullptr, "", flags, &sizeless);
    return {r.x + sizeless.x, r.y + sizeless.y, r.w + sizeless.w, r.h + sizeless.h, 0};
}

// What the frame leaves to the buttons: all but its sides. In its lower corners it curves.
struct ButtonArea {
    irect inside;
    int corner; // radius of the curve
};

// How far the lower corners of the frame reach over its sides.
int corner_radius(const irect &r, const irect &inside) {
    if (GetThemeInt("dialog.corner.use_raunding", 1) == 0) return 0;
    return std::max(bottom_of(inside) - bottom_of(frame_inside(r, 0)), 0);
}

// A row below the box has no frame to spare.
ButtonArea button_area(const Layout &l) {
    const irect inside = frame_inside(l.box, FRAME_INNER_SIDES);
    const int top = l.row.y + std::clamp(GetThemeInt("dialog.button.header.size", 3), 0, l.row.h);
    const bool framed = l.row.y < bottom_of(l.box);
    const int bottom = framed ? std::min(bottom_of(l.row), bottom_of(inside)) : bottom_of(l.row);
    return {between(inside.x, top, right_of(inside), bottom),
            framed ? corner_radius(l.box, inside) : 0};
}

// The part of a button that is its own to fill.
irect face_of(const irect &place, const ButtonArea &area) {
    const irect &in = area.inside;
    return between(std::max(place.x, in.x), in.y, std::min(right_of(place), right_of(in)),
                   bottom_of(in));
}

// Fills a face and follows the curve of the frame in its lower corners.
void fill_face(const irect &face, const ButtonArea &area, int color) {
    const int r = std::min({area.corner, face.w, face.h});
    const bool is_first = face.x == area.inside.x,
               is_last = right_of(face) == right_of(area.inside);
    modal::fill_button(face, is_first ? r : 0, is_last ? r : 0, color);
}

bool is_inverted(const OpenBox &box, int button) {
    return button == box.selected && inverts_selection();
}

// Calls `draw` with each button there is, from left to right.
template <class Draw>
void for_each_button(const OpenBox &box, Draw draw_button) {
    for (int button = 1; button <= most_buttons; ++button)
        if (place_of(box, button).w > 0) draw_button(button);
}

void draw_separators(const OpenBox &box, const ButtonArea &area) {
    const int step = std::max(GetThemeInt("dialog.button.separator.style", 2), 1);
    for_each_button(box, [&](int button) {
        const int x = place_of(box, button).x;
        if (x > box.layout.row.x)
            DrawLineEx(x, area.inside.y, x, bottom_of(area.inside) - 1, look().separator_color,
                       step);
    });
}

void draw_row(const OpenBox &box, const ButtonArea &area) {
    const irect &in = area.inside;
    FillArea(in.x, box.layout.row.y, in.w, in.y - box.layout.row.y, look().separator_color);
    for_each_button(box, [&](int button) {
        fill_face(face_of(place_of(box, button), area), area,
                  is_inverted(box, button) ? BLACK : WHITE);
    });
    draw_separators(box, area);
}

// What the hatch leaves free, for the function that is asked about each pixel.
irect hatched;

int border_limits(int x, int y) {
    const int cut = (y - hatched.y) / hatch_slant;
    return x >= right_of(hatched) - cut || y < hatched.y || y >= bottom_of(hatched);
}

void hatch_icon(const OpenBox &box) {
    const irect &column = box.layout.icon;
    if (column.w < 1 || GetThemeInt("dialog.icon.hatch", 1) == 0) return;
    const int margin = box.button_count() == 0 ? foot_margin : 0;
    const int top = frame_inside(box.layout.box, FRAME_INNER_SIDES).y;
    hatched = between(column.x, top, right_of(column), bottom_of(column) - margin);
    DrawDiagonalHatchLimits(column.x, column.y, column.w, column.h, hatch_step, BLACK,
                            border_limits);
}

void draw_body(const OpenBox &box) {
    const Layout &l = box.layout;
    if (box.icon) DrawBitmap(l.icon.x, l.icon.y + (l.icon.h - box.icon->height) / 2, box.icon);
    const text::FontScope font(window_font());
    DrawTextRect(l.text.x, l.text.y, l.text.w, l.text.h, box.text.c_str(), body_flags);
    if (box.kind == Kind::progress) draw_bar(l.bar, box.percent);
}

void draw_labels(const OpenBox &box, const ButtonArea &area) {
    const text::FontScope scope(label_font());
    const int margin = label_font() ? label_font()->size / 3 : 0;
    const int inverse = label_font() ? ~label_font()->color & WHITE : WHITE;
    for_each_button(box, [&](int button) {
        SetFont(label_font(), is_inverted(box, button) ? inverse : -1);
        const irect r = face_of(place_of(box, button), area);
        const std::string &label = *box.labels[static_cast<size_t>(button - 1)];
        DrawTextRect(r.x + margin, r.y, r.w - 2 * margin, r.h, label.c_str(), label_flags);
    });
}

// The lower corners at which the selected button stands.
int marker_corners(const OpenBox &box) {
    if (GetThemeInt("dialog.corner.use_raunding", 1) == 0) return 0;
    const irect &place = place_of(box, box.selected), &row = box.layout.row;
    return (place.x == row.x ? RECT_ROUND_BL : 0) |
           (right_of(place) == right_of(row) ? RECT_ROUND_BR : 0);
}

void draw_selector(const OpenBox &box, const ButtonArea &area) {
    if (panel() == Panel::multi_touch || inverts_selection()) return;
    if (box.selected < 1 || box.selected > most_buttons) {
        std::fprintf(stderr, "wrong selector value (%d)\n", box.selected);
        return;
    }
    const irect r = face_of(place_of(box, box.selected), area);
    DrawRectRound(r.x, r.y, r.w, r.h, BLACK, marker_corners(box));
}

} // namespace

void draw(const OpenBox &box) {
    const raster::ScreenScope screen;
    const irect &r = box.layout.box;
    DrawFrame(r.x, r.y, r.w, r.h, nullptr, "", 0, nullptr);
    const ButtonArea area = button_area(box.layout);
    const bool has_buttons = box.button_count() > 0;
    if (has_buttons) draw_row(box, area);
    hatch_icon(box);
    draw_body(box);
    if (!has_buttons) return;
    draw_labels(box, area);
    draw_selector(box, area);
}

void draw_hatched_button(const OpenBox &box, int button) {
    const irect &place = place_of(box, button);
    {
        const raster::ScreenScope screen;
        modal::draw_pressed(raster::Box(face_of(place, button_area(box.layout))));
    }
    modal::update(raster::Box(place));
}

void draw_pressed_button(const OpenBox &box) {
    if (!inverts_selection()) draw_hatched_button(box, box.selected);
}

void show(Show how) {
    const int w = ScreenWidth(), h = ScreenHeight();
    if (how == Show::reaction) {
        PartialUpdateBW(0, 0, w, h);
        return;
    }
    WaitForUpdateComplete();
    PartialUpdate(0, 0, w, h);
}

} // namespace dialogs
